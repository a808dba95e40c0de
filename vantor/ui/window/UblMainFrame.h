// The library window's frame: menu, tool bar and status bar around six views in nested
// splitters. Left, the drawing tree or the drawing explorer above the category tree; right,
// the data pane (a drawing's blocks) and the part list above the preview with the management
// windows. A selection flows one way: drawing, its categories, a group's parts, the picture.
#pragma once

#include <QMainWindow>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/registry/operations/DrawingExplorer.h"
#include "vantor/store/LibraryDrawingCache.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ToolbarStates.h"

class QAction;
class QLabel;
class QToolBar;

namespace cad::app {
class DocumentManager;
class UserDialogs;
}  // namespace cad::app
namespace cad::ed {
class Editor;
}

namespace vantor {

class BlockListModel;
class CategoryTreeModel;
class CListViewEx;
class CRecListView;
class CShellTreeViewEx;
class CUblPreviewView;
class CUblTreeView;
class CVNTreeViewEx;
class CViewSplitter;
class DrawingTreeModel;
class FrameFlows;
class FrameSearch;
class InsertionStates;
class ModuleSettings;
class PartListModel;
class PartSearchPane;
class SupplierInfoPanel;
enum class FrameAction;
struct PartRecord;
struct PartShortcut;

// What the frame works with, owned by the module.
struct FrameContext {
    ModuleSettings& settings;
    cad::app::UserDialogs& dialogs;
    cad::app::DocumentManager& documents;
    cad::ed::Editor& editor;          // picks in the drawing for the dialogs
    InsertionStates& insertions;      // the parts handed to UBLI, per document
    std::string title;     // "Vantor Ver.0.1.0.0"
    std::string helpPage;  // the help's index page; empty when there is none
};

class CUblMainFrame : public QMainWindow, private TreeRebuilder {
    Q_OBJECT
public:
    explicit CUblMainFrame(FrameContext context, QWidget* parent = nullptr);
    ~CUblMainFrame() override;

    // A private message, as the frame's message loop receives it.
    void handleMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam);
    // Runs the command of `id` (a menu item, a tool button, a context-menu item).
    void runCommand(int id);
    void redrawPreview();
    void refreshBlockList();

    QAction* commandAction(int id) const;
    CUblTreeView* drawingTree() const { return drawingTree_; }
    CShellTreeViewEx* explorer() const { return explorer_; }
    CVNTreeViewEx* categoryTree() const { return categoryTree_; }
    CRecListView* dataPane() const { return dataPane_; }
    CListViewEx* partList() const { return partList_; }
    CUblPreviewView* previewView() const { return previewView_; }
    CViewSplitter* splitter(int which) const;  // 0 main, 1 left, 2 right, 3 right upper
    LeftPane leftPane() const { return selection_.side; }
    CVNTreeBase& registeredTree() { return tree_; }
    DrawingList& drawingList() { return list_; }
    DrawingExplorer& explorerDrawing() { return explorerDrawing_; }
    FrameFlows& flows() { return *flows_; }
    FrameSearch& search() { return *search_; }
    PartSearchPane* searchPane() const { return searchPane_; }
    // The drawing chosen on the side shown (a registered drawing, or the explored file);
    // empty when none is.
    std::string chosenDrawing() const;
    // The registered drawings changed in memory and in their tree (a registration): the views
    // show them again.
    void listChanged();
    // A library drawing was changed and saved here (part data, a captured block): its tree is
    // read again, and the views show it with the same group and record chosen.
    void drawingChanged(const std::string& path);
    // Shows a part found by the search or kept in a short list: its window, its drawing, its
    // group and its record chosen, as if the user had walked there. False, said in the status
    // bar, when the drawing is registered in no window or the record is no longer in it.
    bool showPart(const PartShortcut& part);
    PartListModel& partModel() { return *partModel_; }
    // A library drawing from the kept ones, or read now with the wait shown; nullptr when it
    // cannot be read (said in the status bar).
    cad::db::Database* drawing(const std::string& path);
    ManagementWindows& managementWindows() { return windows_; }

signals:
    // A flow the placement and authoring dialogs take over: the frame only names it.
    void placementOrAuthoringRequested(FrameAction action);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    void buildMenu();
    void buildToolBar();
    void buildStatusBar();
    void buildClientArea();
    void wireViews();
    QAction* makeAction(int id, bool forToolBar);
    void applyPaneSizes();
    // Above the category tree: the search's lists while they are wanted, else the drawing
    // tree or the explorer, as the side chosen.
    void showUpperLeftView();
    void storeGeometry();
    void storePaneSizes();

    void rebuildFromList(DrawingList& list) override;
    void switchPane(LeftPane side);
    void toggleAlwaysOnTop();
    void showPreviewPane();
    void showDataPane();
    void updateButtons();
    void reportOpenedDrawings(int queued, int failed);
    void setDisplayStyle(int style);
    void showViewMenu();

    void registeredDrawingChosen(const std::string& path);
    void explorerDrawingChosen(const QString& path);
    void showDrawing(const std::string& path, cad::db::Database* database);
    void nodeChosen(TreeNode* node);
    void recordChosen(const PartRecord* record);
    void blockChosen(const std::string& name);
    void deleteRecord();
    void editCompanyInfo();
    CVNTreeBase& shownTree();
    CategoryTreeModel& shownTreeModel();
    void status(const QString& text);

    FrameContext context_;
    ModuleSettings& settings_;
    cad::app::UserDialogs& dialogs_;
    DrawingList list_;
    CVNTreeBase tree_;
    CVNTreeBase explorerTree_;
    ManagementWindows windows_;
    DrawingExplorer explorerDrawing_;
    LibraryDrawingCache drawings_;
    ToolbarSelection selection_;

    std::unique_ptr<DrawingTreeModel> drawingModel_;
    std::unique_ptr<CategoryTreeModel> treeModel_;
    std::unique_ptr<CategoryTreeModel> explorerTreeModel_;
    std::unique_ptr<PartListModel> partModel_;
    std::unique_ptr<BlockListModel> blockModel_;
    std::unique_ptr<FrameFlows> flows_;
    FrameSearch* search_ = nullptr;  // owned by its pane

    std::map<int, QAction*> actions_;
    QToolBar* toolBar_ = nullptr;
    QLabel* statusWindow_ = nullptr;
    QLabel* statusDrawings_ = nullptr;
    QLabel* statusParts_ = nullptr;
    CViewSplitter* mainSplitter_ = nullptr;
    CViewSplitter* leftSplitter_ = nullptr;
    CViewSplitter* rightSplitter_ = nullptr;
    CViewSplitter* rightUpperSplitter_ = nullptr;
    CUblTreeView* drawingTree_ = nullptr;
    CShellTreeViewEx* explorer_ = nullptr;
    CVNTreeViewEx* categoryTree_ = nullptr;
    PartSearchPane* searchPane_ = nullptr;
    CRecListView* dataPane_ = nullptr;
    CListViewEx* partList_ = nullptr;
    CUblPreviewView* previewView_ = nullptr;
    SupplierInfoPanel* supplierPanel_ = nullptr;
    std::string logoPath_;  // the logo file chosen last: drawings keep its bytes, not its name
    bool laidOut_ = false;
};

}  // namespace vantor
