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

struct FormatRow {
    const char* name;
    std::vector<std::string> texts;
};

class ListFileFormat : public testing::TestWithParam<FormatRow> {
protected:
    cad::sys::TestTempFolder temp_;
};

// Equal bytes on disk also prove that files written so by another program load.
TEST_P(ListFileFormat, WritesTheFormatAndReadsItBack) {
    const std::string path = temp_.file("UBList0.dat");
    ASSERT_TRUE(ListFile::write(path, GetParam().texts));
    EXPECT_EQ(temp_.readBytes("UBList0.dat"), fileOf(GetParam().texts));
    EXPECT_EQ(ListFile::readAll(path), GetParam().texts);
}

std::vector<std::string> numbered(int count) {
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) texts.push_back("D:\\lib\\part" + std::to_string(i) + ".dwg");
    return texts;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ListFileFormat,
    testing::Values(FormatRow{"empty", {}}, FormatRow{"one_path", {"C:\\Parts\\valve.dwg"}},
                    FormatRow{"korean_names", {"주 관리창", "배관 부품"}},
                    FormatRow{"26_byte_path", {"C:\\lib\\abcdefghijklmno.dwg"}},
                    FormatRow{"26_byte_korean_name", {"가나다라마바사아자차카타파"}},
                    FormatRow{"length_0x0A", {"C:\\a\\b.dwg"}},
                    FormatRow{"count_0x0A", numbered(10)},
                    FormatRow{"259_bytes", {"C:\\" + std::string(252, 'p') + ".dwg"}}),
    [](const auto& row) { return std::string(row.param.name); });

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

struct DamageRow {
    const char* name;
    std::string bytes;
    std::vector<std::string> texts;
};

class ListFileDamage : public testing::TestWithParam<DamageRow> {};

TEST_P(ListFileDamage, KeepsWhatWasReadBeforeTheDamage) {
    cad::sys::TestTempFolder temp;
    temp.writeBytes("UBList0.dat", GetParam().bytes);
    EXPECT_EQ(ListFile::readAll(temp.file("UBList0.dat")), GetParam().texts);
}

const std::string kA = "C:\\a.dwg";
const std::string kB = "C:\\b.dwg";

INSTANTIATE_TEST_SUITE_P(
    Rows, ListFileDamage,
    testing::Values(
        DamageRow{"truncated_inside_text",
                  le32(3) + record(kA) + record(kB) + record("C:\\c.dwg").substr(0, 11),
                  {kA, kB}},
        DamageRow{"count_beyond_entries", le32(5) + record(kA), {kA}},
        DamageRow{
            "zero_length_skipped", le32(3) + record(kA) + le32(0) + le32(0) + record(kB), {kA, kB}},
        DamageRow{"negative_length_skipped", le32(2) + le32(0) + le32(-40) + record(kB), {kB}},
        DamageRow{"length_260_stops",
                  le32(2) + record(kA) + le32(0) + le32(260) + std::string(260, 'p'),
                  {kA}},
        DamageRow{
            "absurd_length_stops", le32(2) + record(kA) + le32(0) + le32(0x7FFFFFFF) + "xyz", {kA}},
        DamageRow{"eof_byte_ends_data", le32(2) + record(kA) + "\x1A" + record(kB), {kA}}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace vantor
