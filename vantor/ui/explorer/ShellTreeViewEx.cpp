// The drawing explorer's tree view.
#include "vantor/ui/explorer/ShellTreeViewEx.h"

#include <QFileIconProvider>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>

#include "vantor/ui/explorer/DrawingExplorerModel.h"

namespace vantor {

CShellTreeViewEx::CShellTreeViewEx(cad::app::UserDialogs& dialogs, QWidget* parent)
    : QTreeView(parent), model_(new DrawingExplorerModel(dialogs, this)) {
    setUp();
}

CShellTreeViewEx::CShellTreeViewEx(DrawingExplorerModel* model, QWidget* parent)
    : QTreeView(parent), model_(model) {
    if (model_->QObject::parent() == nullptr) model_->setParent(this);
    setUp();
}

void CShellTreeViewEx::setUp() {
    setAccessibleName(QStringLiteral("도면 탐색기"));
    // The widgets' provider falls back to the style's icons where there is no icon theme.
    const QFileIconProvider icons;
    model_->setIconProvider(icons);
    setModel(model_);
    setHeaderHidden(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    // A folder of thousands of drawings lays out without measuring every row.
    setUniformRowHeights(true);
    // Long names scroll sideways, as a narrow pane needs, instead of being cut short.
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);

    connect(model_, &DrawingExplorerModel::locationUnreadable, this,
            &CShellTreeViewEx::locationUnreadable);
    connect(this, &QTreeView::expanded, this, &CShellTreeViewEx::tryAgainOnExpand);
}

QString CShellTreeViewEx::currentPath() const { return model_->filePath(currentIndex()); }

QString CShellTreeViewEx::currentDrawingPath() const {
    const QModelIndex current = currentIndex();
    return current.isValid() && model_->isDrawing(current) ? model_->filePath(current)
                                                            : QString();
}

bool CShellTreeViewEx::selectPath(const QString& path) {
    bool found = false;
    const QModelIndex index = model_->indexForPath(path, &found);
    if (!index.isValid()) return false;
    for (QModelIndex folder = index.parent(); folder.isValid(); folder = folder.parent())
        expand(folder);
    setCurrentIndex(index);
    scrollTo(index, QAbstractItemView::PositionAtCenter);
    return found;
}

// Only up and down: following the current item sideways shifts the tree's levels out of a
// narrow pane, and a long name is read by scrolling sideways on purpose.
void CShellTreeViewEx::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int left = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(left);
}

void CShellTreeViewEx::refreshCurrentFolder() {
    const QPersistentModelIndex current(currentIndex());
    if (!current.isValid()) return;
    const QModelIndex folder = current.parent();
    if (folder.isValid()) model_->refresh(folder);
    if (current.isValid() && !model_->isDrawing(current) &&
        model_->listing(current) == DrawingExplorerModel::Listing::Read)
        model_->refresh(current);
}

void CShellTreeViewEx::documentActivated() { refreshCurrentFolder(); }

void CShellTreeViewEx::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F5 && event->modifiers() == Qt::NoModifier) {
        refreshCurrentFolder();
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void CShellTreeViewEx::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    if (current.isValid() && model_->isDrawing(current)) {
        emit drawingSelected(model_->filePath(current));
    } else {
        emit folderSelected(model_->filePath(current));
    }
}

void CShellTreeViewEx::locationUnreadable(const QModelIndex& folder) {
    // Told in the middle of the view's own expansion: collapsing there would change the rows
    // the expansion is laying out, so it waits for the event loop.
    const QPersistentModelIndex index(folder);
    failing_.insert(index);
    QTimer::singleShot(0, this, [this, index] {
        failing_.remove(index);
        if (index.isValid()) collapse(index);
    });
}

// Expanding a folder that failed before is the user's new attempt; the view's own expansion
// does not read it again (the model does not offer to fetch a failed folder).
void CShellTreeViewEx::tryAgainOnExpand(const QModelIndex& folder) {
    if (failing_.contains(QPersistentModelIndex(folder))) return;
    if (model_->listing(folder) == DrawingExplorerModel::Listing::Failed) model_->refresh(folder);
}

}  // namespace vantor
