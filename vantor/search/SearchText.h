// Text as the part search compares it: UTF-16 with Latin letters in lower case, so that a
// Hangul syllable is one unit, and the syllables that begin with one consonant are one block
// of code points.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantor {

// UTF-8 to UTF-16 with the ASCII letters lower-cased. A byte that does not belong to a
// character, and a character outside the basic plane, becomes U+FFFD: neither is typed into
// a search field.
std::u16string searchFold(std::string_view utf8);
void appendSearchFold(std::string_view utf8, std::u16string& out);

// One word of a query; a consonant in it matches any syllable that begins with it.
using SearchWord = std::u16string;
// The words of a query, split at white space and folded; the longest first, as it narrows
// the search the most.
std::vector<SearchWord> searchWords(std::string_view query);

// Where `word` first occurs in `text` from `from` on; npos when nowhere.
std::size_t findSearchWord(std::u16string_view text, const SearchWord& word, std::size_t from = 0);

}  // namespace vantor
