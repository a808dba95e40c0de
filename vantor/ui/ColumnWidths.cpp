// The column-width settings of the lists.
#include "vantor/ui/ColumnWidths.h"

#include <algorithm>

#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

constexpr std::size_t kRecordColumns = ModuleSettings::kRecordColumnCount;
constexpr std::size_t kBlockColumns = 2;
constexpr std::size_t kFirstBlockColumn = ModuleSettings::kBlockColumnCount - kBlockColumns;

// The settings behind a list's columns; empty when the list keeps none.
std::span<int> widthsFor(ModuleSettings& settings, ListOwner owner, std::size_t columnCount) {
    if (columnCount == kRecordColumns) {
        if (owner == ListOwner::PartList) return settings.recordWidths;
        return std::span<int>(settings.blockWidths).first(kRecordColumns);
    }
    if (columnCount == kBlockColumns && owner == ListOwner::BlockList)
        return std::span<int>(settings.blockWidths).subspan(kFirstBlockColumn, kBlockColumns);
    return {};
}

}  // namespace

std::vector<int> columnWidths(const ModuleSettings& settings, ListOwner owner, int columnCount) {
    const std::span<int> widths = widthsFor(const_cast<ModuleSettings&>(settings), owner,
                                            static_cast<std::size_t>(std::max(columnCount, 0)));
    return {widths.begin(), widths.end()};
}

void storeColumnWidths(ModuleSettings& settings, ListOwner owner, std::span<const int> widths) {
    const std::span<int> stored = widthsFor(settings, owner, widths.size());
    if (stored.size() != widths.size()) return;
    std::copy(widths.begin(), widths.end(), stored.begin());
}

}  // namespace vantor
