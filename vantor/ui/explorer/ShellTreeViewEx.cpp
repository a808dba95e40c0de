// The drawing explorer's tree view.
#include "vantor/ui/explorer/ShellTreeViewEx.h"

#include <QContextMenuEvent>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
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

void CShellTreeViewEx::showNewDrawing(const QString& path) {
    const QModelIndex folder = model_->indexForPath(QFileInfo(path).absolutePath());
    if (folder.isValid() && model_->listing(folder) == DrawingExplorerModel::Listing::Read)
        model_->refresh(folder);
    selectPath(path);
}

QMenu* CShellTreeViewEx::contextMenuFor(const QModelIndex& index, QWidget* parent) {
    if (!index.isValid()) return nullptr;
    const QString path = model_->filePath(index);
    auto* menu = new QMenu(parent);
    auto add = [this, menu, path](int id, const char* text,
                                  void (CShellTreeViewEx::*signal)(const QString&)) {
        QAction* action = menu->addAction(QString::fromUtf8(text));
        action->setObjectName(QStringLiteral("id%1").arg(id));
        connect(action, &QAction::triggered, this,
                [this, signal, path] { emit(this->*signal)(path); });
    };
    if (model_->isDrawing(index)) {
        menu->setObjectName(QStringLiteral("id271"));
        add(1601, "도면 열기", &CShellTreeViewEx::openDrawingRequested);
        add(1602, "AutoCAD R14용 도면 생성", &CShellTreeViewEx::r14CopyRequested);
        menu->addSeparator();
        add(1600, "관리창에 도면 추가", &CShellTreeViewEx::registerDrawingRequested);
    } else {
        menu->setObjectName(QStringLiteral("id270"));
        add(1700, "새도면 생성", &CShellTreeViewEx::newDrawingRequested);
    }
    menu->setAccessibleName(QString::fromUtf8("도면 탐색기 메뉴"));
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator()) action->setToolTip(action->text());
    }
    return menu;
}

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

// The item under the pointer becomes current first, as a click would make it: the operations
// act on the current drawing, and the frame shows what the menu is about.
void CShellTreeViewEx::contextMenuEvent(QContextMenuEvent* event) {
    // From the keyboard the menu is the current item's, shown at it; by mouse the item's under
    // the pointer (the event comes through the viewport, in its coordinates).
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = keyboard ? currentIndex() : indexAt(event->pos());
    if (!index.isValid()) {
        QTreeView::contextMenuEvent(event);
        return;
    }
    setCurrentIndex(index);
    const QPoint at =
        keyboard ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos();
    QMenu* menu = contextMenuFor(index, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
    event->accept();
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
