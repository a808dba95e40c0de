// The MTEXT code parser and the single-line special codes, row by row: what each code does
// to the characters, the paragraphs and the format in force.
#include "cad/gs/text/MTextParser.h"

#include <gtest/gtest.h>

#include <numbers>
#include <string>

#include "cad/gs/text/TextCodes.h"

namespace cad::gs {
namespace {

// The characters of every run and stack of every paragraph, paragraphs joined by '|', stacks
// written [upper kind lower], tabs as '\t'; ASCII only, enough for the rows below.
std::string flatten(const MTextContent& content) {
    std::string out;
    for (std::size_t p = 0; p < content.paragraphs.size(); ++p) {
        if (p > 0) out += content.paragraphs[p].columnBreak ? "#N#" : "|";
        for (const MTextRun& run : content.paragraphs[p].runs) {
            auto ascii = [](const std::u32string& s) {
                std::string a;
                for (char32_t c : s) a += c < 0x80 ? static_cast<char>(c) : '?';
                return a;
            };
            if (run.kind == MTextRun::Kind::Stack)
                out += "[" + ascii(run.text) + run.stackKind + ascii(run.lower) + "]";
            else if (run.kind == MTextRun::Kind::Tab)
                out += "\t";
            else
                out += ascii(run.text);
        }
    }
    return out;
}

MTextContent parse(std::string_view text, std::size_t limit = 10000) {
    MTextFormat initial;
    initial.height = 2.0;
    return parseMText(text, initial, limit);
}

TEST(MTextParser, Characters) {
    const struct {
        const char* name;
        const char* contents;
        const char* expected;
    } rows[] = {
        {"plain", "Plain text", "Plain text"},
        {"paragraphs", "one\\Ptwo\\Pthree", "one|two|three"},
        {"column break", "one\\Ntwo", "one#N#two"},
        {"escaped backslash and braces", "a\\\\b\\{c\\}", "a\\b{c}"},
        {"groups vanish", "{a{b}c}", "abc"},
        {"unbalanced closing brace", "a}}b", "ab"},
        {"font code", "{\\fArial|b1|i0|c0|p34;x}", "x"},
        {"height codes", "\\H2.5;a\\H0.5x;b", "ab"},
        {"width tracking oblique", "\\W0.8;\\T1.2;\\Q15;w", "w"},
        {"colours", "\\C1;r\\c16711680;b", "rb"},
        {"underline overline strike", "\\La\\l\\Ob\\o\\Kc\\k", "abc"},
        {"line alignment", "\\A1;mid", "mid"},
        {"paragraph codes", "\\pxqc;\\pi-1,l1,t2;x", "x"},
        {"fraction", "1\\S1/2;\"", "1[1/2]\""},
        {"tolerance", "\\S+0.1^ -0.2;", "[+0.1^-0.2]"},
        {"diagonal", "\\S3#4;", "[3#4]"},
        {"stack with escaped slash", "\\Sa\\/b/c;", "[a/b/c]"},
        {"superscript only", "m\\S2^;", "m[2^]"},
        {"unicode escape", "\\U+0041\\u+0042", "AB"},
        {"bad unicode escape is dropped", "\\U+00ZZ", "+00ZZ"},
        {"percent codes", "%%c10 %%d %%p %%%", "?10 ? ? %"},
        {"caret codes", "a^Ib^Jc^ d", "a\tb|c^d"},
        {"unknown code letter", "\\ja", "a"},
        {"unterminated value", "x\\H2.5", "x"},
        {"backslash at the end", "x\\", "x"},
        {"non-breaking space", "a\\~b", "a?b"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(flatten(parse(row.contents)), row.expected);
    }
}

TEST(MTextParser, Formats) {
    const struct {
        const char* name;
        const char* contents;
        MTextFormat (*expected)();
    } rows[] = {
        {"absolute height", "\\H3.5;x", [] { MTextFormat f; f.height = 3.5; return f; }},
        {"relative height", "\\H0.5x;x", [] { MTextFormat f; f.height = 1.0; return f; }},
        {"relative twice", "\\H2x;\\H2x;x", [] { MTextFormat f; f.height = 8.0; return f; }},
        {"group restores", "{\\H3;a}x", [] { MTextFormat f; f.height = 2.0; return f; }},
        {"font bold italic", "\\fArial|b1|i1|c0;x", [] {
             MTextFormat f; f.height = 2.0; f.font = "Arial"; f.bold = true; f.italic = true; return f; }},
        {"shx font", "\\Fromans.shx|c0;x", [] { MTextFormat f; f.height = 2.0; f.font = "romans.shx"; return f; }},
        {"width and tracking", "\\W0.8;\\T1.5;x", [] {
             MTextFormat f; f.height = 2.0; f.widthFactor = 0.8; f.tracking = 1.5; return f; }},
        {"oblique", "\\Q30;x", [] {
             MTextFormat f; f.height = 2.0; f.oblique = std::numbers::pi / 6; f.obliqueSet = true; return f; }},
        {"oblique too steep is ignored", "\\Q89;x", [] { MTextFormat f; f.height = 2.0; return f; }},
        {"colour index", "\\C3;x", [] { MTextFormat f; f.height = 2.0; f.colorIndex = 3; return f; }},
        {"true colour has red in the low byte", "\\c255;x", [] {
             MTextFormat f; f.height = 2.0; f.trueColor = 0xFF0000; return f; }},
        {"true colour replaces the index", "\\C3;\\c65280;x", [] {
             MTextFormat f; f.height = 2.0; f.trueColor = 0x00FF00; return f; }},
        {"underline on", "\\Lx", [] { MTextFormat f; f.height = 2.0; f.underline = true; return f; }},
        {"underline off again", "\\L\\lx", [] { MTextFormat f; f.height = 2.0; return f; }},
        {"line alignment top", "\\A2;x", [] { MTextFormat f; f.height = 2.0; f.lineAlign = 2; return f; }},
        {"negative height ignored", "\\H-1;x", [] { MTextFormat f; f.height = 2.0; return f; }},
        {"nan height ignored", "\\Hnan;x", [] { MTextFormat f; f.height = 2.0; return f; }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const MTextContent content = parse(row.contents);
        ASSERT_FALSE(content.paragraphs.back().runs.empty());
        const MTextFormat& format = content.paragraphs.back().runs.back().format;
        const MTextFormat expected = row.expected();
        EXPECT_NEAR(format.height, expected.height, 1e-12);
        EXPECT_NEAR(format.oblique, expected.oblique, 1e-12);
        MTextFormat compared = format;
        compared.height = expected.height;
        compared.oblique = expected.oblique;
        EXPECT_TRUE(compared == expected);
    }
}

TEST(MTextParser, ParagraphAlignmentCarriesOn) {
    const MTextContent content = parse("a\\pxqc;b\\Pc\\pqr;\\Pd");
    ASSERT_EQ(content.paragraphs.size(), 3u);
    EXPECT_EQ(content.paragraphs[0].align, MTextParagraphAlign::Center);
    EXPECT_EQ(content.paragraphs[1].align, MTextParagraphAlign::Right);
    EXPECT_EQ(content.paragraphs[2].align, MTextParagraphAlign::Right);
}

TEST(MTextParser, RunsSplitOnlyWhereTheFormatChanges) {
    const MTextContent content = parse("ab{cd}\\H2;ef\\H3;g");
    ASSERT_EQ(content.paragraphs[0].runs.size(), 2u);
    EXPECT_EQ(content.paragraphs[0].runs[0].text, U"abcdef");
    EXPECT_EQ(content.paragraphs[0].runs[1].text, U"g");
}

TEST(MTextParser, DamagedInputEnds) {
    const std::string braces(1'000'000, '{');
    const MTextContent deep = parse(braces + "x" + std::string(1'000'000, '}'));
    EXPECT_EQ(flatten(deep), "x");

    const std::string big(1'000'000, 'a');
    const MTextContent limited = parse(big, 100);
    EXPECT_EQ(limited.characters, 100u);
    EXPECT_TRUE(limited.truncated);

    const MTextContent stack = parse("\\S" + big, 100);
    EXPECT_LE(stack.characters, 100u);
    EXPECT_TRUE(stack.truncated);

    const MTextContent malformed = parse("\xff\xfe\xc3");
    EXPECT_EQ(malformed.paragraphs[0].runs[0].text, U"\uFFFD\uFFFD\uFFFD");
}

TEST(TextCodes, SpecialCodes) {
    const struct {
        const char* name;
        const char* text;
        std::u32string chars;
        std::vector<std::uint8_t> marks;
    } rows[] = {
        {"plain", "ab", U"ab", {0, 0}},
        {"diameter degree plus-minus", "%%c%%d%%P", U"\u2300\u00B0\u00B1", {0, 0, 0}},
        {"percent", "50%%%", U"50%", {0, 0, 0}},
        {"single percent signs stay", "5% %", U"5% %", {0, 0, 0, 0}},
        {"underline toggles", "a%%ub%%uc", U"abc", {0, 1, 0}},
        {"overline and strike", "%%o%%ka", U"a", {6}},
        {"decimal code", "%%065%%0659", U"AA9", {0, 0, 0}},
        {"unicode escape", "\\U+AC00", U"\uAC00", {0}},
        {"korean double-byte escape", "\\M+3B0A1", U"\uAC00", {0}},
        {"backslash stays", "C:\\dir", U"C:\\dir", {0, 0, 0, 0, 0, 0}},
        {"unknown percent code stays", "%%z", U"%%z", {0, 0, 0}},
        {"utf-8", "\xea\xb0\x80", U"\uAC00", {0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const DecodedText decoded = decodeTextCodes(row.text, 100);
        EXPECT_EQ(decoded.chars, row.chars);
        EXPECT_EQ(decoded.marks, row.marks);
    }
    const DecodedText capped = decodeTextCodes(std::string(100000, 'x'), 10);
    EXPECT_EQ(capped.chars.size(), 10u);
    EXPECT_TRUE(capped.truncated);
}

}  // namespace
}  // namespace cad::gs
