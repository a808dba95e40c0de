// The tag reader on small inline files: the line-end and blank conventions of text DXF, binary
// DXF of both code sizes, and the errors of damaged input with the line they name.
#include "cad/db/dxf/TagReader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace cad::db::dxf {
namespace {

struct Read {
    std::vector<Tag> tags;
    std::optional<DxfError> error;
};

Read readTags(std::string_view bytes, TextArena& arena) {
    Read result;
    result.error = TagReader::read(bytes, result.tags, arena);
    return result;
}

std::string describe(const std::vector<Tag>& tags) {
    std::string text;
    for (const Tag& tag : tags) {
        text += std::to_string(tag.code) + "@" + std::to_string(tag.line) + "=" +
                std::string(tag.value) + "|";
    }
    return text;
}

struct TextRow {
    const char* name;
    std::string_view file;
    const char* tags;  // code@line=value| for each tag
};

class ReadText : public testing::TestWithParam<TextRow> {};

TEST_P(ReadText, GivesTheTagsWithTheirLines) {
    TextArena arena;
    const Read read = readTags(GetParam().file, arena);
    ASSERT_FALSE(read.error) << read.error->message;
    EXPECT_EQ(describe(read.tags), GetParam().tags);
}

INSTANTIATE_TEST_SUITE_P(
    Conventions, ReadText,
    testing::Values(
        TextRow{"lf", "  0\nSECTION\n  2\nHEADER\n", "0@1=SECTION|2@3=HEADER|"},
        TextRow{"crlf", "  0\r\nSECTION\r\n 70\r\n     1\r\n", "0@1=SECTION|70@3=     1|"},
        TextRow{"no_final_newline", "0\nSECTION\n0\nEOF", "0@1=SECTION|0@3=EOF|"},
        TextRow{"codes_padded_both_sides", "\t 10 \r\n1.5\n", "10@1=1.5|"},
        // Three wide, as most writers have it, and every other width.
        TextRow{"code_widths", "  5\n1\n 62\r\n2\n330\n3\n0  \n4\n 1 \n5\n1001\n6\n8\n7\n",
                "5@1=1|62@3=2|330@5=3|0@7=4|1@9=5|1001@11=6|8@13=7|"},
        TextRow{"value_of_sixteen_and_more_bytes",
                "  1\n0123456789ABCDEF\n  1\n0123456789ABCDEFG\n",
                "1@1=0123456789ABCDEF|1@3=0123456789ABCDEFG|"},
        TextRow{"utf8_bom", "\xEF\xBB\xBF  0\nEOF\n", "0@1=EOF|"},
        // Text keeps its blanks; numbers and handles lose trailing ones.
        TextRow{"string_keeps_blanks", "  1\n  text  \n", "1@1=  text  |"},
        TextRow{"number_loses_trailing_blanks", " 40\n 2.5  \r\n", "40@1= 2.5|"},
        TextRow{"handle_loses_trailing_blanks", "330\n1F \n", "330@1=1F|"},
        TextRow{"empty_value", "  1\n\n  0\nEOF\n", "1@1=|0@3=EOF|"},
        TextRow{"comment_dropped", "999\nmade by hand\n  0\nEOF\n", "0@3=EOF|"},
        TextRow{"stops_at_eof", "  0\nEOF\ngarbage after the end\x1a", "0@1=EOF|"},
        TextRow{"eof_with_blanks", "  0\nEOF  \r\n  0\nMORE\n", "0@1=EOF  |"}),
    [](const testing::TestParamInfo<TextRow>& row) { return row.param.name; });

struct DamageRow {
    const char* name;
    std::string_view file;
    std::uint32_t line;
    const char* message;
};

class ReadDamaged : public testing::TestWithParam<DamageRow> {};

TEST_P(ReadDamaged, NamesTheLineAndWhatWasExpected) {
    TextArena arena;
    const Read read = readTags(GetParam().file, arena);
    ASSERT_TRUE(read.error);
    EXPECT_EQ(read.error->line, GetParam().line);
    EXPECT_EQ(read.error->message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Errors, ReadDamaged,
    testing::Values(
        DamageRow{"empty_file", "", 1, "line 1: the file is empty; expected a group code"},
        DamageRow{"truncated_after_code", "  0\nSECTION\n 10\n", 3,
                  "line 3: unexpected end of file after group code 10"},
        DamageRow{"truncated_code_without_newline", "  0\nSECTION\n 10", 3,
                  "line 3: unexpected end of file after group code 10"},
        DamageRow{"non_numeric_code", "  0\nSECTION\nabc\nHEADER\n", 3,
                  "line 3: expected a group code, found 'abc'"},
        DamageRow{"blank_line_for_code", "  0\nSECTION\n\n  2\n", 3,
                  "line 3: expected a group code, found ''"},
        DamageRow{"negative_code", "-1\nx\n", 1, "line 1: expected a group code, found '-1'"},
        DamageRow{"code_out_of_range", "99999\nx\n", 1,
                  "line 1: expected a group code, found '99999'"},
        DamageRow{"garbage_bytes", std::string_view("\x89PNG\r\n\x1a\n\0\0", 10), 1,
                  "line 1: expected a group code, found '\\x89PNG'"},
        DamageRow{"code_with_text_after", " 10 x\n1\n", 1,
                  "line 1: expected a group code, found ' 10 x'"},
        DamageRow{"blank_inside_code", "  0\nA\n1 0\nx\n", 3,
                  "line 3: expected a group code, found '1 0'"},
        DamageRow{"dwg", "AC1015\0\0\0\0", 0, "DWG files cannot be read; save the drawing as DXF"}),
    [](const testing::TestParamInfo<DamageRow>& row) { return row.param.name; });

TEST(ReadDamaged, ALongLineIsShownShortened) {
    TextArena arena;
    const Read read = readTags(std::string(1000, 'x') + "\n1\n", arena);
    ASSERT_TRUE(read.error);
    EXPECT_EQ(read.error->message,
              "line 1: expected a group code, found '" + std::string(40, 'x') + "...'");
}

// Binary DXF built by hand: little-endian numbers, zero-terminated strings, chunk lengths.
class BinaryFile {
public:
    explicit BinaryFile(bool shortCodes) : shortCodes_(shortCodes) {
        bytes_.assign("AutoCAD Binary DXF\r\n\x1a\0", 22);
    }
    BinaryFile& code(int code) {
        if (!shortCodes_) return little(code, 2);
        if (code < 255) return little(code, 1);
        little(255, 1);
        return little(code, 2);
    }
    BinaryFile& string(int c, std::string_view text) {
        code(c);
        bytes_ += text;
        bytes_ += '\0';
        return *this;
    }
    BinaryFile& integer(int c, std::int64_t value, int size) {
        code(c);
        return little(static_cast<std::uint64_t>(value), size);
    }
    BinaryFile& real(int c, double value) {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        code(c);
        return little(bits, 8);
    }
    BinaryFile& chunk(int c, std::string_view data) {
        code(c);
        bytes_ += static_cast<char>(data.size());
        bytes_ += data;
        return *this;
    }
    BinaryFile& byte(int c, int value) {
        code(c);
        bytes_ += static_cast<char>(value);
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

private:
    BinaryFile& little(std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i) bytes_ += static_cast<char>(value >> (8 * i) & 0xFF);
        return *this;
    }

    bool shortCodes_;
    std::string bytes_;
};

std::string values(const std::vector<Tag>& tags) {
    std::string text;
    for (const Tag& tag : tags)
        text += std::to_string(tag.code) + "=" + std::string(tag.value) + "|";
    return text;
}

TEST(ReadBinary, TwoByteCodesOfEveryValueType) {
    BinaryFile file(false);
    file.string(0, "SECTION")
        .string(2, "ENTITIES")
        .string(5, "1F")
        .real(10, -0.1)
        .integer(70, -2, 2)
        .integer(90, 100000, 4)
        .integer(160, 1LL << 40, 8)
        .byte(290, 1)
        .chunk(310, std::string_view("\x00\xAB", 2))
        .string(1000, "xdata")
        .integer(1071, -7, 4)
        .string(0, "EOF");
    TextArena arena;
    const Read read = readTags(file.bytes(), arena);
    ASSERT_FALSE(read.error) << read.error->message;
    EXPECT_EQ(values(read.tags),
              "0=SECTION|2=ENTITIES|5=1F|10=-0.1|70=-2|90=100000|160=1099511627776|290=1|"
              "310=00AB|1000=xdata|1071=-7|0=EOF|");
    EXPECT_EQ(read.tags[1].line, 22u + 2 + 8) << "binary tags are placed by byte offset";
}

TEST(ReadBinary, OneByteCodesWithTheEscapeForLargeOnes) {
    BinaryFile file(true);
    file.string(0, "SECTION")
        .string(2, "ENTITIES")
        .real(40, 2.5)
        .string(1001, "APP")
        .integer(1070, 3, 2)
        .string(0, "EOF");
    TextArena arena;
    const Read read = readTags(file.bytes(), arena);
    ASSERT_FALSE(read.error) << read.error->message;
    EXPECT_EQ(values(read.tags), "0=SECTION|2=ENTITIES|40=2.5|1001=APP|1070=3|0=EOF|");
}

TEST(ReadBinary, TruncatedValuesAreErrorsAtTheTagsOffset) {
    const std::string whole = BinaryFile(false).string(0, "SECTION").real(10, 1.0).bytes();
    for (std::size_t cut = 1; cut <= 8; ++cut) {
        TextArena arena;
        const Read read = readTags(std::string_view(whole).substr(0, whole.size() - cut), arena);
        ASSERT_TRUE(read.error) << cut;
        EXPECT_EQ(read.error->message, "offset 32: unexpected end of file after group code 10");
    }
    const std::string unterminated = BinaryFile(false).string(0, "SECTION").bytes() + std::string(
                                                                                          "\x02\x00"
                                                                                          "ENTI",
                                                                                          6);
    TextArena arena;
    const Read read = readTags(unterminated, arena);
    ASSERT_TRUE(read.error);
    EXPECT_EQ(read.error->message, "offset 32: unexpected end of file after group code 2");
}

}  // namespace
}  // namespace cad::db::dxf
