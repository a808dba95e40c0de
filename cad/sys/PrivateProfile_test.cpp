// Tests of the profile functions against real files: lookups, cutting to the buffer, key
// lists as section tests, and rewriting a file without disturbing what else it holds.
#include "cad/sys/PrivateProfile.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <tuple>
#include <vector>

#include "cad/sys/CodePage.h"
#include "cad/sys/FileError.h"
#include "cad/sys/FileLock.h"
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

TEST_F(ProfileFileTest, LookupFindsValueOrDefault) {
    temp_.writeBytes("Vantor.ini", kSettings);
    const struct {
        const char* name;
        std::string section, key, defaultValue, expected;
    } rows[] = {
        {"PlainValue", "OPTION", "Option", "", "3073"},
        {"NamesIgnoreCase", "option", "OPTION", "", "3073"},
        {"BlanksAndLfOnlyLine", "OPTION", "DrawAngle", "", "0.00"},
        {"BlanksAroundRequestedNames", " OPTION ", " DrawAngle", "", "0.00"},
        {"DoubleQuotesRemoved", "OPTION", "savePath", "", "C:\\out\\parts.csv"},
        {"SingleQuotesRemoved", "OPTION", "single", "", "x"},
        {"UnmatchedQuoteKept", "OPTION", "unmatched", "", "\"abc"},
        {"KoreanValue", "OPTION", "curListName", "", "주 관리창"},
        {"KoreanKey", "setting", "너비", "", "800"},
        {"CommentIsNoKey", "OPTION", ";Delimiter", "0", "0"},
        {"LineWithoutEqualsIsEmptyKey", "OPTION", "Flag", "x", ""},
        {"FirstOfRepeatedKeys", "OPTION", "option", "", "3073"},
        {"EmptyValueIsNoDefault", "SETTING", "Label_Spec", "Spec", ""},
        {"BlankInsideKeyName", "COLUMNS", "block NAME", "", "180"},
        {"KeyOfOtherSection", "OPTION", "Width_KName", "dflt", "dflt"},
        {"MissingSection", "NONE", "Option", "dflt", "dflt"},
        {"DefaultLosesTrailingBlanks", "OPTION", "none", " d \t", " d"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read(row.key, row.section, 255, row.defaultValue), row.expected) << row.name;
    }
}

TEST_F(ProfileFileTest, MissingFileGivesDefault) {
    EXPECT_EQ(read("Option", "OPTION", 255, "3073"), "3073");
    EXPECT_EQ(read(std::nullopt, "OPTION", 90), "");
}

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
}

TEST_F(ProfileFileTest, CutCountsBytesOnDiskAndKeepsCharactersWhole) {
    const struct {
        const char* name;
        std::string value;  // UTF-8
        std::size_t bufferSize;
        std::string expected;
    } rows[] = {
        {"Ascii300To254", repeated("a", 300), 255, repeated("a", 254)},
        {"Ascii254Fits", repeated("a", 254), 255, repeated("a", 254)},
        {"Hangul400BytesTo254", repeated("가", 200), 255, repeated("가", 127)},
        {"PartialLeadByteDropped", "a" + repeated("가", 200), 255, "a" + repeated("가", 126)},
        {"QuotesRemovedBeforeCut", "\"" + repeated("b", 300) + "\"", 5, "bbbb"},
        {"BufferOfOne", "abc", 1, ""},
        {"BufferOfZero", "abc", 0, ""},
    };
    for (const auto& row : rows) {
        temp_.writeBytes("Vantor.ini", "[SETTING]\r\nLabel=" + utf8ToCp949(row.value) + "\r\n");
        EXPECT_EQ(read("Label", "SETTING", row.bufferSize), row.expected) << row.name;
    }
    EXPECT_EQ(read("none", "OPTION", 5, "abcdefgh"), "abcd") << "the default is cut like a value";
    EXPECT_EQ(read("none", "OPTION", 4, "가나다"), "가");
}

TEST_F(ProfileFileTest, KeyListNamesEachEndedByNul) {
    temp_.writeBytes("Vantor.ini", kSettings +
                                       "[ONE]\r\nOption=1\r\n"
                                       "[THREE]\r\nAlpha=1\r\n;Skipped=2\r\nBeta\r\nGamma=3\r\n");
    const struct {
        const char* name;
        std::string section;
        std::size_t bufferSize;
        std::string expected;
    } rows[] = {
        {"OneKeyExists", "ONE", 90, "Option\0"s},
        {"EmptySectionAbsent", "EMPTY", 90, ""},
        {"MissingSectionAbsent", "NONE", 90, ""},
        {"AllFit", "THREE", 18, "Alpha\0Beta\0Gamma\0"s},
        {"LastNameCut", "THREE", 17, "Alpha\0Beta\0Gamm"s},
        {"KoreanKeyName", "SETTING", 90, "너비\0Label_Spec\0"s},
        {"TinyBuffer", "THREE", 2, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read(std::nullopt, row.section, row.bufferSize), row.expected) << row.name;
    }
}

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

// Programs saving the one settings file at the same moment: each keeps what the others wrote.
TEST_F(ProfileFileTest, WritersInSeveralProcessesKeepEachOthersKeys) {
    temp_.writeBytes("Vantor.ini", kSettings);
    constexpr int kProcesses = 3;
    constexpr int kKeys = 15;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        const pid_t child = ::fork();
        if (child == 0) {
            bool written = true;
            for (int k = 0; k < kKeys; ++k) {
                written =
                    writePrivateProfileString("P" + std::to_string(p), "K" + std::to_string(k),
                                              std::to_string(k), ini()) &&
                    written;
            }
            ::_exit(written ? 0 : 1);
        }
        children.push_back(child);
    }
    for (pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    for (int p = 0; p < kProcesses; ++p) {
        for (int k = 0; k < kKeys; ++k) {
            EXPECT_EQ(read("K" + std::to_string(k), "P" + std::to_string(p)), std::to_string(k))
                << p << "/" << k;
        }
    }
    EXPECT_EQ(read("Option"), "3073") << "the lines that were there stay";
}

TEST_F(ProfileFileTest, AHeldFileIsNotWrittenAndTheHolderIsNamed) {
    temp_.writeBytes("Vantor.ini", kSettings);
    FileLock holder;
    ASSERT_EQ(holder.acquire(ini()), ErrorStatus::eOk);
    const auto wait = FileLock::defaultWait();
    FileLock::setDefaultWait(std::chrono::milliseconds(20));
    EXPECT_FALSE(writePrivateProfileString("OPTION", "Option", "1", ini()));
    FileLock::setDefaultWait(wait);
    EXPECT_EQ(temp_.readBytes("Vantor.ini"), kSettings);
    EXPECT_NE(lastFileError().text.find(ini() + " is being changed by"), std::string::npos)
        << lastFileError().text;
}

}  // namespace
}  // namespace cad::sys
