// Which settings a list's column widths come from and go back to. The library window's part
// list keeps its own record widths; the block lists (the window's data pane and the dialogs'
// lists) keep the block-view widths, whose first 13 also serve their record columns and whose
// last two are the block columns.
#pragma once

#include <span>
#include <vector>

namespace vantor {

class ModuleSettings;

enum class ListOwner {
    PartList,   // the part list of the selected group
    BlockList,  // a list of a drawing's blocks, or records shown in a dialog
};

// The widths for a list of `columnCount` columns: 13 record columns or 2 block columns; any
// other count has no stored widths (empty).
std::vector<int> columnWidths(const ModuleSettings& settings, ListOwner owner, int columnCount);
// Stores the widths the user left: 13 columns are record columns, 2 columns of a block list
// are block columns; any other count stores nothing.
void storeColumnWidths(ModuleSettings& settings, ListOwner owner, std::span<const int> widths);

}  // namespace vantor
