// The record fields of the module's files through text mode: the 26-byte rule, counts and
// lengths whose bytes are 0x0A or 0x1A, damaged lengths, decimal texts.
#include "cad/sys/CountedText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "cad/sys/TestTempFolder.h"

#if defined(__GNUC__) && !defined(__clang__)
// GCC takes the free() below for a mismatch with operator new; the two replacements are a pair.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

// The largest single request since the last reset, so a test can show that a damaged
// length is refused without taking memory for it.
static std::size_t largestAllocation = 0;

void* operator new(std::size_t size) {
    if (size > largestAllocation) largestAllocation = size;
    if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace cad::sys {
namespace {

using namespace std::string_literals;

constexpr std::size_t kPathMax = 259;

std::string int32Bytes(std::int32_t value) {
    auto bits = static_cast<std::uint32_t>(value);
    return {static_cast<char>(bits), static_cast<char>(bits >> 8), static_cast<char>(bits >> 16),
            static_cast<char>(bits >> 24)};
}

TEST(CountedTextTest, TwentySixBytesAreWrittenAsFlagOneLength25) {
    const struct {
        const char* name;
        std::size_t size;
        std::string header;  // flag and length as they land on disk
    } rows[] = {
        {"empty", 0, "\0\0\0\0\0\0\0\0"s},
        {"length byte 0x0A gets a CR", 10, "\0\0\0\0\r\n\0\0\0"s},
        {"25 bytes", 25, "\0\0\0\0\x19\0\0\0"s},
        {"26 bytes", 26, "\x01\0\0\0\x19\0\0\0"s},
        {"27 bytes", 27, "\0\0\0\0\x1B\0\0\0"s},
        {"259 bytes", kPathMax, "\0\0\0\0\x03\x01\0\0"s},
    };
    TestTempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string text(row.size, 'k');
        CrtFile out;
        ASSERT_EQ(out.open(folder.file("t.dat"), "w"), ErrorStatus::eOk);
        EXPECT_TRUE(writeCountedText(out, text));
        EXPECT_EQ(out.close(), ErrorStatus::eOk);
        EXPECT_EQ(folder.readBytes("t.dat"), row.header + text);

        CrtFile in;
        ASSERT_EQ(in.open(folder.file("t.dat"), "r"), ErrorStatus::eOk);
        EXPECT_EQ(readCountedText(in, kPathMax), text);
        EXPECT_TRUE(in.atEnd());
    }
}

// Only a length of exactly 26 is protected by the flag: 282 (bytes 1A 01) ends the data in its
// length field, and what was read before it is kept. (A count or a text holding 0x1A is the
// text-mode reader's rule, pinned with the CRT file.)
TEST(CountedTextTest, ALengthWhoseFirstByteIs0x1AEndsTheData) {
    TestTempFolder folder;
    CrtFile out;
    ASSERT_EQ(out.open(folder.file("t.dat"), "w"), ErrorStatus::eOk);
    EXPECT_TRUE(writeCountedText(out, "first"));
    EXPECT_TRUE(writeCountedText(out, std::string(282, 'q')));
    EXPECT_EQ(out.close(), ErrorStatus::eOk);
    CrtFile in;
    ASSERT_EQ(in.open(folder.file("t.dat"), "r"), ErrorStatus::eOk);
    EXPECT_EQ(readCountedText(in, 1024), "first");
    EXPECT_EQ(readCountedText(in, 1024), std::nullopt);
}

TEST(CountedTextTest, DamagedLengthsAreRefusedWithoutAllocating) {
    constexpr auto kMaxInt = std::numeric_limits<std::int32_t>::max();
    const struct {
        const char* name;
        std::int32_t flag;
        std::int32_t length;
        std::size_t maxLength;
    } rows[] = {
        {"negative", 0, -5, kPathMax},
        {"2^31", 0, std::numeric_limits<std::int32_t>::min(), kPathMax},
        {"2^31-1 above the limit", 0, kMaxInt, kPathMax},
        {"flag makes 2^31", 1, kMaxInt, std::numeric_limits<std::size_t>::max()},
        {"2^31-1 beyond the file", 0, kMaxInt, std::numeric_limits<std::size_t>::max()},
        {"above the limit by one", 0, kPathMax + 1, kPathMax},
        {"flag lifts 259 above the limit", 1, kPathMax, kPathMax},
        {"beyond the file", 0, 200, kPathMax},
    };
    TestTempFolder folder;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.writeBytes("t.dat", int32Bytes(row.flag) + int32Bytes(row.length) + "short");
        CrtFile in;
        ASSERT_EQ(in.open(folder.file("t.dat"), "rb"), ErrorStatus::eOk);
        largestAllocation = 0;
        EXPECT_EQ(readCountedText(in, row.maxLength), std::nullopt);
        EXPECT_LE(largestAllocation, 16u * 1024);
    }
    // A file that ends inside the header.
    folder.writeBytes("t.dat", "\0\0\0\0\x05\0"s);
    CrtFile in;
    ASSERT_EQ(in.open(folder.file("t.dat"), "r"), ErrorStatus::eOk);
    EXPECT_EQ(readCountedText(in, kPathMax), std::nullopt);
}

TEST(CountedTextTest, DecimalTextsAndTheirRefusals) {
    const std::pair<std::int64_t, std::string> rows[] = {
        // clang-format off
        {0, "\x01\0\0\0"s "0"},
        {-1, "\x02\0\0\0"s "-1"},
        {26, "\x02\0\0\0"s "26"},
        {1234567890, "\r\n\0\0\0"s "1234567890"},  // length 10 gets a CR
        {-123456789, "\r\n\0\0\0"s "-123456789"},
        {std::numeric_limits<std::int64_t>::max(), "\x13\0\0\0"s "9223372036854775807"},
        {std::numeric_limits<std::int64_t>::min(), "\x14\0\0\0"s "-9223372036854775808"},
        // clang-format on
    };
    TestTempFolder folder;
    for (const auto& [value, onDisk] : rows) {
        SCOPED_TRACE(value);
        CrtFile out;
        ASSERT_EQ(out.open(folder.file("d.dat"), "w"), ErrorStatus::eOk);
        EXPECT_TRUE(writeDecimalText(out, value));
        EXPECT_EQ(out.close(), ErrorStatus::eOk);
        EXPECT_EQ(folder.readBytes("d.dat"), onDisk);
        CrtFile in;
        ASSERT_EQ(in.open(folder.file("d.dat"), "r"), ErrorStatus::eOk);
        EXPECT_EQ(readDecimalText(in), value);
    }
    for (const std::string& onDisk : {
             int32Bytes(0), int32Bytes(-1), int32Bytes(21) + std::string(21, '1'),
             int32Bytes(2) + "1a", int32Bytes(1) + "-", int32Bytes(2) + "+5", int32Bytes(2) + " 5",
             int32Bytes(20) + "99999999999999999999",  // beyond 64 bits
             int32Bytes(5) + "12",                     // ends early
         }) {
        folder.writeBytes("d.dat", onDisk);
        CrtFile in;
        ASSERT_EQ(in.open(folder.file("d.dat"), "rb"), ErrorStatus::eOk);
        EXPECT_EQ(readDecimalText(in), std::nullopt) << testing::PrintToString(onDisk);
    }
}

}  // namespace
}  // namespace cad::sys
