// The insertion dialog's twelve specification lists as one cascade: each list offers the
// values of one catalogue field among the group's records that match the choices of the
// lists before it, so choosing a name, then a size, then a material narrows down to one record.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vantor/store/PartRecord.h"

namespace vantor {

class ChoiceCascade {
public:
    // The fields of the lists are the field table's (PartFields::cascadeField).
    static constexpr std::size_t kListCount = PartFields::kCascadeCount;

    // The field list `list` shows: the name list shows the English name when asked to.
    static const std::string& field(const PartRecord& record, std::size_t list, bool englishName);
    // The order of a list's items: texts compared byte by byte, except that runs of digits
    // (with a decimal part) compare by their value, so M8 comes before M10 and 0.0078 before
    // 0.017, as a user reading a size table expects.
    static bool itemBefore(std::string_view a, std::string_view b);

    // The group's records in stored order; `lastChosen` indexes the record chosen before (the
    // one selected in the library window), whose values the lists select where they can.
    explicit ChoiceCascade(std::vector<PartRecord> records,
                         std::optional<std::size_t> lastChosen = std::nullopt);

    // The "show English names" check box: the lists are filled again from the first.
    void setEnglishNames(bool english);
    bool englishNames() const { return english_; }

    // Each value once, in itemBefore order.
    const std::vector<std::string>& items(std::size_t list) const { return items_[list]; }
    // The selected item, or -1 for an empty list.
    int selection(std::size_t list) const { return selected_[list]; }
    // The selected value; an empty list counts as the empty text.
    const std::string& choice(std::size_t list) const;
    // The user picks an item: the lists after it are filled again.
    void select(std::size_t list, int item);
    // The first record, in stored order, that matches all twelve choices; nullptr for none.
    const PartRecord* chosen() const;
    const std::vector<PartRecord>& records() const { return records_; }

private:
    void fillFrom(std::size_t first);
    bool matchesChoices(const PartRecord& record, std::size_t lists) const;

    std::vector<PartRecord> records_;
    bool english_ = false;
    std::array<std::vector<std::string>, kListCount> items_;
    std::array<int, kListCount> selected_{};
    std::optional<std::size_t> lastChosen_;
};

}  // namespace vantor
