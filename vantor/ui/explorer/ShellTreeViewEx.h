// The drawing explorer's tree view in the library window's upper-left pane: it tells the frame
// which drawing (or folder) is current, finds its way back to a path, keeps its folders
// current when files change, and offers the operations on a file or folder by context menu.
#pragma once

#include <QPersistentModelIndex>
#include <QSet>
#include <QTreeView>

class QMenu;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class DrawingExplorerModel;

class CShellTreeViewEx : public QTreeView {
    Q_OBJECT

public:
    // Over the system's locations.
    explicit CShellTreeViewEx(cad::app::UserDialogs& dialogs, QWidget* parent = nullptr);
    // Over a model of the caller's; the view becomes its parent when it has none.
    explicit CShellTreeViewEx(DrawingExplorerModel* model, QWidget* parent = nullptr);

    DrawingExplorerModel& explorerModel() const { return *model_; }

    // The current item's path; empty when nothing is current.
    QString currentPath() const;
    // The current drawing file's path; empty when the current item is no drawing.
    QString currentDrawingPath() const;

    // Makes the item of `path` current, expanding the folders down to it and scrolling it
    // into view. When the path is not there any more, the nearest folder above it that is
    // becomes current instead, and false is answered.
    bool selectPath(const QString& path);

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    // The context menu of an item: on a drawing file "도면 열기", "AutoCAD R14용 도면 생성"
    // and "관리창에 도면 추가"; on a folder or location "새도면 생성". Each item carries its
    // command id as objectName "id<N>" and emits the request below with the item's path.
    // nullptr for no item. The caller owns the menu.
    QMenu* contextMenuFor(const QModelIndex& index, QWidget* parent = nullptr);

public slots:
    // Re-reads the folder holding the current item (and the current folder itself when it
    // has been read), for files made, saved or deleted meanwhile. F5 does the same.
    void refreshCurrentFolder();
    // A document of the host became active: it may have saved or made a drawing here.
    void documentActivated();
    // A drawing was made in one of the shown folders: that folder is read again and the new
    // drawing becomes current.
    void showNewDrawing(const QString& path);

signals:
    // The current item became this drawing file.
    void drawingSelected(const QString& path);
    // The current item became a folder or a location (its path), or nothing (empty).
    void folderSelected(const QString& path);

    // The context menu's commands, by the item's path (1601, 1602, 1600, 1700).
    void openDrawingRequested(const QString& path);
    void r14CopyRequested(const QString& path);
    void registerDrawingRequested(const QString& path);
    void newDrawingRequested(const QString& folder);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void setUp();
    void locationUnreadable(const QModelIndex& folder);
    void tryAgainOnExpand(const QModelIndex& folder);

    DrawingExplorerModel* model_;
    // Folders whose expansion just failed: the view collapses them once the expansion that
    // failed has finished, and does not count that expansion as the user's next attempt.
    QSet<QPersistentModelIndex> failing_;
};

}  // namespace vantor
