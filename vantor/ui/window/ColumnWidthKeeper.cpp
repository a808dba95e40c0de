// Column widths to and from the settings.
#include "vantor/ui/window/ColumnWidthKeeper.h"

#include <QHeaderView>
#include <vector>

namespace vantor {

ColumnWidthKeeper::ColumnWidthKeeper(QHeaderView& header, ModuleSettings& settings, ListOwner owner)
    : QObject(&header), header_(header), settings_(settings), owner_(owner) {
    connect(&header, &QHeaderView::sectionResized, this, [this] { store(); });
    connect(&header, &QHeaderView::sectionCountChanged, this, [this] { apply(); });
}

void ColumnWidthKeeper::apply() {
    const std::vector<int> widths = columnWidths(settings_, owner_, header_.count());
    applying_ = true;
    for (int column = 0; column < static_cast<int>(widths.size()); ++column)
        header_.resizeSection(column, widths[column]);
    applying_ = false;
}

void ColumnWidthKeeper::store() {
    if (applying_) return;
    std::vector<int> widths;
    for (int column = 0; column < header_.count(); ++column)
        widths.push_back(header_.sectionSize(column));
    storeColumnWidths(settings_, owner_, widths);
}

}  // namespace vantor
