#include "vantor/search/SearchText.h"

#include <algorithm>
#include <array>

namespace vantor {

namespace {

constexpr char16_t kReplacement = u'\uFFFD';
constexpr char16_t kFirstSyllable = u'\uAC00';
constexpr char16_t kLastSyllable = u'\uD7A3';
constexpr int kSyllablesPerInitial = 21 * 28;  // medial vowels times final consonants

// The compatibility letters of the initial consonants, in the order of the syllable block.
constexpr std::array<char16_t, 19> kInitials = {
    u'ㄱ', u'ㄲ', u'ㄴ', u'ㄷ', u'ㄸ', u'ㄹ', u'ㅁ', u'ㅂ', u'ㅃ', u'ㅅ',
    u'ㅆ', u'ㅇ', u'ㅈ', u'ㅉ', u'ㅊ', u'ㅋ', u'ㅌ', u'ㅍ', u'ㅎ'};

bool isSpace(char16_t c) { return c == u' ' || (c >= u'\t' && c <= u'\r') || c == u'\u3000'; }

// The place of a consonant among the initials, or -1: the letters lie between ㄱ and ㅎ.
int initialIndex(char16_t c) {
    static const auto table = [] {
        std::array<signed char, u'ㅎ' - u'ㄱ' + 1> indices{};
        indices.fill(-1);
        for (std::size_t i = 0; i < kInitials.size(); ++i)
            indices[kInitials[i] - u'ㄱ'] = static_cast<signed char>(i);
        return indices;
    }();
    return c < u'ㄱ' || c > u'ㅎ' ? -1 : table[c - u'ㄱ'];
}

// One character of a word as it is compared: itself, and for a consonant also the block of
// syllables that begin with it.
struct WordUnit {
    char16_t exact;
    char16_t firstSyllable = 0;  // 0 for a character that is not a consonant

    explicit WordUnit(char16_t c) : exact(c) {
        if (const int index = initialIndex(c); index >= 0)
            firstSyllable = static_cast<char16_t>(kFirstSyllable + index * kSyllablesPerInitial);
    }
    bool matches(char16_t c) const {
        return c == exact || (firstSyllable != 0 &&
                              static_cast<char16_t>(c - firstSyllable) < kSyllablesPerInitial);
    }
};

bool matchesAt(std::u16string_view text, std::size_t at, const SearchWord& word) {
    for (std::size_t i = 1; i < word.size(); ++i) {
        if (!WordUnit(word[i]).matches(text[at + i])) return false;
    }
    return true;
}

}  // namespace

void appendSearchFold(std::string_view utf8, std::u16string& out) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    const std::size_t size = utf8.size();
    for (std::size_t i = 0; i < size;) {
        const unsigned char lead = bytes[i];
        if (lead < 0x80) {
            out += static_cast<char16_t>(lead >= 'A' && lead <= 'Z' ? lead + ('a' - 'A') : lead);
            ++i;
            continue;
        }
        const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
        bool whole = length != 0 && i + length <= size;
        char32_t c = whole ? lead & (0x7F >> length) : 0;
        for (std::size_t k = 1; whole && k < length; ++k) {
            whole = (bytes[i + k] & 0xC0) == 0x80;
            c = (c << 6) | (bytes[i + k] & 0x3F);
        }
        out += whole && c <= 0xFFFF && (c < 0xD800 || c > 0xDFFF) ? static_cast<char16_t>(c)
                                                                   : kReplacement;
        i += whole ? length : 1;
    }
}

std::u16string searchFold(std::string_view utf8) {
    std::u16string folded;
    folded.reserve(utf8.size());
    appendSearchFold(utf8, folded);
    return folded;
}

std::vector<SearchWord> searchWords(std::string_view query) {
    const std::u16string folded = searchFold(query);
    std::vector<SearchWord> words;
    for (std::size_t at = 0; at < folded.size();) {
        if (isSpace(folded[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < folded.size() && !isSpace(folded[end])) ++end;
        words.emplace_back(folded, at, end - at);
        at = end;
    }
    std::stable_sort(words.begin(), words.end(),
                     [](const auto& a, const auto& b) { return a.size() > b.size(); });
    return words;
}

std::size_t findSearchWord(std::u16string_view text, const SearchWord& word, std::size_t from) {
    if (word.empty()) return from <= text.size() ? from : std::u16string_view::npos;
    if (text.size() < word.size()) return std::u16string_view::npos;
    const std::size_t last = text.size() - word.size();
    const WordUnit first(word.front());
    if (first.firstSyllable == 0) {
        // Most words begin with a letter or a syllable: the library's search finds their
        // first character, and only those places are compared further.
        for (std::size_t at = text.find(first.exact, from);
             at != std::u16string_view::npos && at <= last; at = text.find(first.exact, at + 1)) {
            if (matchesAt(text, at, word)) return at;
        }
        return std::u16string_view::npos;
    }
    for (std::size_t at = from; at <= last; ++at) {
        if (first.matches(text[at]) && matchesAt(text, at, word)) return at;
    }
    return std::u16string_view::npos;
}

}  // namespace vantor
