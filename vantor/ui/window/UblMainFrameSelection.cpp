// The library window's selection flow: a drawing chosen in the tree or the explorer shows its
// blocks, libraries and supplier; a group its parts; a part or a block its picture. Records are
// deleted and the company information edited from here, and a part the search found is shown.
#include "vantor/ui/window/UblMainFrame.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPixmap>
#include <QStatusBar>
#include <algorithm>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "vantor/registry/ListFile.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/ListBase.h"
#include "vantor/store/LockedLibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/SupplierInfo.h"
#include "vantor/ui/dialogs/CompanyInfoFlow.h"
#include "vantor/ui/dialogs/SupplierInfoPanel.h"
#include "vantor/ui/explorer/ShellTreeViewEx.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/models/CategoryTreeModel.h"
#include "vantor/ui/models/DrawingTreeModel.h"
#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartListModel.h"
#include "vantor/ui/window/FrameSearch.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/placement/dialogs/PartPicture.h"
#include "vantor/ui/window/UblPreviewView.h"
#include "vantor/ui/window/UblTreeView.h"
#include "vantor/ui/window/VNTreeViewEx.h"

namespace vantor {

namespace {

TreeNode* findRecordBelow(TreeNode& node, std::int64_t id) {
    if (node.kind == TreeNode::Kind::Record) return node.id == id ? &node : nullptr;
    for (const auto& child : node.children)
        if (TreeNode* found = findRecordBelow(*child, id)) return found;
    return nullptr;
}

TreeNode* findRecord(const CVNTreeBase& tree, const std::string& path, std::int64_t id) {
    for (const auto& root : tree.roots()) {
        if (root->drawingPath != path) continue;
        if (TreeNode* found = findRecordBelow(*root, id)) return found;
    }
    return nullptr;
}

}  // namespace

void CUblMainFrame::rebuildFromList(DrawingList& list) {
    status(QStringLiteral("상태 : 데이터 로드 중..."));
    categoryTree_->beginTreeChange();
    tree_.rebuildFromList(list);
    categoryTree_->endTreeChange();
    const int position = windows_.selection();
    const std::string name = position >= 0 && position < static_cast<int>(windows_.names().size())
                                 ? windows_.names()[position]
                                 : std::string();
    drawingModel_->showList(name, list);
    // The first drawing is chosen, so the window never opens on empty lists.
    if (!list.empty() && selection_.side == LeftPane::DrawingTree)
        drawingTree_->selectPath(list.begin()->path);
    statusWindow_->setText(qText(name));
    statusDrawings_->setText(QStringLiteral("도면 %1").arg(list.size()));
    drawings_.clear();
    search_->windowListChanged();
    const auto unreadable = std::count_if(list.begin(), list.end(),
                                          [](const RegisteredDrawing& drawing) { return drawing.active != 1; });
    status(unreadable == 0 ? QString()
                           : QStringLiteral("라이브러리 데이터를 읽을 수 없는 도면 %1개는 흐리게 보입니다.")
                                 .arg(unreadable));
}

std::string CUblMainFrame::chosenDrawing() const {
    if (selection_.side == LeftPane::Explorer) return stdText(explorer_->currentDrawingPath());
    return drawingTree_->currentPath();
}

void CUblMainFrame::listChanged() {
    categoryTree_->beginTreeChange();
    categoryTree_->endTreeChange();
    const std::string chosen = drawingTree_->currentPath();
    drawingModel_->showList(drawingModel_->windowName(), list_);
    statusDrawings_->setText(QStringLiteral("도면 %1").arg(list_.size()));
    drawingTree_->selectPath(chosen);
    search_->windowListChanged();
}

void CUblMainFrame::drawingChanged(const std::string& path) {
    const TreeNode* chosen = categoryTree_->currentNode();
    std::vector<std::string> keys;
    std::int64_t record = 0;
    if (chosen != nullptr && chosen->drawingPath == path) {
        if (chosen->kind == TreeNode::Kind::Record) {
            record = chosen->id;
            chosen = chosen->parent;
        }
        keys = chosen->keyPath();
    }
    if (const PartRecord* shown = partList_->currentRecord(); shown != nullptr && record == 0)
        record = shown->recordId.asOldId();
    CVNTreeBase& tree = shownTree();
    categoryTree_->beginTreeChange();
    tree.loadDrawing(path);
    categoryTree_->endTreeChange();
    search_->drawingChanged(path);
    if (blockModel_->drawingPath() == path) showDrawing(path, drawing(path));
    TreeNode* group = keys.empty() ? nullptr : tree.findNode(path, keys);
    if (group == nullptr) return;
    categoryTree_->selectNode(group);
    nodeChosen(group);
    if (record != 0) partList_->selectRecord(record);
}

bool CUblMainFrame::showPart(const PartShortcut& part) {
    if (selection_.side == LeftPane::Explorer) switchPane(LeftPane::DrawingTree);
    if (!list_.contains(part.drawingPath)) {
        // Found among every window's drawings: its window is chosen as the drop-down would.
        const int count = static_cast<int>(windows_.names().size());
        for (int position = 0; position < count; ++position) {
            const std::optional<std::vector<std::string>> paths =
                ListFile::readAll(windows_.listFile(position));
            if (paths && std::find(paths->begin(), paths->end(), part.drawingPath) != paths->end()) {
                previewView_->windowDropDown()->setCurrentIndex(position);
                break;
            }
        }
    }
    if (!list_.contains(part.drawingPath)) {
        status(QStringLiteral("등록된 도면이 아닙니다: %1").arg(qText(part.drawingPath)));
        return false;
    }
    drawingTree_->selectPath(part.drawingPath);
    TreeNode* record = findRecord(tree_, part.drawingPath, part.recordId);
    if (record == nullptr) {
        status(QStringLiteral("도면에 없는 부품입니다: %1").arg(qText(part.label)));
        return false;
    }
    categoryTree_->selectNode(record->parent);
    nodeChosen(record->parent);
    partList_->selectRecord(part.recordId);
    const PartRecord* shown = partList_->currentRecord();
    return shown != nullptr && shown->recordId.asOldId() == part.recordId;
}

CVNTreeBase& CUblMainFrame::shownTree() {
    return selection_.side == LeftPane::Explorer ? explorerTree_ : tree_;
}

void CUblMainFrame::registeredDrawingChosen(const std::string& path) {
    if (selection_.side == LeftPane::Explorer) return;
    selection_.drawingSelected = !path.empty();
    selection_.captureAllowed = !path.empty();
    updateButtons();
    if (path.empty()) {
        showDrawing({}, nullptr);
        return;
    }
    cad::db::Database* database = drawing(path);
    showDrawing(path, database);
    // Down to the drawing's first group, so its parts show at once.
    TreeNode* node = treeModel_->nodeAt(treeModel_->firstRootOf(path));
    while (node != nullptr && node->kind != TreeNode::Kind::Group && !node->children.empty() &&
           node->children.front()->isDictionary())
        node = node->children.front().get();
    categoryTree_->selectNode(node);
}

void CUblMainFrame::explorerDrawingChosen(const QString& path) {
    if (selection_.side != LeftPane::Explorer) return;
    categoryTree_->beginTreeChange();
    explorerTree_.clear();
    categoryTree_->endTreeChange();
    selection_.drawingSelected = false;
    selection_.captureAllowed = false;
    if (!path.isEmpty()) {
        const std::string file = stdText(path);
        const DrawingExplorer::Selection read = explorerDrawing_.selectDrawing(file);
        if (read == DrawingExplorer::Selection::Shown || read == DrawingExplorer::Selection::ReadOnly) {
            selection_.drawingSelected = true;
            selection_.captureAllowed = read == DrawingExplorer::Selection::Shown;
            categoryTree_->beginTreeChange();
            explorerTree_.loadDrawing(file);
            categoryTree_->endTreeChange();
            showDrawing(file, explorerDrawing_.selectedDatabase());
            categoryTree_->expand(explorerTreeModel_->firstRootOf(file));
            updateButtons();
            return;
        }
    }
    showDrawing({}, nullptr);
    updateButtons();
}

void CUblMainFrame::showDrawing(const std::string& path, cad::db::Database* database) {
    std::vector<BlockListEntry> blocks;
    std::optional<SupplierInfo> supplier;
    if (database != nullptr) {
        CListBase list(dialogs_);
        if (list.build(*database)) blocks = list.blocks();
        supplier = SupplierInfo::readFrom(*database);
    }
    blockModel_->setBlocks(path, blocks, database);
    supplierPanel_->showSupplier(supplier);
}

void CUblMainFrame::nodeChosen(TreeNode* node) {
    TreeNode* group = node;
    if (group != nullptr && group->kind == TreeNode::Kind::Record) group = group->parent;
    if (group == nullptr || group->kind != TreeNode::Kind::Group) {
        partModel_->clear();
        statusParts_->clear();
        return;
    }
    cad::db::Database* database = drawing(group->drawingPath);
    GroupRecords records;
    if (database != nullptr) records = readGroupRecords(objectIdOfNode(*database, group->id));
    const std::size_t count = records.records.size();
    partModel_->setRecords(group->drawingPath, std::move(records.records));
    statusParts_->setText(QStringLiteral("부품 %1").arg(count));
    if (database != nullptr && !records.problems.empty())
        status(QStringLiteral("읽을 수 없는 부품 데이터 %1개를 빼고 보입니다.").arg(records.problems.size()));
    if (node->kind == TreeNode::Kind::Record) partList_->selectRecord(node->id);
}

void CUblMainFrame::recordChosen(const PartRecord* record) {
    if (record == nullptr) return;
    for (std::size_t slot = 0; slot < record->viewBlocks.size(); ++slot) {
        if (record->viewBlocks[slot].empty()) continue;
        previewView_->canvas()->showBlock(partModel_->drawingPath(), record->viewBlocks[slot],
                                          record->viewPoints[slot]);
        return;
    }
    previewView_->canvas()->clear();
}

void CUblMainFrame::blockChosen(const std::string& name) {
    if (name.empty()) return;
    previewView_->canvas()->showBlock(blockModel_->drawingPath(), name, std::nullopt);
}

void CUblMainFrame::deleteRecord() {
    const PartRecord* record = partList_->currentRecord();
    TreeNode* group = categoryTree_->currentNode();
    if (record == nullptr || group == nullptr) return;
    if (group->kind == TreeNode::Kind::Record) group = group->parent;
    TreeNode* node = nullptr;
    for (const auto& child : group->children)
        if (child->kind == TreeNode::Kind::Record && child->id == record->recordId.asOldId())
            node = child.get();
    if (node == nullptr) return;
    categoryTree_->beginTreeChange();
    const bool deleted = shownTree().deleteRecord(*node);
    categoryTree_->endTreeChange();
    categoryTree_->selectNode(group);
    if (deleted) nodeChosen(group);
}

void CUblMainFrame::editCompanyInfo() {
    const std::string path = blockModel_->drawingPath();
    if (path.empty()) {
        status(QStringLiteral("회사 정보를 넣을 도면을 먼저 고르십시오."));
        return;
    }
    // Read afresh under the drawing's lock and saved whole, as every change of a library is.
    LockedLibraryDrawing drawing;
    if (drawing.open(path, dialogs_, LockedLibraryDrawing::WhenHeld::Refuse) ==
        cad::ErrorStatus::eLockViolation)
        return;
    if (!drawing.isOpen()) {
        status(QStringLiteral("도면을 읽을 수 없습니다: %1").arg(qText(path)));
        return;
    }
    if (auto stored = runCompanyInfo(this, drawing, dialogs_, logoPath_)) {
        logoPath_ = stored->logoPath;
        supplierPanel_->showSupplier(stored);
    }
}

cad::db::Database* CUblMainFrame::drawing(const std::string& path) {
    if (drawings_.holdsCurrent(path)) return drawings_.open(path);
    // A large drawing takes a moment to read: the user sees why the window waits.
    status(QStringLiteral("상태 : 도면 읽는 중... %1").arg(qText(path)));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    cad::db::Database* database = drawings_.open(path);
    QApplication::restoreOverrideCursor();
    status(database != nullptr ? QString() : QStringLiteral("도면을 읽을 수 없습니다: %1").arg(qText(path)));
    return database;
}

}  // namespace vantor
