// A keyword list as initGet and the jig take it: "Undo eXit", the capitals of each keyword
// being what the user must type at least. A list may carry global names after a "_"
// ("Undo eXit _Undo Exit"): then the answer is the global keyword, and "_Undo" typed matches.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cad::ed {

class KeywordList {
public:
    KeywordList() = default;
    explicit KeywordList(std::string_view list);

    bool empty() const { return local_.empty(); }
    std::size_t size() const { return local_.size(); }
    const std::string& text() const { return text_; }

    // The index of the keyword the typed text names, or nullopt. The text names a keyword when
    // it is the keyword's capitals, or a start of the keyword at least as long as the part up
    // to its last capital; case does not matter. A keyword without capitals must be typed whole.
    std::optional<std::size_t> match(std::string_view typed) const;
    // What an answer reports for keyword `index`: the global name if the list has them.
    const std::string& answer(std::size_t index) const;

private:
    static bool matches(const std::string& keyword, std::string_view typed);

    std::string text_;
    std::vector<std::string> local_;
    std::vector<std::string> global_;
};

}  // namespace cad::ed
