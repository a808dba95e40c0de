// The list file format against bytes built independently here: counted texts in CP949 behind
// a count, as a text-mode writer leaves them on disk; and what damaged files still give.
#include "vantor/registry/ListFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cad/sys/CodePage.h"
#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

using cad::sys::utf8ToCp949;

std::string le32(std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    return {static_cast<char>(bits & 0xFF), static_cast<char>((bits >> 8) & 0xFF),
            static_cast<char>((bits >> 16) & 0xFF), static_cast<char>((bits >> 24) & 0xFF)};
}

// A record as the format defines it, before text mode touches it.
std::string record(std::string_view utf8) {
    const std::string bytes = utf8ToCp949(utf8);
    const bool flagged = bytes.size() == 26;
    return le32(flagged ? 1 : 0) +
           le32(static_cast<std::int32_t>(bytes.size()) - (flagged ? 1 : 0)) + bytes;
}

// What a text-mode writer stores: every LF preceded by a CR.
std::string onDisk(std::string_view bytes) {
    std::string disk;
    for (char c : bytes) {
        if (c == '\n') disk += '\r';
        disk += c;
    }
    return disk;
}

std::string fileOf(const std::vector<std::string>& texts) {
    std::string bytes = le32(static_cast<std::int32_t>(texts.size()));
    for (const std::string& text : texts) bytes += record(text);
    return onDisk(bytes);
}

std::vector<std::string> numbered(int count) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) texts.push_back("D:\\lib\\part" + std::to_string(i) + ".dwg");
    return texts;
}

// Equal bytes on disk also prove that files written so by another program load.
TEST(ListFile, WritesTheFormatAndReadsItBack) {
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"empty", {}},
        {"one path", {"C:\\Parts\\valve.dwg"}},
        {"korean names", {"주 관리창", "배관 부품"}},
        {"26-byte path", {"C:\\lib\\abcdefghijklmno.dwg"}},
        {"26-byte korean name", {"가나다라마바사아자차카타파"}},
        {"length 0x0A", {"C:\\a\\b.dwg"}},
        {"count 0x0A", numbered(10)},
        {"259 bytes", {"C:\\" + std::string(252, 'p') + ".dwg"}},
    };
    cad::sys::TestTempFolder temp;
    const std::string path = temp.file("UBList0.dat");
    for (const auto& [name, texts] : rows) {
        ASSERT_TRUE(ListFile::write(path, texts)) << name;
        EXPECT_EQ(temp.readBytes("UBList0.dat"), fileOf(texts)) << name;
        EXPECT_EQ(ListFile::readAll(path), texts) << name;
    }
}

// Text mode would store a line feed as two bytes beside a length of one, and 0x1A would end
// the data, so control characters (and carets, to tell them apart) go in their caret form;
// every other control character takes the same path, pinned with the caret form itself.
TEST(ListFile, ControlCharactersGoInCaretFormAndReadBack) {
    const struct {
        const char* name;
        std::string text;
        std::string stored;
    } rows[] = {
        {"line feed", "주 관리창\n2", "주 관리창^J2"},
        {"caret", "2^3 ^ ", "2^ 3 ^  "},
        {"byte 0x1A", "x\x1Ay", "x^Zy"},
    };
    cad::sys::TestTempFolder temp;
    const std::string path = temp.file("UBTabList.dat");
    for (const auto& row : rows) {
        const std::vector<std::string> texts = {row.text, "C:\\after.dwg"};
        ASSERT_TRUE(ListFile::write(path, texts)) << row.name;
        EXPECT_EQ(temp.readBytes("UBTabList.dat"), fileOf({row.stored, "C:\\after.dwg"}))
            << row.name;
        EXPECT_EQ(ListFile::readAll(path), texts) << row.name;
    }
    // A caret before anything but a blank or a control letter is a caret, as files written
    // before the caret form hold it.
    temp.writeBytes("UBTabList.dat", fileOf({"2^3^a^"}));
    EXPECT_EQ(ListFile::readAll(path), std::vector<std::string>{"2^3^a^"});
    // The limit counts the caret form: 258 bytes and a line feed are 260 on disk.
    EXPECT_FALSE(ListFile::fits(std::string(258, 'p') + "\n"));
    EXPECT_TRUE(ListFile::fits(std::string(257, 'p') + "\n"));
}

TEST(ListFile, TwentySixEntriesWriteACountThatReadsAsAnEmptyFile) {
    cad::sys::TestTempFolder temp;
    const std::string path = temp.file("UBList1.dat");
    ASSERT_TRUE(ListFile::write(path, numbered(26)));
    EXPECT_EQ(temp.readBytes("UBList1.dat").substr(0, 4), le32(26));
    EXPECT_EQ(ListFile::readAll(path), std::vector<std::string>{});
}

TEST(ListFile, MissingFileDoesNotOpen) {
    cad::sys::TestTempFolder temp;
    EXPECT_EQ(ListFile::readAll(temp.file("UBList9.dat")), std::nullopt);
}

TEST(ListFile, DamagedFileKeepsWhatWasReadBeforeTheDamage) {
    const std::string a = "C:\\a.dwg", b = "C:\\b.dwg";
    const struct {
        const char* name;
        std::string bytes;
        std::vector<std::string> texts;
    } rows[] = {
        {"truncated inside text",
         le32(3) + record(a) + record(b) + record("C:\\c.dwg").substr(0, 11),
         {a, b}},
        {"count beyond entries", le32(5) + record(a), {a}},
        {"zero length skipped", le32(3) + record(a) + le32(0) + le32(0) + record(b), {a, b}},
        {"negative length skipped", le32(2) + le32(0) + le32(-40) + record(b), {b}},
        {"length 260 stops",
         le32(2) + record(a) + le32(0) + le32(260) + std::string(260, 'p'),
         {a}},
        {"absurd length stops", le32(2) + record(a) + le32(0) + le32(0x7FFFFFFF) + "xyz", {a}},
        {"eof byte ends data", le32(2) + record(a) + "\x1A" + record(b), {a}},
    };
    cad::sys::TestTempFolder temp;
    for (const auto& row : rows) {
        temp.writeBytes("UBList0.dat", row.bytes);
        EXPECT_EQ(ListFile::readAll(temp.file("UBList0.dat")), row.texts) << row.name;
    }
}

}  // namespace
}  // namespace vantor
