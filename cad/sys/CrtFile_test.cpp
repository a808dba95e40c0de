// The C runtime's text mode byte for byte: what lands on disk, what comes back, and where
// the data ends; binary mode as the control.
#include "cad/sys/CrtFile.h"

#include <gtest/gtest.h>

#include <string>

#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

using namespace std::string_literals;

std::string writeThrough(const TestTempFolder& folder, std::string_view mode,
                         std::string_view bytes) {
    CrtFile file;
    EXPECT_EQ(file.open(folder.file("out.dat"), mode), ErrorStatus::eOk);
    EXPECT_EQ(file.write(bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(file.close(), ErrorStatus::eOk);
    return folder.readBytes("out.dat");
}

// Reads everything in pieces of `chunk` bytes, so that pieces ending inside a CR LF pair
// are exercised as well as whole-buffer reads.
std::string readThrough(const TestTempFolder& folder, std::string_view mode, std::size_t chunk) {
    CrtFile file;
    EXPECT_EQ(file.open(folder.file("in.dat"), mode), ErrorStatus::eOk);
    std::string all;
    std::string piece(chunk, '\0');
    while (std::size_t got = file.read(piece.data(), chunk)) all.append(piece, 0, got);
    EXPECT_TRUE(file.atEnd());
    EXPECT_EQ(file.read(piece.data(), chunk), 0u) << "the end of the data must stay the end";
    EXPECT_EQ(file.close(), ErrorStatus::eOk);
    return all;
}

TEST(CrtFileTest, TextModeWriteStoresLineFeedAsCrLf) {
    std::string crLfs;
    for (int i = 0; i < 5000; ++i) crLfs += "\r\n";
    const struct {
        const char* name;
        std::string written;
        std::string onDisk;
    } rows[] = {
        {"line feed", "a\nb\n", "a\r\nb\r\n"},
        {"CR LF gets a second CR", "a\r\n", "a\r\r\n"},
        {"lone CR and 0x1A unchanged", "\r\x1A"s, "\r\x1A"s},
        {"zero bytes unchanged", "\0\n\0"s, "\0\r\n\0"s},
        {"line feeds only", std::string(5000, '\n'), crLfs},
    };
    TestTempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(writeThrough(folder, "w", row.written), row.onDisk);
        EXPECT_EQ(writeThrough(folder, "wt", row.written), row.onDisk);
        EXPECT_EQ(writeThrough(folder, "wb", row.written), row.written);
    }
}

TEST(CrtFileTest, TextModeReadTranslatesAndStopsAt0x1A) {
    const std::string full(CrtFile::kBufferSize - 1, 'x');  // the next byte ends the buffer
    const struct {
        const char* name;
        std::string onDisk;
        std::string textRead;
    } rows[] = {
        // clang-format off
        {"CR LF becomes LF", "a\r\nb\r\n", "a\nb\n"},
        {"lone LF stays", "a\nb", "a\nb"},
        {"lone CR stays", "a\rb", "a\rb"},
        {"CR CR LF", "\r\r\n", "\r\n"},
        {"CR at end of file", "ab\r", "ab\r"},
        {"CR before 0x1A", "a\r\x1A\n", "a\r"},
        {"0x1A ends the data", "ab\x1A" "cd\r\n", "ab"},
        {"0x1A first", "\x1A" "abc", ""},
        {"empty file", "", ""},
        {"CR LF across the buffer boundary", full + "\r\nz", full + "\nz"},
        {"CR then other byte across the boundary", full + "\rz", full + "\rz"},
        {"CR then 0x1A across the boundary", full + "\r\x1Az", full + "\r"},
        {"CR last byte of a full buffer", full + "\r", full + "\r"},
        {"0x1A first byte of the second buffer", full + "y\x1Az", full + "y"},
        // clang-format on
    };
    TestTempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.writeBytes("in.dat", row.onDisk);
        for (std::size_t chunk : {std::size_t{1}, std::size_t{3}, CrtFile::kBufferSize * 3}) {
            SCOPED_TRACE(chunk);
            EXPECT_EQ(readThrough(folder, "r", chunk), row.textRead);
        }
        EXPECT_EQ(readThrough(folder, "rb", 7), row.onDisk);
    }
}

TEST(CrtFileTest, Int32ThroughTextMode) {
    const struct {
        const char* name;
        std::int32_t value;
        std::string onDisk;
    } rows[] = {
        {"plain", 0x01020304, "\x04\x03\x02\x01"},
        {"0x0A gets a CR", 10, "\r\n\0\0\0"s},
        {"all bytes 0x0A", 0x0A0A0A0A, "\r\n\r\n\r\n\r\n"},
        {"0x0D then 0x0A", 0x0A0D, "\r\r\n\0\0"s},
        {"0x0A then 0x0D", 0x0D0A, "\r\n\r\0\0"s},
        {"negative", -2, "\xFE\xFF\xFF\xFF"},
    };
    TestTempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        CrtFile out;
        ASSERT_EQ(out.open(folder.file("n.dat"), "w"), ErrorStatus::eOk);
        EXPECT_TRUE(out.writeInt32(row.value));
        EXPECT_EQ(out.close(), ErrorStatus::eOk);
        EXPECT_EQ(folder.readBytes("n.dat"), row.onDisk);

        CrtFile in;
        ASSERT_EQ(in.open(folder.file("n.dat"), "r"), ErrorStatus::eOk);
        std::int32_t back = 0;
        EXPECT_TRUE(in.readInt32(back));
        EXPECT_EQ(back, row.value);
        EXPECT_TRUE(in.atEnd());
    }
}

TEST(CrtFileTest, Int32CutBy0x1AOrTheEndFails) {
    const std::string rows[] = {"\x1A\0\0\0"s, "\x01\x1A\0\0"s, "\x01\x02\x03"s, "\x01\x02\r\x1A"s};
    TestTempFolder folder;
    for (const auto& onDisk : rows) {
        folder.writeBytes("n.dat", onDisk);
        CrtFile in;
        ASSERT_EQ(in.open(folder.file("n.dat"), "r"), ErrorStatus::eOk);
        std::int32_t value = 0;
        EXPECT_FALSE(in.readInt32(value)) << testing::PrintToString(onDisk);
    }
    // In binary mode 0x1A is a byte like any other.
    CrtFile binary;
    ASSERT_EQ(binary.open(folder.file("n.dat"), "wb"), ErrorStatus::eOk);
    EXPECT_TRUE(binary.writeInt32(26));
    binary.close();
    ASSERT_EQ(binary.open(folder.file("n.dat"), "rb"), ErrorStatus::eOk);
    std::int32_t value = 0;
    EXPECT_TRUE(binary.readInt32(value));
    EXPECT_EQ(value, 26);
}

TEST(CrtFileTest, OpenModesRefusalsAndFailedWrites) {
    TestTempFolder folder;
    std::filesystem::create_directory(folder.path() / "sub");
    CrtFile file;
    EXPECT_EQ(file.open(folder.file("missing.dat"), "r"), ErrorStatus::eFileNotFound);
    EXPECT_EQ(file.open(folder.file("nofolder/a.dat"), "w"), ErrorStatus::eFileNotFound);
    EXPECT_EQ(file.open(folder.file("sub"), "r"), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(file.open(folder.file("sub"), "w"), ErrorStatus::eFileAccessErr);
    for (const char* mode : {"", "x", "r+", "w+", "rw", "wbt", "rx", "R"}) {
        EXPECT_EQ(file.open(folder.file("a.dat"), mode), ErrorStatus::eInvalidInput) << mode;
    }
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.close(), ErrorStatus::eInvalidOpenState);

    // "w" truncates, "a" appends with the same translation.
    EXPECT_EQ(writeThrough(folder, "w", "long old text"), "long old text");
    EXPECT_EQ(writeThrough(folder, "w", "a\n"), "a\r\n");
    EXPECT_EQ(writeThrough(folder, "a", "b\n"), "a\r\nb\r\n");
    EXPECT_EQ(writeThrough(folder, "ab", "c\n"), "a\r\nb\r\nc\n");

    ASSERT_EQ(file.open(folder.file("out.dat"), "r"), ErrorStatus::eOk);
    EXPECT_EQ(file.open(folder.file("out.dat"), "r"), ErrorStatus::eInvalidOpenState);
    EXPECT_EQ(file.write("x", 1), 0u) << "a stream opened to read takes no writes";
    file.close();

    ASSERT_EQ(file.open("/dev/full", "w"), ErrorStatus::eOk);
    EXPECT_EQ(file.write("abc", 3), 3u) << "buffered until the flush";
    EXPECT_EQ(file.close(), ErrorStatus::eFileWriteError);
}

TEST(CrtFileTest, MovedStreamContinuesWhereItWas) {
    TestTempFolder folder;
    folder.writeBytes("in.dat", "ab\r\ncd");
    CrtFile first;
    ASSERT_EQ(first.open(folder.file("in.dat"), "r"), ErrorStatus::eOk);
    char head[2];
    ASSERT_EQ(first.read(head, 2), 2u);
    CrtFile second(std::move(first));
    EXPECT_FALSE(first.isOpen());
    char rest[8];
    EXPECT_EQ(std::string(rest, second.read(rest, sizeof rest)), "\ncd");
    CrtFile third;
    third = std::move(second);
    EXPECT_TRUE(third.atEnd());
    EXPECT_EQ(third.close(), ErrorStatus::eOk);
}

}  // namespace
}  // namespace cad::sys
