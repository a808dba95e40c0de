// Tests of the profile functions against real files: lookups, cutting to the buffer, key
// lists as section tests, and rewriting a file without disturbing what else it holds.
#include "cad/sys/PrivateProfile.h"

#include <gtest/gtest.h>

#include <tuple>

#include "cad/sys/CodePage.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

using namespace std::string_literals;

// Mixed line ends, blanks, comments and CP949 text, as files edited by hand look.
const std::string kSettings = utf8ToCp949(
    "; written by hand\r\n"
    "[OPTION]\r\n"
    "Option=3073\r\n"
    "  DrawAngle   =  0.00  \n"
    "savePath=\"C:\\out\\parts.csv\"\r\n"
    "single='x'\r\n"
    "unmatched=\"abc\r\n"
    "curListName=주 관리창\r\n"
    ";Delimiter=2\r\n"
    "Flag\r\n"
    "Option=9\r\n"
    "[ SETTING ]\r\n"
    "너비=800\r\n"
    "Label_Spec=\r\n"
    "[EMPTY]\r\n"
    "; only a comment\r\n"
    "\r\n"
    "[COLUMNS]\r\n"
    "Width_KName=130\r\n"
    "Width_EName=150\r\n"
    "Block name=180\r\n");

class ProfileFileTest : public testing::Test {
protected:
    std::string ini() const { return temp_.file("Vantor.ini"); }
    std::string read(std::optional<std::string_view> key, std::string_view section = "OPTION",
                     std::size_t bufferSize = 255, std::string_view defaultValue = "") const {
        return getPrivateProfileString(section, key, defaultValue, bufferSize, ini());
    }

    TestTempFolder temp_;
};

struct LookupRow {
    const char* name;
    std::string section;
    std::string key;
    std::string defaultValue;
    std::string expected;
};

class ProfileLookup : public ProfileFileTest, public testing::WithParamInterface<LookupRow> {};

TEST_P(ProfileLookup, FindsValueOrDefault) {
    temp_.writeBytes("Vantor.ini", kSettings);
    const LookupRow& row = GetParam();
    EXPECT_EQ(read(row.key, row.section, 255, row.defaultValue), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Reading, ProfileLookup,
    testing::Values(LookupRow{"PlainValue", "OPTION", "Option", "", "3073"},
                    LookupRow{"NamesIgnoreCase", "option", "OPTION", "", "3073"},
                    LookupRow{"BlanksAndLfOnlyLine", "OPTION", "DrawAngle", "", "0.00"},
                    LookupRow{"BlanksAroundRequestedNames", " OPTION ", " DrawAngle", "", "0.00"},
                    LookupRow{"DoubleQuotesRemoved", "OPTION", "savePath", "",
                              "C:\\out\\parts.csv"},
                    LookupRow{"SingleQuotesRemoved", "OPTION", "single", "", "x"},
                    LookupRow{"UnmatchedQuoteKept", "OPTION", "unmatched", "", "\"abc"},
                    LookupRow{"KoreanValue", "OPTION", "curListName", "", "주 관리창"},
                    LookupRow{"KoreanKey", "setting", "너비", "", "800"},
                    LookupRow{"CommentIsNoKey", "OPTION", ";Delimiter", "0", "0"},
                    LookupRow{"LineWithoutEqualsIsEmptyKey", "OPTION", "Flag", "x", ""},
                    LookupRow{"FirstOfRepeatedKeys", "OPTION", "option", "", "3073"},
                    LookupRow{"EmptyValueIsNoDefault", "SETTING", "Label_Spec", "Spec", ""},
                    LookupRow{"BlankInsideKeyName", "COLUMNS", "block NAME", "", "180"},
                    LookupRow{"KeyOfOtherSection", "OPTION", "Width_KName", "dflt", "dflt"},
                    LookupRow{"MissingSection", "NONE", "Option", "dflt", "dflt"},
                    LookupRow{"DefaultLosesTrailingBlanks", "OPTION", "none", " d \t", " d"}),
    [](const auto& row) { return row.param.name; });

TEST_F(ProfileFileTest, MissingFileGivesDefault) {
    EXPECT_EQ(read("Option", "OPTION", 255, "3073"), "3073");
    EXPECT_EQ(read(std::nullopt, "OPTION", 90), "");
}

struct CutRow {
    const char* name;
    std::string value;  // UTF-8
    std::size_t bufferSize;
    std::string expected;
};

class ProfileCut : public ProfileFileTest, public testing::WithParamInterface<CutRow> {};

TEST_P(ProfileCut, CountsBytesOnDiskAndKeepsCharactersWhole) {
    temp_.writeBytes("Vantor.ini", "[SETTING]\r\nLabel=" + utf8ToCp949(GetParam().value) + "\r\n");
    EXPECT_EQ(read("Label", "SETTING", GetParam().bufferSize), GetParam().expected);
}

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
}

INSTANTIATE_TEST_SUITE_P(
    Buffer, ProfileCut,
    testing::Values(CutRow{"Ascii300To254", repeated("a", 300), 255, repeated("a", 254)},
                    CutRow{"Ascii254Fits", repeated("a", 254), 255, repeated("a", 254)},
                    CutRow{"Hangul400BytesTo254", repeated("가", 200), 255, repeated("가", 127)},
                    CutRow{"PartialLeadByteDropped", "a" + repeated("가", 200), 255,
                           "a" + repeated("가", 126)},
                    CutRow{"QuotesRemovedBeforeCut", "\"" + repeated("b", 300) + "\"", 5, "bbbb"},
                    CutRow{"BufferOfOne", "abc", 1, ""}, CutRow{"BufferOfZero", "abc", 0, ""}),
    [](const auto& row) { return row.param.name; });

TEST_F(ProfileFileTest, DefaultIsCutLikeAValue) {
    EXPECT_EQ(read("none", "OPTION", 5, "abcdefgh"), "abcd");
    EXPECT_EQ(read("none", "OPTION", 4, "가나다"), "가");
}

struct KeyListRow {
    const char* name;
    std::string section;
    std::size_t bufferSize;
    std::string expected;
};

class ProfileKeyList : public ProfileFileTest, public testing::WithParamInterface<KeyListRow> {};

TEST_P(ProfileKeyList, ListsNamesEachEndedByNul) {
    temp_.writeBytes("Vantor.ini", kSettings +
                                       "[ONE]\r\nOption=1\r\n"
                                       "[THREE]\r\nAlpha=1\r\n;Skipped=2\r\nBeta\r\nGamma=3\r\n");
    EXPECT_EQ(read(std::nullopt, GetParam().section, GetParam().bufferSize), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    SectionTest, ProfileKeyList,
    testing::Values(KeyListRow{"OneKeyExists", "ONE", 90, "Option\0"s},
                    KeyListRow{"EmptySectionAbsent", "EMPTY", 90, ""},
                    KeyListRow{"MissingSectionAbsent", "NONE", 90, ""},
                    KeyListRow{"AllFit", "THREE", 18, "Alpha\0Beta\0Gamma\0"s},
                    KeyListRow{"LastNameCut", "THREE", 17, "Alpha\0Beta\0Gamm"s},
                    KeyListRow{"KoreanKeyName", "SETTING", 90, "너비\0Label_Spec\0"s},
                    KeyListRow{"TinyBuffer", "THREE", 2, ""}),
    [](const auto& row) { return row.param.name; });

TEST_F(ProfileFileTest, WritingCreatesFileAndSectionsInOrder) {
    EXPECT_TRUE(writePrivateProfileString("OPTION", "Option", "3073", ini()));
    EXPECT_TRUE(writePrivateProfileString("OPTION", "DrawAngle", "0.00", ini()));
    EXPECT_TRUE(writePrivateProfileString("SETTING", "BomDlg Width", "800", ini()));
    EXPECT_EQ(temp_.readBytes("Vantor.ini"),
              "[OPTION]\r\nOption=3073\r\nDrawAngle=0.00\r\n[SETTING]\r\nBomDlg Width=800\r\n");
}

TEST_F(ProfileFileTest, WritingKeepsEverythingElseInPlace) {
    temp_.writeBytes("Vantor.ini",
                     "; settings\n"
                     "[OPTION]\r\n"
                     "  Option = 1 \r\n"
                     "; keep me\r\n"
                     "Delimiter=0\r\n"
                     "\r\n"
                     "[COLUMNS]\n"
                     "Width_KName=130");
    EXPECT_TRUE(writePrivateProfileString("option", "OPTION", "3073", ini()));
    EXPECT_TRUE(writePrivateProfileString("Option", "savePath", "C:\\a.csv", ini()));
    EXPECT_TRUE(writePrivateProfileString("SETTING", "UblView", "1", ini()));
    EXPECT_EQ(temp_.readBytes("Vantor.ini"),
              "; settings\r\n"
              "[OPTION]\r\n"
              "Option=3073\r\n"
              "; keep me\r\n"
              "Delimiter=0\r\n"
              "savePath=C:\\a.csv\r\n"
              "\r\n"
              "[COLUMNS]\r\n"
              "Width_KName=130\r\n"
              "[SETTING]\r\n"
              "UblView=1\r\n");
}

TEST_F(ProfileFileTest, BatchWritesWhatKeyByKeyWritesWouldInOneRewrite) {
    temp_.writeBytes("Vantor.ini", kSettings);
    temp_.writeBytes("keyByKey.ini", kSettings);
    const std::string keyByKey = temp_.file("keyByKey.ini");
    PrivateProfileBatch batch(ini());
    for (const auto& [section, key, value] :
         {std::tuple{"option", "OPTION", "3073"}, std::tuple{"SETTING", "너비", "640"},
          std::tuple{"NEW", "UblView", "1"}, std::tuple{"OPTION", "savePath", "C:\\a.csv"}}) {
        EXPECT_TRUE(batch.set(section, key, value));
        EXPECT_TRUE(writePrivateProfileString(section, key, value, keyByKey));
    }
    EXPECT_FALSE(batch.set("OPTION", "a=b", "1"));  // refused alone; the others still go
    EXPECT_EQ(temp_.readBytes("Vantor.ini"), kSettings) << "nothing is written before commit";
    EXPECT_TRUE(batch.commit());
    EXPECT_EQ(temp_.readBytes("Vantor.ini"), temp_.readBytes("keyByKey.ini"));
    EXPECT_FALSE(PrivateProfileBatch(temp_.file("no/Vantor.ini")).commit());
}

TEST_F(ProfileFileTest, KoreanValuesAreCp949OnDisk) {
    EXPECT_TRUE(writePrivateProfileString("OPTION", "curListName", "주 관리창", ini()));
    EXPECT_EQ(temp_.readBytes("Vantor.ini"),
              "[OPTION]\r\ncurListName=\xC1\xD6\x20\xB0\xFC\xB8\xAE\xC3\xA2\r\n");
    EXPECT_EQ(read("curListName"), "주 관리창");
}

TEST_F(ProfileFileTest, RefusedWritesLeaveTheFileAlone) {
    temp_.writeBytes("Vantor.ini", kSettings);
    EXPECT_FALSE(writePrivateProfileString("OPTION", "Option", "1\r\n[X]", ini()));
    EXPECT_FALSE(writePrivateProfileString("OPTION", "a=b", "1", ini()));
    EXPECT_FALSE(writePrivateProfileString("OP]TION", "Option", "1", ini()));
    EXPECT_FALSE(writePrivateProfileString(" ", "Option", "1", ini()));
    EXPECT_EQ(temp_.readBytes("Vantor.ini"), kSettings);
    EXPECT_FALSE(writePrivateProfileString("OPTION", "Option", "1", temp_.file("no/Vantor.ini")));
}

}  // namespace
}  // namespace cad::sys
