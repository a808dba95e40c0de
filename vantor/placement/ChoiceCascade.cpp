// Filling the specification lists.
#include "vantor/placement/ChoiceCascade.h"

#include <algorithm>
#include <cstdlib>

namespace vantor {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The number starting at `at` (digits, then a point and digits), `at` moved past it.
double numberAt(std::string_view text, std::size_t& at) {
    const std::size_t start = at;
    while (at < text.size() && isDigit(text[at])) ++at;
    if (at + 1 < text.size() && text[at] == '.' && isDigit(text[at + 1])) {
        ++at;
        while (at < text.size() && isDigit(text[at])) ++at;
    }
    return std::strtod(std::string(text.substr(start, at - start)).c_str(), nullptr);
}

}  // namespace

const std::string& ChoiceCascade::field(const PartRecord& record, std::size_t list,
                                        bool englishName) {
    return record.text(PartFields::cascadeField(list, englishName));
}

bool ChoiceCascade::itemBefore(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const double x = numberAt(a, i);
            const double y = numberAt(b, j);
            if (x != y) return x < y;
            continue;
        }
        if (a[i] != b[j])
            return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[j]);
        ++i;
        ++j;
    }
    if (a.size() - i != b.size() - j) return a.size() - i < b.size() - j;
    return a < b;  // "M06" and "M6": still one order
}

ChoiceCascade::ChoiceCascade(std::vector<PartRecord> records, std::optional<std::size_t> lastChosen)
    : records_(std::move(records)), lastChosen_(lastChosen) {
    if (lastChosen_ && *lastChosen_ >= records_.size()) lastChosen_.reset();
    fillFrom(0);
}

void ChoiceCascade::setEnglishNames(bool english) {
    english_ = english;
    fillFrom(0);
}

const std::string& ChoiceCascade::choice(std::size_t list) const {
    static const std::string none;
    return selected_[list] < 0 ? none : items_[list][static_cast<std::size_t>(selected_[list])];
}

void ChoiceCascade::select(std::size_t list, int item) {
    if (list >= kListCount || item < 0 || static_cast<std::size_t>(item) >= items_[list].size())
        return;
    selected_[list] = item;
    fillFrom(list + 1);
}

bool ChoiceCascade::matchesChoices(const PartRecord& record, std::size_t lists) const {
    for (std::size_t j = 0; j < lists; ++j)
        if (field(record, j, english_) != choice(j)) return false;
    return true;
}

const PartRecord* ChoiceCascade::chosen() const {
    for (const PartRecord& record : records_)
        if (matchesChoices(record, kListCount)) return &record;
    return nullptr;
}

// A value shared by several records is listed once: the user picks a size, not a record, and
// the later lists tell the records apart. When the record chosen before no longer fits, the
// first item is selected, so the cascade always ends on a record.
void ChoiceCascade::fillFrom(std::size_t first) {
    for (std::size_t k = first; k < kListCount; ++k) {
        std::vector<std::string>& items = items_[k];
        items.clear();
        for (const PartRecord& record : records_) {
            if (!matchesChoices(record, k)) continue;
            const std::string& value = field(record, k, english_);
            if (std::find(items.begin(), items.end(), value) == items.end()) items.push_back(value);
        }
        std::stable_sort(
            items.begin(), items.end(),
            [](const std::string& a, const std::string& b) { return itemBefore(a, b); });
        selected_[k] = items.empty() ? -1 : 0;
        if (lastChosen_) {
            const std::string& last = field(records_[*lastChosen_], k, english_);
            auto at = std::find(items.begin(), items.end(), last);
            if (at != items.end()) selected_[k] = static_cast<int>(at - items.begin());
        }
    }
    const PartRecord* record = chosen();
    if (record != nullptr) lastChosen_ = static_cast<std::size_t>(record - records_.data());
}

}  // namespace vantor
