// Tests of the reference walker: every place an object keeps a reference is visited with the
// right kind, and changes the visitor makes land back in the object, raw handle text included.
#include "cad/db/ReferenceWalker.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/ObjectPtr.h"

namespace cad::db {
namespace {

using Kind = ReferenceWalker::Kind;

// An object with a field of every reference-carrying sort.
class Probe : public DbObject {
public:
    Probe() = default;
    ObjectId hard, softOwner, arbitrary, layer;
    ResBufChain chain;
    std::vector<RawTag> raw;

    std::string_view dxfName() const override { return "PROBE"; }
    std::string_view className() const override { return "AcDbProbe"; }
    void dxfFields(DxfFiler& filer) override {
        filer.subclass("AcDbProbe");
        std::string text = "not a reference";
        filer.string(1, text);
        filer.reference(340, hard);
        filer.reference(350, softOwner);
        filer.reference(320, arbitrary);
        filer.symbol(8, layer, DxfFiler::SymbolTable::Layer);
        filer.resbufs(chain);
        filer.rawTags(raw);
    }
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Probe>(*this); }
    Probe(const Probe&) = default;
};

struct Visit {
    int code;
    Kind kind;
    ObjectId id;
    friend bool operator==(const Visit&, const Visit&) = default;
};

class ReferenceWalkerTest : public ::testing::Test {
protected:
    ObjectId add(Database& into) {
        ObjectId id;
        EXPECT_EQ(into.addObject(std::make_unique<Probe>(), id, ObjectId::kNull), ErrorStatus::eOk);
        return id;
    }

    Database db{false};
    ObjectId a = add(db), b = add(db), c = add(db), d = add(db);
};

TEST(ReferenceWalkerKind, ByGroupCode) {
    const std::pair<int, Kind> rows[] = {
        {320, Kind::Arbitrary},   {329, Kind::Arbitrary},    {330, Kind::SoftPointer},
        {339, Kind::SoftPointer}, {340, Kind::HardPointer},  {349, Kind::HardPointer},
        {350, Kind::SoftOwner},   {359, Kind::SoftOwner},    {360, Kind::HardOwner},
        {369, Kind::HardOwner},   {390, Kind::HardPointer},  {480, Kind::HardPointer},
        {481, Kind::HardPointer}, {1005, Kind::SoftPointer},
    };
    for (auto [code, kind] : rows) EXPECT_EQ(ReferenceWalker::kindOf(code), kind) << code;
}

TEST_F(ReferenceWalkerTest, VisitsCommonPartFieldsKeptTagsAndExtendedDataInOrder) {
    Probe probe;
    probe.setOwnerId(a);
    probe.addPersistentReactor(b);
    probe.setExtensionDictionary(c);
    probe.hard = a;
    probe.softOwner = b;
    probe.arbitrary = c;
    probe.layer = d;
    probe.chain = {{1, std::string("text")}, {360, b}, {70, std::int16_t{3}}};
    probe.raw = {{340, b.handle().toHex()}, {320, a.handle().toHex()}, {1, "40"}};
    probe.keptTags().push_back({"AcDbProbe", {{331, c.handle().toHex()}, {10, "1.0"}}});
    probe.xdata() = {{1001, "APP"}, {1005, d.handle().toHex()}, {1000, "1005"}};

    std::vector<Visit> visits;
    // The probe is in no database, so raw handles are looked up where its ids live.
    ReferenceWalker walker(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            visits.push_back({field.code, field.kind, id});
        },
        &db);
    walker.walk(probe);

    const std::vector<Visit> expected = {
        {330, Kind::Owner, a},       {330, Kind::SoftPointer, b},  {360, Kind::HardOwner, c},
        {340, Kind::HardPointer, a}, {350, Kind::SoftOwner, b},    {320, Kind::Arbitrary, c},
        {8, Kind::Symbol, d},        {360, Kind::HardOwner, b},    {340, Kind::HardPointer, b},
        {331, Kind::SoftPointer, c}, {1005, Kind::SoftPointer, d},
    };
    EXPECT_EQ(visits, expected);
}

TEST_F(ReferenceWalkerTest, StoresWhatTheVisitorChanges) {
    Probe probe;
    probe.setOwnerId(a);
    probe.addPersistentReactor(a);
    probe.addPersistentReactor(b);
    probe.setExtensionDictionary(a);
    probe.hard = a;
    probe.arbitrary = a;
    probe.chain = {{340, a}};
    probe.raw = {{340, a.handle().toHex()}, {320, a.handle().toHex()}, {1005, "0"}};
    probe.xdata() = {{1001, "APP"}, {1005, a.handle().toHex()}};

    // a becomes c everywhere; b (a reactor) is cut.
    ReferenceWalker walker(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            if (field.kind == Kind::Arbitrary) return;
            if (id == a) id = c;
            if (id == b) id = ObjectId::kNull;
        },
        &db);
    walker.walk(probe);

    EXPECT_EQ(probe.ownerId(), c);
    EXPECT_EQ(probe.persistentReactors(), std::vector<ObjectId>{c});
    EXPECT_EQ(probe.extensionDictionary(), c);
    EXPECT_EQ(probe.hard, c);
    EXPECT_EQ(probe.arbitrary, a);
    EXPECT_EQ(std::get<ObjectId>(probe.chain[0].value), c);
    const std::vector<RawTag> raw = {
        {340, c.handle().toHex()}, {320, a.handle().toHex()}, {1005, "0"}};
    EXPECT_EQ(probe.raw, raw);
    EXPECT_EQ(probe.xdata()[1].value, c.handle().toHex());
}

TEST_F(ReferenceWalkerTest, RawHandlesAreLookedUpInTheGivenDatabase) {
    // A copy of a's object in another database still holds a's handles as text; the cloner
    // resolves them in the source database.
    Database other(false);
    ObjectId copyId;
    auto probe = std::make_unique<Probe>();
    probe->raw = {{340, b.handle().toHex()}, {341, "FFFF"}, {342, "zz"}};
    ASSERT_EQ(other.addObject(std::move(probe), copyId, ObjectId::kNull), ErrorStatus::eOk);

    std::vector<ObjectId> seen;
    ReferenceWalker walker(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            if (field.code == 341 || id == b) seen.push_back(id);
            if (id == b) id = ObjectId::kNull;  // not carried along
        },
        &db);
    {
        auto copy = open<Probe>(copyId, OpenMode::ForWrite);
        ASSERT_TRUE(copy);
        walker.walk(*copy);
        // b resolved in db; a handle nothing carries resolves to null and, as the text
        // would name an unrelated object here, is cut; text that is no handle stays.
        EXPECT_EQ(seen, (std::vector<ObjectId>{b, ObjectId::kNull}));
        const std::vector<RawTag> raw = {{340, "0"}, {341, "0"}, {342, "zz"}};
        EXPECT_EQ(copy->raw, raw);
    }
    EXPECT_EQ(other.openObjectCount(), 0);
    EXPECT_EQ(db.openObjectCount(), 0);
}

TEST_F(ReferenceWalkerTest, DanglingRawHandleStaysWithinItsOwnDatabase) {
    {
        auto object = open<Probe>(a, OpenMode::ForWrite);
        ASSERT_TRUE(object);
        object->raw = {{340, "FFFF"}};
        ReferenceWalker walker([](const ReferenceWalker::Field&, ObjectId&) {});
        walker.walk(*object);
        EXPECT_EQ(object->raw[0].value, "FFFF");  // the audit reports it; walking keeps it
    }
}

}  // namespace
}  // namespace cad::db
