// The tag writer: the layout other programs expect, doubles that read back bit for bit, and
// binary data split into chunks. Output is read back through the tag reader.
#include "cad/db/dxf/TagWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "cad/db/dxf/TagReader.h"

namespace cad::db::dxf {
namespace {

std::vector<Tag> readBack(const std::string& text, TextArena& arena) {
    std::vector<Tag> tags;
    const auto error = TagReader::read(text, tags, arena);
    EXPECT_FALSE(error) << error->message;
    return tags;
}

TEST(TagWriter, AlignsCodesInAFieldOfThree) {
    TagWriter writer;
    writer.writeRaw(0, "SECTION");
    writer.writeInt(70, 1);
    writer.writeRaw(100, "AcDbEntity");
    writer.writeRaw(1001, "APP");
    EXPECT_EQ(writer.text(), "  0\nSECTION\n 70\n1\n100\nAcDbEntity\n1001\nAPP\n");
}

struct DoubleRow {
    const char* name;
    double value;
    const char* text;
};

class WriteDouble : public testing::TestWithParam<DoubleRow> {};

TEST_P(WriteDouble, WritesTheShortestExactForm) {
    TagWriter writer;
    writer.writeDouble(40, GetParam().value);
    EXPECT_EQ(writer.text(), std::string(" 40\n") + GetParam().text + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Values, WriteDouble,
    testing::Values(DoubleRow{"zero", 0.0, "0.0"}, DoubleRow{"negative_zero", -0.0, "-0.0"},
                    DoubleRow{"whole", 100.0, "100.0"}, DoubleRow{"negative_whole", -7.0, "-7.0"},
                    DoubleRow{"five_digits", 99999.0, "99999.0"},
                    DoubleRow{"five_digits_negative", -99999.0, "-99999.0"},
                    DoubleRow{"six_digits_exponent", 100000.0, "1e+05"},
                    DoubleRow{"six_digits_plain", 123456.0, "123456.0"},
                    DoubleRow{"near_whole", 99999.00000000001, "99999.00000000001"},
                    DoubleRow{"third", 1.0 / 3, "0.3333333333333333"},
                    DoubleRow{"large", 1e20, "1e+20"}),
    [](const testing::TestParamInfo<DoubleRow>& row) { return row.param.name; });

TEST(TagWriter, DoublesReadBackBitIdentical) {
    // clang-format off
    std::vector<double> values = {
        0.1, -0.0, 1.0 / 3, std::numeric_limits<double>::max(),
        std::numeric_limits<double>::lowest(), std::numeric_limits<double>::min(),
        std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::epsilon(),
        123456789012345680.0, std::nextafter(1.0, 2.0)};
    // clang-format on
    std::mt19937_64 random(20240611);
    for (int i = 0; i < 2000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value)) values.push_back(value);
    }
    TagWriter writer;
    for (const double value : values) writer.writeDouble(10, value);
    TextArena arena;
    const std::vector<Tag> tags = readBack(writer.text(), arena);
    ASSERT_EQ(tags.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto read = toDouble(tags[i]);
        ASSERT_TRUE(read) << tags[i].value;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*read), std::bit_cast<std::uint64_t>(values[i]))
            << tags[i].value;
    }
}

TEST(TagWriter, WritesIntegersHandlesAndPoints) {
    TagWriter writer;
    writer.writeInt(160, INT64_MIN);
    writer.writeBool(290, true);
    writer.writeHandle(5, 0xA54B);
    writer.writeHandle(330, 0);
    writer.writePoint(10, 1.0, -2.5, 0.0);
    writer.writePoint2d(11, 4.0, 5.0);
    EXPECT_EQ(writer.text(),
              "160\n-9223372036854775808\n290\n1\n  5\nA54B\n330\n0\n"
              " 10\n1.0\n 20\n-2.5\n 30\n0.0\n 11\n4.0\n 21\n5.0\n");
}

TEST(TagWriter, SinkGetsWholeTagsThatAddUpToTheText) {
    const auto writeSome = [](TagWriter& writer) {
        for (int i = 0; i < 50; ++i) {
            writer.writeString(1, "part " + std::to_string(i));
            writer.writePoint(10, i * 0.5, -i, 0.0);
            writer.writeBinary(310, std::string(static_cast<std::size_t>(i), '\x5A'));
        }
        writer.writeRaw(0, "EOF");
    };
    TagWriter whole;
    writeSome(whole);
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{64}, std::size_t{1} << 20}) {
        TagWriter pieces;
        std::vector<std::string> received;
        pieces.setSink([&received](std::string_view piece) { received.emplace_back(piece); },
                       chunk);
        writeSome(pieces);
        pieces.finish();
        EXPECT_TRUE(pieces.text().empty());
        std::string joined;
        for (const std::string& piece : received) {
            // A code line and a value line per tag: a piece never ends inside a tag.
            EXPECT_EQ(std::count(piece.begin(), piece.end(), '\n') % 2, 0) << chunk;
            joined += piece;
        }
        EXPECT_EQ(joined, whole.text()) << chunk;
    }
}

TEST(TagWriter, EncodesStringsForTheFilesCodePage) {
    TagWriter writer(sys::CodePage::Ansi949);
    writer.writeString(1, "부품 ก");
    writer.setCodePage(sys::CodePage::Utf8);
    writer.writeString(1, "부품");
    writer.writeRaw(1, "\xB0\xA1");  // raw values are already in the file's form
    EXPECT_EQ(writer.text(), "  1\n\xBA\xCE\xC7\xB0 \\U+0E01\n  1\n부품\n  1\n\xB0\xA1\n");
}

struct ChunkRow {
    const char* name;
    std::size_t bytes;
    std::vector<std::size_t> chunks;
};

class WriteBinary : public testing::TestWithParam<ChunkRow> {};

TEST_P(WriteBinary, SplitsInto127ByteTagsThatReadBack) {
    std::string data(GetParam().bytes, '\0');
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 37 + 11);
    TagWriter writer;
    writer.writeBinary(310, data);
    TextArena arena;
    const std::vector<Tag> tags = readBack(writer.text(), arena);
    std::vector<std::size_t> sizes;
    std::string joined;
    for (const Tag& tag : tags) {
        EXPECT_EQ(tag.code, 310);
        EXPECT_EQ(tag.value.find_first_of("abcdef"), std::string_view::npos) << "upper case";
        const auto bytes = toBinary(tag);
        ASSERT_TRUE(bytes);
        sizes.push_back(bytes->size());
        joined += *bytes;
    }
    EXPECT_EQ(sizes, GetParam().chunks);
    EXPECT_EQ(joined, data);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, WriteBinary,
    testing::Values(ChunkRow{"empty", 0, {0}}, ChunkRow{"one", 1, {1}},
                    ChunkRow{"one_chunk", 127, {127}}, ChunkRow{"one_over", 128, {127, 1}},
                    ChunkRow{"two_chunks", 254, {127, 127}},
                    ChunkRow{"preview", 1000, {127, 127, 127, 127, 127, 127, 127, 111}}),
    [](const testing::TestParamInfo<ChunkRow>& row) { return row.param.name; });

}  // namespace
}  // namespace cad::db::dxf
