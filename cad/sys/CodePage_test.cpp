// Tests of code page conversion: Korean round trips with their byte lengths on disk, the
// outcomes for bytes and characters that do not convert, and the DXF code page names.
#include "cad/sys/CodePage.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace cad::sys {
namespace {

struct RoundTripRow {
    const char* name;
    std::string utf8;
    std::size_t cp949Bytes;
};

class Cp949RoundTrip : public testing::TestWithParam<RoundTripRow> {};

TEST_P(Cp949RoundTrip, KeepsTextAndCountsBytesOnDisk) {
    const RoundTripRow& row = GetParam();
    const std::string disk = utf8ToCp949(row.utf8);
    EXPECT_EQ(disk.size(), row.cp949Bytes);
    EXPECT_EQ(cp949ToUtf8(disk), row.utf8);
}

std::string repeated(std::string_view piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += piece;
    return text;
}

INSTANTIATE_TEST_SUITE_P(
    Korean, Cp949RoundTrip,
    testing::Values(RoundTripRow{"MainWindowName", "주 관리창", 9},
                    RoundTripRow{"TwentySixByteName", "가나다라마바사아자차카타파", 26},
                    RoundTripRow{"MixedAsciiAndHangul", "C:\\부품\\볼트 M10.dwg", 20},
                    RoundTripRow{"EmbeddedNul", std::string("주\0관", 7), 5},
                    // Longer than the converter's output buffer, so it is converted in pieces.
                    RoundTripRow{"TenThousandSyllables", repeated("한", 10000), 20000}),
    [](const auto& row) { return row.param.name; });

TEST(CodePage, KnownCp949Bytes) {
    EXPECT_EQ(utf8ToCp949("주 관리창"), "\xC1\xD6\x20\xB0\xFC\xB8\xAE\xC3\xA2");
    EXPECT_EQ(toUtf8("\x80", CodePage::Ansi1252), "€");
    EXPECT_EQ(fromUtf8("€", CodePage::Ansi1252), "\x80");
}

TEST(CodePage, AsciiComesBackUnchanged) {
    const std::string ascii = "LINE\n  8\n0\r\n" + std::string(1, '\0') + "~\x7F";
    EXPECT_EQ(toUtf8(ascii, CodePage::Ansi949), ascii);
    EXPECT_EQ(fromUtf8(ascii, CodePage::Dos850), ascii);
    EXPECT_EQ(toUtf8(ascii, CodePage::Utf8), ascii);
}

struct DecodeRow {
    const char* name;
    CodePage codePage;
    std::string bytes;
    std::string utf8;
};

class InvalidBytes : public testing::TestWithParam<DecodeRow> {};

TEST_P(InvalidBytes, BecomeReplacementCharacterPerByteAndDecodingGoesOn) {
    EXPECT_EQ(toUtf8(GetParam().bytes, GetParam().codePage), GetParam().utf8);
}

INSTANTIATE_TEST_SUITE_P(
    Decoding, InvalidBytes,
    testing::Values(
        DecodeRow{"ByteFFInCp949", CodePage::Ansi949, "\xFF\xC1\xD6", "\uFFFD주"},
        DecodeRow{"Byte80ThenAscii", CodePage::Ansi949,
                  "\x80"
                  "A",
                  "\uFFFD"
                  "A"},
        DecodeRow{"LeadByteAtEnd", CodePage::Ansi949, "AB\xC1", "AB\uFFFD"},
        DecodeRow{"LeadByteBeforeBlank", CodePage::Ansi949, "\xC1 x", "\uFFFD x"},
        DecodeRow{"UndefinedByteInCp1252", CodePage::Ansi1252,
                  "a\x81"
                  "b",
                  "a\uFFFD"
                  "b"},
        DecodeRow{"InvalidUtf8", CodePage::Utf8, "a\xC3(\xE4\xB8", "a\uFFFD(\uFFFD\uFFFD"},
        DecodeRow{"Utf8Surrogate", CodePage::Utf8, "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"}),
    [](const auto& row) { return row.param.name; });

struct EncodeRow {
    const char* name;
    CodePage codePage;
    Unmappable policy;
    std::string utf8;
    std::string bytes;
};

class UnconvertibleText : public testing::TestWithParam<EncodeRow> {};

TEST_P(UnconvertibleText, GivesDocumentedOutcome) {
    const EncodeRow& row = GetParam();
    EXPECT_EQ(fromUtf8(row.utf8, row.codePage, row.policy), row.bytes);
}

constexpr auto kQuestion = Unmappable::QuestionMark;
constexpr auto kEscape = Unmappable::DxfEscape;

INSTANTIATE_TEST_SUITE_P(
    Encoding, UnconvertibleText,
    testing::Values(
        EncodeRow{"AccentIntoCp949", CodePage::Ansi949, kQuestion, "café", "caf?"},
        EncodeRow{"AccentIntoCp949Escaped", CodePage::Ansi949, kEscape, "café", "caf\\U+00E9"},
        EncodeRow{"EmojiIsQuestionMark", CodePage::Ansi949, kQuestion, "a😀b", "a?b"},
        EncodeRow{"EmojiAboveFFFFNotEscaped", CodePage::Ansi949, kEscape, "a😀b", "a?b"},
        EncodeRow{"HangulIntoCp1252Escaped", CodePage::Ansi1252, kEscape, "주 é", "\\U+C8FC \xE9"},
        EncodeRow{"UpperCaseHexDigits", CodePage::Dos437, kEscape, "ſ", "\\U+017F"},
        EncodeRow{"TruncatedUtf8PerByte", CodePage::Ansi949, kEscape, "x\xE4\xB8", "x??"},
        EncodeRow{"LoneContinuationByte", CodePage::Ansi949, kQuestion, "\xBF주", "?\xC1\xD6"},
        EncodeRow{"InvalidUtf8ForUtf8Page", CodePage::Utf8, kEscape, "é\xC3", "é?"}),
    [](const auto& row) { return row.param.name; });

struct DxfNameRow {
    const char* name;
    std::string dxfName;
    std::optional<CodePage> codePage;
};

class DxfCodePageName : public testing::TestWithParam<DxfNameRow> {};

TEST_P(DxfCodePageName, ParsesIgnoringCase) {
    EXPECT_EQ(codePageFromDxfName(GetParam().dxfName), GetParam().codePage);
}

INSTANTIATE_TEST_SUITE_P(Names, DxfCodePageName,
                         testing::Values(DxfNameRow{"Ansi949", "ANSI_949", CodePage::Ansi949},
                                         DxfNameRow{"LowerAnsi1252", "ansi_1252",
                                                    CodePage::Ansi1252},
                                         DxfNameRow{"Dos850", "dos850", CodePage::Dos850},
                                         DxfNameRow{"Dos932", "dos932", CodePage::Dos932},
                                         DxfNameRow{"Utf8Dash", "UTF-8", CodePage::Utf8},
                                         DxfNameRow{"Utf8Plain", "utf8", CodePage::Utf8},
                                         DxfNameRow{"Unknown", "ANSI_9999", std::nullopt},
                                         DxfNameRow{"Empty", "", std::nullopt}),
                         [](const auto& row) { return row.param.name; });

TEST(CodePage, EveryPageNameReadsBack) {
    for (int i = 0; i <= static_cast<int>(CodePage::Dos932); ++i) {
        const auto codePage = static_cast<CodePage>(i);
        const std::string_view name = dxfCodePageName(codePage);
        EXPECT_EQ(codePageFromDxfName(name), codePage) << name;
    }
}

TEST(CodePage, ThreadsConvertIndependently) {
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t, &failures] {
            // Each thread leaves its converter mid-state with an invalid tail each round.
            for (int round = 0; round < 500; ++round) {
                if (t % 2 == 0) {
                    if (cp949ToUtf8("\xC1\xD6\xC1") != "주\uFFFD") ++failures[t];
                } else {
                    if (fromUtf8("€é", CodePage::Ansi1252) != "\x80\xE9") ++failures[t];
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace cad::sys
