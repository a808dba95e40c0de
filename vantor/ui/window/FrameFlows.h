// The library window's flows that work on drawings beyond browsing: placing the chosen part
// (through the insertion dialog, the preview pane or a drag onto the drawing), capturing a
// block into the chosen drawing, adding and changing part data, registering drawings, and the
// drawing explorer's operations. The frame names what the user asked for; this carries it out
// with the dialogs of placement, authoring and the registry, and refreshes the frame after.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "vantor/authoring/BlockCapture.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"
#include "vantor/ui/PartShortcuts.h"

namespace cad::app {
class DocumentManager;
}

namespace vantor {

class CUblMainFrame;
class CPreviewSubDlg;
class InsertionStates;
struct InsertionState;
enum class FrameAction;
struct PartRecord;
struct InsertRequest;
struct RegistryFlowContext;

class FrameFlows {
public:
    FrameFlows(CUblMainFrame& frame, PlacementDialogContext context, InsertionStates& insertions,
               cad::app::DocumentManager& documents);

    void run(FrameAction action);
    // The preview pane's own insert: the chosen part with the pane's scale and options.
    void insertFromPreview();
    // A record of the part list is dragged: the insertion is prepared for the drop on the
    // drawing, which then runs it. False (said why) when the host cannot take it now.
    bool prepareDrop();
    // The drag is over: a part not dropped on the drawing is no dropped part any more.
    void dropEnded(bool dropped);

    // The drawing explorer's operations on the item its menu was opened on.
    void openDrawing(const QString& path);
    void writeR14Copy(const QString& path);
    void registerDrawing(const QString& path);
    void newDrawing(const QString& folder);

    CPreviewSubDlg* previewControls() const { return previewControls_; }
    void setPreviewControls(CPreviewSubDlg* controls) { previewControls_ = controls; }
    PlacementDialogContext& context() { return context_; }

private:
    RegistryFlowContext registry() const;
    void addPartData();
    void modifyPartData();
    void captureBlock();
    // The chosen record as a part to place: its first view block, from the part list's drawing.
    bool chosenPart(InsertRequest& request) const;
    void insertWithDialog();
    // The part about to be handed to UBLI, named while the record's drawing is surely open
    // (a placement may read the record again from a copy of its own, closed after).
    static PartShortcut shortcutOf(const std::string& libraryPath, const PartRecord& record);
    // The part handed to UBLI heads the parts inserted last.
    void noteInserted(const PartShortcut& part);

    CUblMainFrame& frame_;
    PlacementDialogContext context_;
    InsertionStates& insertions_;
    cad::app::DocumentManager& documents_;
    CPreviewSubDlg* previewControls_ = nullptr;
    BlockCapture capture_;
    std::optional<PartShortcut> dragged_;  // the part of the drag under way
};

}  // namespace vantor
