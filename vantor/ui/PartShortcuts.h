// The parts a designer keeps at hand: favourites they chose, and the parts inserted last. Each
// names its drawing and its record, so that choosing it finds the part in the window again,
// and carries the text shown for it while its drawing is not read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantor {

struct PartShortcut {
    std::string drawingPath;
    std::int64_t recordId = 0;  // the record's handle value, as the tree names it
    std::string label;          // "육각볼트 M12x40"

    // The same part, whatever its label now says.
    bool samePart(const PartShortcut& other) const {
        return drawingPath == other.drawingPath && recordId == other.recordId;
    }
    // One settings value: the fields in their caret form, separated by tabs.
    std::string toSetting() const;
    static std::optional<PartShortcut> fromSetting(std::string_view value);
};

class PartShortcuts {
public:
    static constexpr std::size_t kFavouriteLimit = 20;
    static constexpr std::size_t kRecentLimit = 10;

    const std::vector<PartShortcut>& favourites() const { return favourites_; }
    const std::vector<PartShortcut>& recent() const { return recent_; }

    // A new favourite comes first; one kept already keeps its place, with the new label. False
    // when the list is full.
    bool addFavourite(const PartShortcut& part);
    void removeFavourite(const PartShortcut& part);
    bool isFavourite(const PartShortcut& part) const;
    // The part inserted last comes first, once; the oldest goes beyond the limit.
    void notePlaced(const PartShortcut& part);

    // Settings values in list order, as read back by setFavourites and setRecent; values that
    // do not read are left out, and lists beyond their limits are cut.
    void setFavourites(const std::vector<std::string>& values);
    void setRecent(const std::vector<std::string>& values);

private:
    std::vector<PartShortcut> favourites_;
    std::vector<PartShortcut> recent_;
};

}  // namespace vantor
