// Text values between code pages and UTF-8 with the DXF escapes, including the double-byte
// trail byte that looks like a backslash and escapes that are not well formed.
#include "cad/db/dxf/TextCodec.h"

#include <gtest/gtest.h>

#include <string>

namespace cad::db::dxf {
namespace {

using sys::CodePage;

struct DecodeRow {
    const char* name;
    std::string_view raw;
    CodePage codePage;
    std::string_view utf8;
};

class DecodeText : public testing::TestWithParam<DecodeRow> {};

TEST_P(DecodeText, GivesUtf8) {
    EXPECT_EQ(decodeText(GetParam().raw, GetParam().codePage), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    Values, DecodeText,
    testing::Values(
        DecodeRow{"ascii", "Layer 0", CodePage::Ansi949, "Layer 0"},
        DecodeRow{"cp949_bytes", "\xC7\xD1\xB1\xDB", CodePage::Ansi949, "한글"},
        DecodeRow{"cp949_with_u_escape", "\xC7\xD1 \\U+0E01", CodePage::Ansi949, "한 ก"},
        DecodeRow{"m_escape_korean", "\\M+3B0A1\\M+3B0A2", CodePage::Ansi1252, "가각"},
        DecodeRow{"m_escape_japanese", "\\M+182A0", CodePage::Ansi1252, "あ"},
        DecodeRow{"u_escape_lower_hex", "\\U+00e9t\\U+00E9", CodePage::Ansi1252, "été"},
        DecodeRow{"utf8_file_with_u_escape", "\xC3\xBC=\\U+00FC", CodePage::Utf8, "ü=ü"},
        DecodeRow{"surrogate_pair", "\\U+D83D\\U+DE00", CodePage::Utf8, "😀"},
        // A trail byte of 0x5C is part of a character in CP932, not the start of an escape.
        DecodeRow{"dbcs_trail_backslash", "\x95\x5CU+0041", CodePage::Ansi932, "表U+0041"},
        DecodeRow{"carets", "a^Jb^ c^Id", CodePage::Ansi1252, "a\nb^c\td"},
        DecodeRow{"caret_before_other", "x^2 ^a", CodePage::Ansi1252, "x^2 ^a"},
        DecodeRow{"bad_hex_kept", "\\U+12G4", CodePage::Ansi1252, "\\U+12G4"},
        DecodeRow{"short_escape_kept", "end\\U+00", CodePage::Ansi1252, "end\\U+00"},
        DecodeRow{"nul_escape_kept", "\\U+0000", CodePage::Ansi1252, "\\U+0000"},
        DecodeRow{"lone_low_surrogate_kept", "\\U+DE00", CodePage::Utf8, "\\U+DE00"},
        DecodeRow{"unpaired_high_surrogate_kept", "\\U+D83Dx", CodePage::Utf8, "\\U+D83Dx"},
        DecodeRow{"johab_kept", "\\M+48861", CodePage::Ansi949, "\\M+48861"},
        DecodeRow{"m_escape_single_byte_kept", "\\M+30041", CodePage::Ansi949, "\\M+30041"},
        DecodeRow{"m_escape_unassigned_kept", "\\M+3FFFF", CodePage::Ansi949, "\\M+3FFFF"},
        DecodeRow{"mtext_codes_kept", "\\P\\fArial|b0;\\S1^ 2;", CodePage::Ansi1252,
                  "\\P\\fArial|b0;\\S1^2;"},
        DecodeRow{"trailing_backslash_and_caret", "a\\ b^", CodePage::Ansi1252, "a\\ b^"}),
    [](const testing::TestParamInfo<DecodeRow>& row) { return row.param.name; });

TEST(EncodeText, EscapesWhatTheCodePageCannotHold) {
    EXPECT_EQ(encodeText("한글 ก", CodePage::Ansi949), "\xC7\xD1\xB1\xDB \\U+0E01");
    EXPECT_EQ(encodeText("été", CodePage::Ansi1252), "\xE9t\xE9");
    EXPECT_EQ(encodeText("été 한", CodePage::Utf8), "été 한");
    EXPECT_EQ(encodeText("plain", CodePage::Ansi949), "plain");
}

TEST(EncodeText, WritesControlCharactersAndCaretsInCaretForm) {
    EXPECT_EQ(encodeText("a\nb", CodePage::Utf8), "a^Jb");
    EXPECT_EQ(encodeText("x^2", CodePage::Ansi949), "x^ 2");
    EXPECT_EQ(encodeText(std::string_view("\0\x1F", 2), CodePage::Ansi1252), "^@^_");
}

TEST(EncodeText, RoundTripsThroughDecode) {
    for (const CodePage codePage : {CodePage::Ansi949, CodePage::Ansi1252, CodePage::Utf8}) {
        for (const std::string_view text :
             {"ASCII only", "한글 부품 ก", "tab\tcaret^ newline\n", "x^^y"}) {
            EXPECT_EQ(decodeText(encodeText(text, codePage), codePage), text)
                << static_cast<int>(codePage) << ": " << text;
        }
    }
}

struct FileCodePageRow {
    const char* name;
    const char* acadVersion;
    const char* dwgCodePage;
    CodePage expected;
};

class FileCodePage : public testing::TestWithParam<FileCodePageRow> {};

TEST_P(FileCodePage, FollowsVersionThenHeader) {
    EXPECT_EQ(fileCodePage(GetParam().acadVersion, GetParam().dwgCodePage), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Headers, FileCodePage,
    testing::Values(FileCodePageRow{"r2000_korean", "AC1015", "ANSI_949", CodePage::Ansi949},
                    FileCodePageRow{"r13_dos", "AC1012", "dos932", CodePage::Dos932},
                    FileCodePageRow{"r2007_ignores_header", "AC1021", "ANSI_949", CodePage::Utf8},
                    FileCodePageRow{"r2018", "AC1032", "ANSI_1252", CodePage::Utf8},
                    FileCodePageRow{"r12_defaults", "AC1009", "ANSI_1252", CodePage::Ansi1252},
                    FileCodePageRow{"unknown_name", "AC1015", "ANSI_99999", CodePage::Ansi1252},
                    FileCodePageRow{"odd_version", "junk", "ANSI_949", CodePage::Ansi949}),
    [](const testing::TestParamInfo<FileCodePageRow>& row) { return row.param.name; });

}  // namespace
}  // namespace cad::db::dxf
