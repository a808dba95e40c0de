// Keyword matching with the capital-letter abbreviations.
#include "cad/ed/KeywordList.h"
#include "cad/sys/AsciiCase.h"

#include <sstream>

namespace cad::ed {

KeywordList::KeywordList(std::string_view list) : text_(list) {
    std::istringstream words{std::string(list)};
    bool global = false;
    for (std::string word; words >> word;) {
        if (word.front() == '_') {
            global = true;
            word.erase(0, 1);
            if (word.empty()) continue;
        }
        (global ? global_ : local_).push_back(word);
    }
    // Global names only count when there is one for every local keyword.
    if (global_.size() != local_.size()) global_.clear();
}

bool KeywordList::matches(const std::string& keyword, std::string_view typed) {
    if (typed.empty() || typed.size() > keyword.size()) return false;
    std::string capitals;
    std::size_t required = 0;
    for (std::size_t i = 0; i < keyword.size(); ++i) {
        if (std::isupper(static_cast<unsigned char>(keyword[i]))) {
            capitals += keyword[i];
            required = i + 1;
        }
    }
    if (capitals.empty()) required = keyword.size();
    if (!capitals.empty() && sys::equalNoCase(capitals, typed)) return true;
    return typed.size() >= required && sys::equalNoCase(keyword.substr(0, typed.size()), typed);
}

std::optional<std::size_t> KeywordList::match(std::string_view typed) const {
    if (!typed.empty() && typed.front() == '_') {
        typed.remove_prefix(1);
        const auto& names = global_.empty() ? local_ : global_;
        for (std::size_t i = 0; i < names.size(); ++i)
            if (matches(names[i], typed)) return i;
        return std::nullopt;
    }
    for (std::size_t i = 0; i < local_.size(); ++i)
        if (matches(local_[i], typed)) return i;
    return std::nullopt;
}

const std::string& KeywordList::answer(std::size_t index) const {
    return global_.empty() ? local_.at(index) : global_.at(index);
}

}  // namespace cad::ed
