#include "vantor/ui/PartShortcuts.h"

#include <algorithm>
#include <charconv>

#include "cad/sys/CaretText.h"

namespace vantor {

namespace {

// The settings value's fields: path, record id, label.
constexpr std::size_t kFieldCount = 3;

std::vector<std::string> splitAtTabs(std::string_view value) {
    std::vector<std::string> fields;
    for (std::size_t from = 0;;) {
        const std::size_t tab = value.find('\t', from);
        fields.push_back(cad::sys::fromCaretForm(value.substr(from, tab - from)));
        if (tab == std::string_view::npos) return fields;
        from = tab + 1;
    }
}

std::vector<PartShortcut> readValues(const std::vector<std::string>& values, std::size_t limit) {
    std::vector<PartShortcut> parts;
    for (const std::string& value : values) {
        std::optional<PartShortcut> part = PartShortcut::fromSetting(value);
        if (part && parts.size() < limit &&
            std::none_of(parts.begin(), parts.end(), [&](const auto& p) { return p.samePart(*part); }))
            parts.push_back(std::move(*part));
    }
    return parts;
}

}  // namespace

std::string PartShortcut::toSetting() const {
    return cad::sys::toCaretForm(drawingPath) + '\t' + std::to_string(recordId) + '\t' +
           cad::sys::toCaretForm(label);
}

std::optional<PartShortcut> PartShortcut::fromSetting(std::string_view value) {
    std::vector<std::string> fields = splitAtTabs(value);
    if (fields.size() != kFieldCount || fields[0].empty()) return std::nullopt;
    PartShortcut part;
    const std::string& id = fields[1];
    const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), part.recordId);
    if (error != std::errc{} || end != id.data() + id.size() || part.recordId <= 0)
        return std::nullopt;
    part.drawingPath = std::move(fields[0]);
    part.label = std::move(fields[2]);
    return part;
}

bool PartShortcuts::addFavourite(const PartShortcut& part) {
    const auto kept = std::find_if(favourites_.begin(), favourites_.end(),
                                   [&](const auto& p) { return p.samePart(part); });
    if (kept != favourites_.end()) {
        *kept = part;
        return true;
    }
    if (favourites_.size() >= kFavouriteLimit) return false;
    favourites_.insert(favourites_.begin(), part);
    return true;
}

void PartShortcuts::removeFavourite(const PartShortcut& part) {
    std::erase_if(favourites_, [&](const auto& p) { return p.samePart(part); });
}

bool PartShortcuts::isFavourite(const PartShortcut& part) const {
    return std::any_of(favourites_.begin(), favourites_.end(),
                       [&](const auto& p) { return p.samePart(part); });
}

void PartShortcuts::notePlaced(const PartShortcut& part) {
    std::erase_if(recent_, [&](const auto& p) { return p.samePart(part); });
    recent_.insert(recent_.begin(), part);
    if (recent_.size() > kRecentLimit) recent_.resize(kRecentLimit);
}

void PartShortcuts::setFavourites(const std::vector<std::string>& values) {
    favourites_ = readValues(values, kFavouriteLimit);
}

void PartShortcuts::setRecent(const std::vector<std::string>& values) {
    recent_ = readValues(values, kRecentLimit);
}

}  // namespace vantor
