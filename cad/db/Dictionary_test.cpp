// Tests of dictionaries and extended records: keys without regard to case, key order,
// replacing and re-keying entries, removal and erase, the open rules, the tags written.
#include "cad/db/Dictionary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/db/TestDrawing.h"
#include "cad/db/Xrecord.h"

namespace cad::db {
namespace {

class DictionaryTest : public testing_support::DrawingTest {
protected:
    // A new empty dictionary, or an extended record holding `text`, under `key` of `parent`.
    ObjectId addDictionary(ObjectId parent, std::string_view key) {
        ObjectId id;
        auto dictionary = open<Dictionary>(parent, OpenMode::ForWrite);
        EXPECT_EQ(dictionary->setAt(key, std::make_unique<Dictionary>(), id), ErrorStatus::eOk);
        return id;
    }
    ObjectId addXrecord(ObjectId parent, std::string_view key, std::string text) {
        auto record = std::make_unique<Xrecord>();
        record->setFromRbChain({ResBuf{1, std::move(text)}});
        ObjectId id;
        auto dictionary = open<Dictionary>(parent, OpenMode::ForWrite);
        EXPECT_EQ(dictionary->setAt(key, std::move(record), id), ErrorStatus::eOk);
        return id;
    }
    std::vector<std::string> keys(ObjectId dictionaryId) {
        std::vector<std::string> result;
        for (const auto& entry : open<Dictionary>(dictionaryId, OpenMode::ForRead)->entries())
            result.push_back(entry.key);
        return result;
    }

    ObjectId root = db.namedObjectsDictionaryId();
    ObjectId group = addDictionary(root, "Group");
};

TEST_F(DictionaryTest, KeysMatchWithoutRegardToAsciiCase) {
    const ObjectId library = addDictionary(root, "Adv data list");
    {
        auto dictionary = open<Dictionary>(root, OpenMode::ForRead);
        ObjectId found;
        EXPECT_EQ(dictionary->getAt("ADV DATA LIST", found), ErrorStatus::eOk);
        EXPECT_EQ(found, library);
        EXPECT_TRUE(dictionary->has("adv Data List"));
        EXPECT_TRUE(dictionary->has(library));
        std::string key;
        ASSERT_EQ(dictionary->nameAt(library, key), ErrorStatus::eOk);
        EXPECT_EQ(key, "Adv data list");  // the spelling it was given
    }
    // Letters outside ASCII are bytes like any other: these are two keys.
    addDictionary(library, "\xC3\x84");  // Ä
    addDictionary(library, "\xC3\xA4");  // ä
    EXPECT_EQ(open<Dictionary>(library, OpenMode::ForRead)->numEntries(), 2U);
}

TEST_F(DictionaryTest, EntriesComeInKeyOrderWithUnderscoreAfterLetters) {
    for (const char* key :
         {"b", "\xEA\xB0\x80", "_x", "QRB_VANTORDATA-2", "A", "QRB_VANTORDATA-10"})
        addXrecord(group, key, key);
    const std::vector<std::string> expected = {
        "A", "b", "QRB_VANTORDATA-10", "QRB_VANTORDATA-2", "_x", "\xEA\xB0\x80"};
    EXPECT_EQ(keys(group), expected);
}

TEST_F(DictionaryTest, SetAtOnAnExistingKeyReplacesAndErasesTheOldEntry) {
    const ObjectId info = addDictionary(root, "KX_INFORM");
    const ObjectId first = addXrecord(info, "KXADVINFO", "old");
    const ObjectId second = addXrecord(info, "kxadvinfo", "new");
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.isErased());
    auto dictionary = open<Dictionary>(info, OpenMode::ForRead);
    ObjectId found;
    EXPECT_EQ(dictionary->getAt("KXADVINFO", found), ErrorStatus::eOk);
    EXPECT_EQ(found, second);
    EXPECT_EQ(dictionary->numEntries(), 1U);
    EXPECT_EQ(dictionary->entries().front().key, "kxadvinfo");
}

TEST_F(DictionaryTest, RefusalsLeaveTheDictionaryAsItWas) {
    const ObjectId zero = addXrecord(group, "QRB_VANTORDATA-0", "a");
    addXrecord(group, "QRB_VANTORDATA-1", "b");
    auto dictionary = open<Dictionary>(group, OpenMode::ForWrite);
    ObjectId id;
    EXPECT_EQ(dictionary->setAt("", std::make_unique<Xrecord>(), id), ErrorStatus::eInvalidKey);
    EXPECT_EQ(dictionary->setName("QRB_VANTORDATA-0", "qrb_vantordata-1"),
              ErrorStatus::eDuplicateKey);
    EXPECT_EQ(dictionary->setName("missing", "other"), ErrorStatus::eKeyNotFound);
    EXPECT_EQ(dictionary->setName("QRB_VANTORDATA-0", ""), ErrorStatus::eInvalidKey);
    EXPECT_EQ(dictionary->getAt("missing", id), ErrorStatus::eKeyNotFound);
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(dictionary->remove("missing"), ErrorStatus::eKeyNotFound);
    EXPECT_EQ(dictionary->setAt("self", group), ErrorStatus::eSelfReference);
    EXPECT_EQ(dictionary->numEntries(), 2U);
    // Changing only the case of a key is a rename, not a clash with itself.
    EXPECT_EQ(dictionary->setName("QRB_VANTORDATA-0", "Qrb_VantorData-0"), ErrorStatus::eOk);
    std::string key;
    dictionary->nameAt(zero, key);
    EXPECT_EQ(key, "Qrb_VantorData-0");
}

TEST_F(DictionaryTest, SetNameMovesTheEntryToItsNewPlace) {
    const ObjectId a = addXrecord(group, "a", "a");
    addXrecord(group, "m", "m");
    {
        auto dictionary = open<Dictionary>(group, OpenMode::ForWrite);
        ASSERT_EQ(dictionary->setName("a", "z"), ErrorStatus::eOk);
        ObjectId found;
        EXPECT_EQ(dictionary->getAt("Z", found), ErrorStatus::eOk);
        EXPECT_EQ(found, a);
        EXPECT_FALSE(dictionary->has("a"));
    }
    EXPECT_EQ(keys(group), (std::vector<std::string>{"m", "z"}));
}

TEST_F(DictionaryTest, RemoveTakesTheEntryButNotTheObject) {
    const ObjectId record = addXrecord(group, "QRB_VANTORDATA-1", "x");
    ObjectId removed;
    {
        auto dictionary = open<Dictionary>(group, OpenMode::ForWrite);
        ASSERT_EQ(dictionary->remove("qrb_vantordata-1", removed), ErrorStatus::eOk);
        EXPECT_FALSE(dictionary->has("QRB_VANTORDATA-1"));
        EXPECT_FALSE(dictionary->has(record));
    }
    EXPECT_EQ(removed, record);
    EXPECT_FALSE(record.isErased());
    auto xrecord = open<Xrecord>(record, OpenMode::ForRead);
    ASSERT_TRUE(xrecord);
    EXPECT_EQ(*xrecord->rbChain().front().text(), "x");
}

TEST_F(DictionaryTest, ErasingADictionaryErasesEverythingBelowIt) {
    const ObjectId library = addDictionary(root, "User data list");
    const ObjectId category = addDictionary(library, "Valves");
    const ObjectId record = addXrecord(category, "QRB_VANTORDATA-0", "gate valve");
    const ObjectId sibling = addXrecord(root, "Other", "kept");
    {
        auto dictionary = open<Dictionary>(library, OpenMode::ForWrite);
        ASSERT_EQ(dictionary->erase(), ErrorStatus::eOk);
    }
    EXPECT_TRUE(category.isErased());
    EXPECT_TRUE(record.isErased());
    EXPECT_FALSE(sibling.isErased());
    EXPECT_EQ(open<Xrecord>(record, OpenMode::ForRead).openStatus(), ErrorStatus::eWasErased);
    EXPECT_TRUE(open<Xrecord>(record, OpenMode::ForRead, true));
    // The erased library no longer counts as an entry of the root.
    EXPECT_FALSE(open<Dictionary>(root, OpenMode::ForRead)->has("User data list"));
}

TEST_F(DictionaryTest, ChangesNeedTheDictionaryOpenForWrite) {
    auto reader = open<Dictionary>(group, OpenMode::ForRead);
    ObjectId id;
    EXPECT_EQ(reader->setAt("k", std::make_unique<Xrecord>(), id),
              ErrorStatus::eWasNotOpenedForWrite);
    EXPECT_EQ(reader->remove("k"), ErrorStatus::eWasNotOpenedForWrite);
    EXPECT_EQ(reader->setName("k", "l"), ErrorStatus::eWasNotOpenedForWrite);
    // Many readers, but no writer while one reads; and no reader while one writes.
    EXPECT_TRUE(open<Dictionary>(group, OpenMode::ForRead));
    EXPECT_EQ(open<Dictionary>(group, OpenMode::ForWrite).openStatus(),
              ErrorStatus::eWasOpenedForRead);
    reader.close();
    auto writer = open<Dictionary>(group, OpenMode::ForWrite);
    EXPECT_EQ(open<Dictionary>(group, OpenMode::ForRead).openStatus(),
              ErrorStatus::eWasOpenedForWrite);
    // A dictionary outside any database takes no objects: there is no database to add to.
    Dictionary loose;
    EXPECT_EQ(loose.setAt("k", std::make_unique<Xrecord>(), id), ErrorStatus::eNotInDatabase);
}

TEST_F(DictionaryTest, WritesLiveEntriesAsSoftOrHardOwnerReferences) {
    const ObjectId kept = addXrecord(group, "b", "b");
    const ObjectId gone = addXrecord(group, "a", "a");
    open<Xrecord>(gone, OpenMode::ForWrite)->erase();

    auto dictionary = open<Dictionary>(group, OpenMode::ForWrite);
    TagRecorder soft;
    dictionary->dxfFields(soft);
    EXPECT_EQ(soft.tags(),
              (std::vector<RawTag>{
                  {100, "AcDbDictionary"}, {281, "1"}, {3, "b"}, {350, kept.handle().toHex()}}));
    dictionary->setTreatElementsAsHard(true);
    TagRecorder hard;
    dictionary->dxfFields(hard);
    EXPECT_EQ(hard.codes(), (std::vector<int>{100, 280, 281, 3, 360}));
    // R14 has neither flag.
    TagRecorder r14(DxfVersion::R14);
    dictionary->dxfFields(r14);
    EXPECT_EQ(r14.codes(), (std::vector<int>{100, 3, 360}));
}

}  // namespace
}  // namespace cad::db
