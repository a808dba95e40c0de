// Tests of code page conversion: Korean round trips with their byte lengths on disk, the
// outcomes for bytes and characters that do not convert, and the DXF code page names.
#include "cad/sys/CodePage.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace cad::sys {
namespace {

std::string repeated(std::string_view piece, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += piece;
    return text;
}

TEST(CodePage, KoreanRoundTripsCountingBytesOnDisk) {
    const struct {
        const char* name;
        std::string utf8;
        std::size_t cp949Bytes;
    } rows[] = {
        {"main window name", "주 관리창", 9},
        {"26-byte name", "가나다라마바사아자차카타파", 26},
        {"mixed ASCII and Hangul", "C:\\부품\\볼트 M10.dwg", 20},
        {"embedded NUL", std::string("주\0관", 7), 5},
        // Longer than the converter's output buffer, so it is converted in pieces.
        {"10000 syllables", repeated("한", 10000), 20000},
    };
    for (const auto& row : rows) {
        const std::string disk = utf8ToCp949(row.utf8);
        EXPECT_EQ(disk.size(), row.cp949Bytes) << row.name;
        EXPECT_EQ(cp949ToUtf8(disk), row.utf8) << row.name;
    }
    EXPECT_EQ(utf8ToCp949("주 관리창"), "\xC1\xD6\x20\xB0\xFC\xB8\xAE\xC3\xA2");
    EXPECT_EQ(toUtf8("\x80", CodePage::Ansi1252), "€");
    EXPECT_EQ(fromUtf8("€", CodePage::Ansi1252), "\x80");

    const std::string ascii = "LINE\n  8\n0\r\n" + std::string(1, '\0') + "~\x7F";
    EXPECT_EQ(toUtf8(ascii, CodePage::Ansi949), ascii);
    EXPECT_EQ(fromUtf8(ascii, CodePage::Dos850), ascii);
    EXPECT_EQ(toUtf8(ascii, CodePage::Utf8), ascii);
}

TEST(CodePage, InvalidBytesBecomeOneReplacementCharacterEachAndDecodingGoesOn) {
    const struct {
        const char* name;
        CodePage codePage;
        std::string bytes;
        std::string utf8;
    } rows[] = {
        // clang-format off
        {"byte FF in CP949", CodePage::Ansi949, "\xFF\xC1\xD6", "\uFFFD주"},
        {"byte 80 then ASCII", CodePage::Ansi949, "\x80" "A", "\uFFFD" "A"},
        {"lead byte at end", CodePage::Ansi949, "AB\xC1", "AB\uFFFD"},
        {"lead byte before blank", CodePage::Ansi949, "\xC1 x", "\uFFFD x"},
        {"undefined byte in CP1252", CodePage::Ansi1252, "a\x81" "b", "a\uFFFD" "b"},
        {"invalid UTF-8", CodePage::Utf8, "a\xC3(\xE4\xB8", "a\uFFFD(\uFFFD\uFFFD"},
        {"UTF-8 surrogate", CodePage::Utf8, "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        // clang-format on
    };
    for (const auto& row : rows) EXPECT_EQ(toUtf8(row.bytes, row.codePage), row.utf8) << row.name;
}

TEST(CodePage, UnconvertibleTextGivesTheDocumentedOutcome) {
    constexpr auto kQuestion = Unmappable::QuestionMark;
    constexpr auto kEscape = Unmappable::DxfEscape;
    const struct {
        const char* name;
        CodePage codePage;
        Unmappable policy;
        std::string utf8;
        std::string bytes;
    } rows[] = {
        {"accent into CP949", CodePage::Ansi949, kQuestion, "café", "caf?"},
        {"accent into CP949 escaped", CodePage::Ansi949, kEscape, "café", "caf\\U+00E9"},
        {"emoji is a question mark", CodePage::Ansi949, kQuestion, "a😀b", "a?b"},
        {"emoji above FFFF not escaped", CodePage::Ansi949, kEscape, "a😀b", "a?b"},
        {"Hangul into CP1252 escaped", CodePage::Ansi1252, kEscape, "주 é", "\\U+C8FC \xE9"},
        {"upper-case hex digits", CodePage::Dos437, kEscape, "ſ", "\\U+017F"},
        {"truncated UTF-8 per byte", CodePage::Ansi949, kEscape, "x\xE4\xB8", "x??"},
        {"lone continuation byte", CodePage::Ansi949, kQuestion, "\xBF주", "?\xC1\xD6"},
        {"invalid UTF-8 for the UTF-8 page", CodePage::Utf8, kEscape, "é\xC3", "é?"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(fromUtf8(row.utf8, row.codePage, row.policy), row.bytes) << row.name;
    }
}

TEST(CodePage, CanHoldIsTrueExactlyWhenEncodingNeedsNoReplacement) {
    const struct {
        std::string utf8;
        CodePage codePage;
        bool held;
    } rows[] = {
        {"배관 Ω", CodePage::Ansi949, true},  {"배관", CodePage::Ansi1252, false},
        {"café", CodePage::Ansi1252, true},   {"café", CodePage::Ansi949, false},
        {"plain", CodePage::Dos437, true},    {"a😀", CodePage::Utf8, true},
        {"x\xE4\xB8", CodePage::Utf8, false}, {"x\xE4\xB8", CodePage::Ansi949, false},
    };
    for (const auto& row : rows) EXPECT_EQ(canHold(row.utf8, row.codePage), row.held) << row.utf8;
}

TEST(CodePage, DxfNamesParseIgnoringCaseAndEveryPageNameReadsBack) {
    const std::pair<std::string, std::optional<CodePage>> rows[] = {
        {"ANSI_949", CodePage::Ansi949}, {"ansi_1252", CodePage::Ansi1252},
        {"dos850", CodePage::Dos850},    {"dos932", CodePage::Dos932},
        {"UTF-8", CodePage::Utf8},       {"utf8", CodePage::Utf8},
        {"ANSI_9999", std::nullopt},     {"", std::nullopt},
    };
    for (const auto& [name, codePage] : rows)
        EXPECT_EQ(codePageFromDxfName(name), codePage) << name;
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
                const bool ok = t % 2 == 0 ? cp949ToUtf8("\xC1\xD6\xC1") == "주\uFFFD"
                                           : fromUtf8("€é", CodePage::Ansi1252) == "\x80\xE9";
                if (!ok) ++failures[t];
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace cad::sys
