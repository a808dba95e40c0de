// The authoring flows of the library window.
#include "vantor/authoring/dialogs/PartDataFlow.h"

#include <QWidget>

#include "cad/app/UserDialogs.h"
#include "vantor/authoring/BlockCapture.h"
#include "vantor/authoring/CaptureFlow.h"
#include "vantor/authoring/LibraryEditSession.h"
#include "vantor/authoring/dialogs/DataPropertyDlg.h"
#include "vantor/authoring/dialogs/DialogControls.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

using Action = CDataPropertyDlg::StoreAction;

namespace {

constexpr unsigned kErrorBox = cad::app::MB_OK | cad::app::MB_ICONERROR;

// Runs the dialog over the open drawing; the handler stores into it. Whether the file changed.
bool runDialog(QWidget* parent, PartDataEntry entry, const ModuleSettings& settings,
               BlockCapture& capture, LibraryEditSession& session,
               CDataPropertyDlg::StoreHandler store) {
    CDataPropertyDlg dialog(std::move(entry), settings.labels, capture.dialogs(), parent);
    dialog.setCapture(&capture, &session.database());
    dialog.setStoreHandler(std::move(store));
    if (session.isReadOnly()) {
        dialog.setReadOnly(authoring_controls::qText(
            session.readOnlyReason() +
            "\n읽기 전용으로 열었습니다: 볼 수는 있지만 저장할 수는 없습니다."));
    }
    dialog.runModal();
    return session.saved();
}

}  // namespace

bool addPartData(QWidget* parent, const std::string& drawingPath, std::int64_t nodeId,
                 const ModuleSettings& settings, BlockCapture& capture) {
    auto session = LibraryEditSession::open(drawingPath, capture.dialogs());
    if (!session) return false;
    const cad::db::ObjectId selected = session->objectOfNode(nodeId);
    if (selected.isNull()) {
        capture.dialogs().messageBox("데이터가 추가되지 않았습니다.", "저장 에러", kErrorBox);
        return false;
    }
    return runDialog(parent, PartDataEntry{}, settings, capture, *session,
                     [&](Action action, const PartRecord& record) {
                         return action == Action::Add &&
                                !session->addRecord(selected, record).isNull();
                     });
}

bool modifyPartData(QWidget* parent, const std::string& drawingPath, std::int64_t recordHandle,
                    const ModuleSettings& settings, BlockCapture& capture) {
    // A part of a drawing another user is changing can still be looked at.
    auto session = LibraryEditSession::open(drawingPath, capture.dialogs(),
                                            LibraryEditSession::WhenHeld::ReadOnly);
    if (!session) return false;
    PartDataEntry entry;
    entry.mode = PartDataEntry::Mode::Modify;
    const cad::db::ObjectId recordId = session->objectOfNode(recordHandle);
    if (recordId.isNull() || readPartRecord(recordId, entry.record) != cad::ErrorStatus::eOk) {
        capture.dialogs().messageBox("데이터를 수정할 수 없습니다.", "수정 에러", kErrorBox);
        return false;
    }
    return runDialog(parent, std::move(entry), settings, capture, *session,
                     [&](Action action, const PartRecord& record) {
                         return action == Action::Add
                                    ? !session->addRecord(recordId, record).isNull()
                                    : session->rewriteRecord(recordId, record);
                     });
}

bool captureBlock(QWidget* caller, const std::string& drawingPath, bool currentDrawing,
                  BlockCapture& capture) {
    QWidget* window = caller ? caller->window() : nullptr;
    CallerWindow hidden{[window] {
                            if (window) window->hide();
                            authoring_controls::activateHostWindow();
                        },
                        [window] {
                            if (!window) return;
                            window->show();
                            window->raise();
                            window->activateWindow();
                        }};
    return captureIntoLibraryDrawing(drawingPath, currentDrawing, capture, hidden);
}

}  // namespace vantor
