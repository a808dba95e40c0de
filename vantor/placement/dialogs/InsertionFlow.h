// Handing a chosen part to UBLI: the document's insertion state filled and "_UBLI\n" queued
// behind the command guard, from the preview pane, from the insertion dialog, and the dialog
// shown again when the drag asks for the settings.
#pragma once

#include <string>

#include "vantor/store/PartRecord.h"

class QWidget;

namespace cad::app {
class Document;
}

namespace vantor {

class InsertionStates;
class ModuleSettings;
struct InsertionState;
struct PlacementDialogContext;
struct UserBlockInput;

inline constexpr const char* kInsertFileNameMessage =
    "파일이름을 가져올 수 없습니다.\nCPreviewSubDlg::OnInsertBlock(UINT nID, UINT) ERROR";

// The part to place.
struct InsertRequest {
    std::string libraryPath;  // empty when the window could not tell the drawing's file
    std::string blockName;
    PartRecord record;  // record.loaded is false for a block without a catalogue record
    double scale = 1.0;
    // 0: a drag that ends without an outcome reports "cancelled"; 1: "setting".
    int insertMode = 0;
};

// The document's state takes the part, as an insertion not dropped from a list.
void fillInsertionState(const InsertRequest& request, InsertionState& state);
// The library drawing's file name first (without it "파일 이름 확인 에러" and nothing else),
// then the command guard with its messages; when the guard lets "_UBLI\n" through, the current
// document's insertion state takes the part. The state is filled only after the guard passed:
// a refused insert must not change the part an insertion still running is placing. Messages go
// through the process's dialogs port, as the guard's do. True when the command was queued.
bool OnInsertBlock(const InsertRequest& request, const ModuleSettings& settings,
                   InsertionStates& states);

// The insertion dialog over a group's records, then on OK the chosen part handed to UBLI as
// above. True when the command was queued.
bool insertWithDialog(QWidget* parent, UserBlockInput input, PlacementDialogContext& context,
                      InsertionStates& states, int insertMode = 0);

// The drag asked for the settings (outcome 0): the insertion dialog again, over the group of
// the state's record read afresh from its library drawing, on the record and block being
// placed. OK puts the new choice into the state; "취   소" keeps the part as it was; both
// answer true, to drag again. "작도취소" leaves outcome 1 (cancelled) and answers false. A
// block without a catalogue record has no group to choose in: the drawing-options dialog is
// shown instead, and its Cancel ends the placement the same way.
bool reopenUserBlockDlg(InsertionState& state, PlacementDialogContext& context,
                        QWidget* parent = nullptr);

// UBLI's placement with the dialog above as its reopen hook, over the process's editor and
// dialogs: what the module sets as its placement hook where windows are shown.
void runInsertionWithDialog(cad::app::Document& document, InsertionState& state,
                            ModuleSettings& settings);

}  // namespace vantor
