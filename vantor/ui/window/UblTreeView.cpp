// The drawing tree view.
#include "vantor/ui/window/UblTreeView.h"

#include "vantor/ui/models/DrawingTreeModel.h"

namespace vantor {

CUblTreeView::CUblTreeView(DrawingTreeModel& model, QWidget* parent)
    : QTreeView(parent), model_(model) {
    setModel(&model);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setAccessibleName(QStringLiteral("등록 도면"));
    // The window's item is always open: its drawings are what the pane is for.
    connect(&model, &QAbstractItemModel::modelReset, this, [this] { expand(model_.windowIndex()); });
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { emit drawingChosen(model_.pathAt(current)); });
}

std::string CUblTreeView::currentPath() const {
    return model_.pathAt(currentIndex());
}

void CUblTreeView::selectPath(const std::string& path) {
    const QModelIndex index = model_.indexOfPath(path);
    if (index.isValid()) setCurrentIndex(index);
}

}  // namespace vantor
