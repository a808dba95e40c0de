// The library window's flows on drawings.
#include "vantor/ui/window/FrameFlows.h"

#include <utility>

#include "cad/app/DocumentManager.h"
#include "vantor/authoring/dialogs/PartDataFlow.h"
#include "vantor/host/CommandGuard.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/placement/dialogs/InsertionFlow.h"
#include "vantor/placement/dialogs/PreviewSubDlg.h"
#include "vantor/placement/dialogs/UserBlockDlg.h"
#include "vantor/registry/dialogs/ExplorerFlows.h"
#include "vantor/registry/dialogs/RegistrationFlows.h"
#include "vantor/ui/explorer/ShellTreeViewEx.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/models/PartListModel.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/store/TreeNode.h"
#include "vantor/ui/models/SearchHitModel.h"
#include "vantor/ui/window/FrameSearch.h"
#include "vantor/ui/window/UblMainFrame.h"
#include "vantor/ui/window/VNTreeViewEx.h"

namespace vantor {

FrameFlows::FrameFlows(CUblMainFrame& frame, PlacementDialogContext context,
                       InsertionStates& insertions, cad::app::DocumentManager& documents)
    : frame_(frame),
      context_(context),
      insertions_(insertions),
      documents_(documents),
      capture_(context.editor, documents, context.dialogs) {}

RegistryFlowContext FrameFlows::registry() const {
    return {frame_.drawingList(), frame_.registeredTree(), frame_.managementWindows(),
            context_.settings, context_.dialogs, &frame_};
}

void FrameFlows::run(FrameAction action) {
    switch (action) {
        case FrameAction::InsertPart:
            insertWithDialog();
            break;
        case FrameAction::RegisterDrawings:
            if (registerDrawingsThroughDialog(registry())) frame_.listChanged();
            break;
        case FrameAction::ManageRegistrations:
            if (manageRegisteredDrawings(registry())) frame_.listChanged();
            break;
        case FrameAction::ScanFolder:
            if (scanFolderForDrawings(registry())) frame_.listChanged();
            break;
        case FrameAction::OpenDrawing:
            openDrawing(QString::fromStdString(frame_.chosenDrawing()));
            break;
        case FrameAction::AddPartData:
            addPartData();
            break;
        case FrameAction::ModifyPartData:
            modifyPartData();
            break;
        case FrameAction::CaptureBlock:
            captureBlock();
            break;
        default:
            break;
    }
}

void FrameFlows::addPartData() {
    const TreeNode* node = frame_.categoryTree()->currentNode();
    if (node == nullptr || node->kind == TreeNode::Kind::LibraryRoot) return;
    const std::string path = node->drawingPath;
    if (vantor::addPartData(&frame_, path, node->id, context_.settings, capture_))
        frame_.drawingChanged(path);
}

void FrameFlows::modifyPartData() {
    const PartRecord* record = frame_.partList()->currentRecord();
    if (record == nullptr) return;
    const std::string path = frame_.partModel().drawingPath();
    if (vantor::modifyPartData(&frame_, path, record->recordId.asOldId(), context_.settings,
                               capture_))
        frame_.drawingChanged(path);
}

void FrameFlows::captureBlock() {
    const std::string path = frame_.chosenDrawing();
    if (path.empty()) return;
    if (vantor::captureBlock(&frame_, path, capture_.isCurrentDrawing(path), capture_))
        frame_.drawingChanged(path);
}

void FrameFlows::openDrawing(const QString& path) {
    if (!path.isEmpty())
        openExplorerDrawing(path, context_.settings, documents_, context_.dialogs, &frame_);
}

void FrameFlows::writeR14Copy(const QString& path) {
    writeExplorerR14Copy(frame_.explorerDrawing(), path);
}

void FrameFlows::registerDrawing(const QString& path) {
    if (registerExplorerDrawing(path, registry())) frame_.listChanged();
}

void FrameFlows::newDrawing(const QString& folder) {
    const QString made = makeNewDrawing(folder, context_.dialogs);
    if (!made.isEmpty()) frame_.explorer()->showNewDrawing(made);
}

bool FrameFlows::chosenPart(InsertRequest& request) const {
    const PartRecord* record = frame_.partList()->currentRecord();
    if (record == nullptr) return false;
    request.libraryPath = frame_.partModel().drawingPath();
    request.record = *record;
    for (const std::string& block : record->viewBlocks)
        if (!block.empty()) {
            request.blockName = block;
            break;
        }
    request.scale = previewControls_ != nullptr ? previewControls_->scale() : 1.0;
    return true;
}

void FrameFlows::insertWithDialog() {
    InsertRequest part;
    if (!chosenPart(part)) return;
    UserBlockInput input;
    input.libraryPath = part.libraryPath;
    input.library = frame_.drawing(part.libraryPath);
    input.records = frame_.partModel().records();
    input.lastChosen = static_cast<std::size_t>(frame_.partList()->currentIndex().row());
    input.lastBlock = part.blockName;
    input.scale = part.scale;
    // Started from the dialog: a drag that asks for the settings brings the dialog back.
    // The dialog's records are the part list's, read from the drawing the window keeps open.
    if (vantor::insertWithDialog(&frame_, std::move(input), context_, insertions_, 1)) {
        const InsertionState& state = insertions_.of(documents_.curDocument());
        noteInserted(shortcutOf(state.libraryPath, state.record));
    }
}

PartShortcut FrameFlows::shortcutOf(const std::string& libraryPath, const PartRecord& record) {
    return {libraryPath, record.recordId.isNull() ? 0 : record.recordId.asOldId(),
            partLabel(record.kname, record.spec)};
}

void FrameFlows::noteInserted(const PartShortcut& part) {
    if (part.recordId != 0) frame_.search().partInserted(part);
}
void FrameFlows::insertFromPreview() {
    InsertRequest part;
    if (previewControls_ == nullptr || !chosenPart(part)) return;
    const PartShortcut shortcut = shortcutOf(part.libraryPath, part.record);
    if (previewControls_->OnInsertBlock(part, insertions_)) noteInserted(shortcut);
}

bool FrameFlows::prepareDrop() {
    InsertRequest part;
    if (!chosenPart(part) || part.libraryPath.empty()) return false;
    if (!commandGuardPasses(context_.settings)) return false;
    InsertionState& state = insertions_.of(documents_.curDocument());
    fillInsertionState(part, state);
    state.dragDrop = true;
    dragged_ = shortcutOf(part.libraryPath, part.record);
    return true;
}

void FrameFlows::dropEnded(bool dropped) {
    std::optional<PartShortcut> part = std::exchange(dragged_, std::nullopt);
    if (dropped) {
        if (part) noteInserted(*part);
        return;
    }
    insertions_.of(documents_.curDocument()).dragDrop = false;
}

}  // namespace vantor
