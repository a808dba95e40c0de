// Tests of the reference walker: every place an object keeps a reference is visited with the
// right kind, and what the visitor changes lands back in the object, raw handle text included.
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
    Probe(const Probe&) = default;
    ObjectId hard, arbitrary, layer;
    ResBufChain chain;
    std::vector<RawTag> raw;

    std::string_view dxfName() const override { return "PROBE"; }
    std::string_view className() const override { return "AcDbProbe"; }
    void dxfFields(DxfFiler& filer) override {
        filer.subclass("AcDbProbe");
        filer.reference(340, hard);
        filer.reference(320, arbitrary);
        filer.symbol(8, layer, DxfFiler::SymbolTable::Layer);
        filer.resbufs(chain);
        filer.rawTags(raw);
    }
    std::unique_ptr<DbObject> clone() const override { return std::make_unique<Probe>(*this); }
};

struct Visit {
    int code;
    Kind kind;
    ObjectId id;
    friend bool operator==(const Visit&, const Visit&) = default;
};

TEST(ReferenceWalker, KindByGroupCode) {
    const std::pair<int, Kind> rows[] = {
        {320, Kind::Arbitrary},   {329, Kind::Arbitrary},    {330, Kind::SoftPointer},
        {340, Kind::HardPointer}, {349, Kind::HardPointer},  {350, Kind::SoftOwner},
        {360, Kind::HardOwner},   {369, Kind::HardOwner},    {390, Kind::HardPointer},
        {481, Kind::HardPointer}, {1005, Kind::SoftPointer},
    };
    for (auto [code, kind] : rows) EXPECT_EQ(ReferenceWalker::kindOf(code), kind) << code;
}

TEST(ReferenceWalker, VisitsEveryPlaceInOrderAndStoresWhatTheVisitorChanges) {
    Database db(false);
    ObjectId a, b, c;
    for (ObjectId* id : {&a, &b, &c})
        ASSERT_EQ(db.addObject(std::make_unique<Probe>(), *id, ObjectId::kNull), ErrorStatus::eOk);
    const std::string hexA = a.handle().toHex();

    Probe probe;  // in no database: raw handles are looked up where its ids live
    probe.setOwnerId(a);
    probe.addPersistentReactor(a);
    probe.addPersistentReactor(b);
    probe.setExtensionDictionary(a);
    probe.hard = a;
    probe.arbitrary = a;
    probe.layer = b;
    probe.chain = {{1, std::string("text")}, {360, a}};
    probe.raw = {{340, hexA}, {320, hexA}, {1, hexA}};
    probe.keptTags().push_back({"AcDbProbe", {{331, hexA}, {10, "1.0"}}});
    probe.xdata() = {{1001, "APP"}, {1005, hexA}, {1000, hexA}};

    // a becomes c everywhere it is a reference; b is cut.
    std::vector<Visit> visits;
    ReferenceWalker walker(
        [&](const ReferenceWalker::Field& field, ObjectId& id) {
            visits.push_back({field.code, field.kind, id});
            if (field.kind == Kind::Arbitrary) return;
            if (id == a) id = c;
            if (id == b) id = ObjectId::kNull;
        },
        &db);
    walker.walk(probe);

    const std::vector<Visit> expected = {
        {330, Kind::Owner, a},       {330, Kind::SoftPointer, a},  {330, Kind::SoftPointer, b},
        {360, Kind::HardOwner, a},   {340, Kind::HardPointer, a},  {320, Kind::Arbitrary, a},
        {8, Kind::Symbol, b},        {360, Kind::HardOwner, a},    {340, Kind::HardPointer, a},
        {331, Kind::SoftPointer, a}, {1005, Kind::SoftPointer, a},
    };
    EXPECT_EQ(visits, expected);

    const std::string hexC = c.handle().toHex();
    EXPECT_EQ(probe.ownerId(), c);
    EXPECT_EQ(probe.persistentReactors(), std::vector<ObjectId>{c});  // the cut one is dropped
    EXPECT_EQ(probe.extensionDictionary(), c);
    EXPECT_EQ(probe.hard, c);
    EXPECT_EQ(probe.arbitrary, a);
    EXPECT_TRUE(probe.layer.isNull());
    EXPECT_EQ(std::get<ObjectId>(probe.chain[1].value), c);
    EXPECT_EQ(probe.raw, (std::vector<RawTag>{{340, hexC}, {320, hexA}, {1, hexA}}));
    EXPECT_EQ(probe.keptTags()[0].tags[0].value, hexC);
    EXPECT_EQ(probe.xdata(), (std::vector<RawTag>{{1001, "APP"}, {1005, hexC}, {1000, hexA}}));
}

TEST(ReferenceWalker, RawHandleNamingNothingIsCutOnlyInAnotherDatabase) {
    // A copy in another database still holds its source's handles as text; one that names
    // nothing there would name some unrelated object here.
    Database source(false), copy(false);
    for (Database* db : {&source, &copy}) {
        SCOPED_TRACE(db == &source ? "own database" : "another database");
        ObjectId id;
        auto probe = std::make_unique<Probe>();
        probe->raw = {{340, "FFFF"}, {341, "zz"}};
        ASSERT_EQ(db->addObject(std::move(probe), id, ObjectId::kNull), ErrorStatus::eOk);
        auto object = open<Probe>(id, OpenMode::ForWrite);
        ASSERT_TRUE(object);
        ReferenceWalker([](const ReferenceWalker::Field&, ObjectId&) {}, &source).walk(*object);
        EXPECT_EQ(object->raw,
                  (std::vector<RawTag>{{340, db == &source ? "FFFF" : "0"}, {341, "zz"}}));
    }
}

}  // namespace
}  // namespace cad::db
