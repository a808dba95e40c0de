// The part search: what a typed query finds (initial consonants, words in any order, Latin
// letters in either case, parts of words), and an index built from the caches a tree load
// writes, without the drawing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/search/CachedParts.h"
#include "vantor/search/PartSearchIndex.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/TreeCache.h"
#include "vantor/store/VNTreeBase.h"

namespace vantor {
namespace {

using Strings = std::vector<std::string>;

PartSearchEntry part(std::int64_t id, std::string kname, std::string ename, std::string spec,
                     Strings other = {}, Strings keys = {"User data list", "부품"}) {
    PartSearchEntry entry;
    entry.recordId = id;
    entry.keys = std::move(keys);
    entry.kname = std::move(kname);
    entry.ename = std::move(ename);
    entry.spec = std::move(spec);
    entry.otherTexts = std::move(other);
    return entry;
}

// The Korean names of what the query finds, in order.
Strings found(const PartSearchIndex& index, std::string_view query) {
    const PartSearchResult result = index.find(query);
    Strings names;
    for (std::size_t i = 0; i < result.size(); ++i) names.push_back(result.entry(i).kname);
    return names;
}

class Matching : public testing::Test {
protected:
    void SetUp() override {
        index.setDrawing("/lib/a.dxf", {part(1, "육각볼트", "Hex Bolt", "M12x40", {"SS400"}),
                                        part(2, "육각너트", "Hex Nut", "M12"),
                                        part(3, "평와셔", "Flat Washer", "M10", {"아연도금"},
                                             {"User data list", "와셔류"})});
        index.setDrawing("/lib/b.dxf", {part(4, "볼트", "Stud Bolt", "M16x100")});
    }
    PartSearchIndex index;
};

TEST_F(Matching, InitialConsonantsStandForTheirSyllables) {
    EXPECT_EQ(found(index, "ㅇㄱㅂㅌ"), Strings{"육각볼트"});
    EXPECT_EQ(found(index, "ㅇㄱ"), (Strings{"육각볼트", "육각너트"}));
    // Consonants and whole syllables mixed in one word.
    EXPECT_EQ(found(index, "육ㄱㄴ"), Strings{"육각너트"});
    // A consonant matches a syllable's initial only, not its final consonant.
    EXPECT_EQ(found(index, "ㄱㅂ"), Strings{"육각볼트"});
    EXPECT_TRUE(found(index, "ㄹㅌ").empty());
}

TEST_F(Matching, WordsInAnyOrderLatinInEitherCaseAnyPartOfAWord) {
    EXPECT_EQ(found(index, "m12 볼트"), Strings{"육각볼트"});
    EXPECT_EQ(found(index, "볼트   M12"), Strings{"육각볼트"});
    EXPECT_EQ(found(index, "HEX"), (Strings{"육각볼트", "육각너트"}));
    EXPECT_EQ(found(index, "olt"), (Strings{"육각볼트", "볼트"}));
    // Every word must be found: one that is nowhere empties the list.
    EXPECT_TRUE(found(index, "볼트 M99").empty());
    EXPECT_TRUE(found(index, "xyzzy").empty());
    EXPECT_TRUE(found(index, "   ").empty());
}

TEST_F(Matching, TextsBeyondTheListedColumnsAndTheGroupPathAreSearched) {
    EXPECT_EQ(found(index, "ss400"), Strings{"육각볼트"});
    EXPECT_EQ(found(index, "도금"), Strings{"평와셔"});
    EXPECT_EQ(found(index, "m10 와셔류"), Strings{"평와셔"});  // the group's name
    // A word never runs from one field into the next.
    EXPECT_TRUE(found(index, "boltm12").empty());
    EXPECT_TRUE(found(index, "트m").empty());
}

TEST_F(Matching, AResultOutlivesAChangeOfTheIndex) {
    const PartSearchResult before = index.find("stud");
    index.setDrawing("/lib/b.dxf", {part(5, "너트", "Nut", "M8")});
    index.removeDrawing("/lib/a.dxf");
    ASSERT_EQ(before.size(), 1u);
    EXPECT_EQ(before.entry(0).ename, "Stud Bolt");
    EXPECT_EQ(before.drawingPath(0), "/lib/b.dxf");
    EXPECT_TRUE(found(index, "stud").empty());
    EXPECT_EQ(found(index, "nut"), Strings{"너트"});
    EXPECT_EQ(index.partCount(), 1u);
}

class CachedIndex : public testing::Test {
protected:
    void SetUp() override {
        cad::db::Database db;
        auto user = testing_support::addDictionary(db.namedObjectsDictionaryId(), "User data list");
        auto group = testing_support::addDictionary(
            testing_support::addDictionary(user, "체결"), "육각볼트");
        PartRecord bolt;
        bolt.kname = "육각볼트";
        bolt.ename = "Hex Bolt";
        bolt.spec = "M12x40";
        bolt.user[5] = "KS B 1002\t(2016)";
        testing_support::addRecord(group, "QRB_VANTORDATA-0", bolt);
        ASSERT_EQ(db.saveAs(drawing), cad::ErrorStatus::eOk);
        ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    }
    cad::sys::TestTempFolder folder;
    std::string drawing = folder.file("Fasteners.dxf");
    cad::app::ScriptedDialogs dialogs;
    CVNTreeBase tree{dialogs};
};

TEST_F(CachedIndex, ATreeLoadWritesWhatTheSearchReads) {
    PartSearchIndex index;
    indexDrawings(index, {drawing, folder.file("Missing.dxf")});
    EXPECT_EQ(index.drawingCount(), 1u);
    const PartSearchResult result = index.find("ks 2016");
    ASSERT_EQ(result.size(), 1u);
    const PartSearchEntry& hit = result.entry(0);
    EXPECT_EQ(hit.ename, "Hex Bolt");
    EXPECT_EQ(hit.recordKey, "QRB_VANTORDATA-0");
    EXPECT_EQ(hit.keys, (Strings{"User data list", "체결", "육각볼트"}));
    // The keys find the record's group in the tree the caches also feed.
    EXPECT_NE(tree.findNode(drawing, hit.keys), nullptr);
}

TEST_F(CachedIndex, WithoutACurrentCatalogueOnlyTheTreeCachesTextsAreSearched) {
    testing_support::setWriteTime(CatalogueCache::pathFor(drawing), -10);
    testing_support::setWriteTime(drawing, 0);
    testing_support::setWriteTime(TreeCache::pathFor(drawing), 0);
    PartSearchIndex index;
    indexDrawings(index, {drawing});
    EXPECT_EQ(found(index, "m12x40").size(), 1u);
    EXPECT_TRUE(found(index, "hex").empty());
    // A catalogue cut short is no catalogue either.
    testing_support::setWriteTime(CatalogueCache::pathFor(drawing), 10);
    std::string bytes = folder.readBytes("fasteners.vnc");
    folder.writeBytes("fasteners.vnc", bytes.substr(0, bytes.size() - 3));
    testing_support::setWriteTime(CatalogueCache::pathFor(drawing), 10);
    EXPECT_FALSE(CatalogueCache::read(CatalogueCache::pathFor(drawing)).has_value());
    indexDrawings(index, {drawing});
    EXPECT_TRUE(found(index, "hex").empty());
    EXPECT_EQ(index.partCount(), 1u);
}

}  // namespace
}  // namespace vantor
