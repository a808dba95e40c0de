// From a chosen part to the queued insertion.
#include "vantor/placement/dialogs/InsertionFlow.h"

#include <QApplication>
#include <algorithm>
#include <optional>
#include <vector>
#include <memory>

#include "cad/app/Application.h"
#include "cad/app/Document.h"
#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/Editor.h"
#include "vantor/host/CommandGuard.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/placement/Insertion.h"
#include "vantor/placement/PartLink.h"
#include "vantor/placement/dialogs/DrawOptionDlg.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"
#include "vantor/placement/dialogs/UserBlockDlg.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/LibraryKind.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

void fillInsertionState(const InsertRequest& request, InsertionState& state) {
    state.libraryPath = request.libraryPath;
    state.blockName = request.blockName;
    state.record = request.record;
    state.scale = request.scale;
    state.insertMode = request.insertMode;
    state.dragDrop = false;
}

bool OnInsertBlock(const InsertRequest& request, const ModuleSettings& settings,
                   InsertionStates& states) {
    if (request.libraryPath.empty()) {
        cad::app::userDialogs().messageBox(kInsertFileNameMessage, kFileNameErrorTitle,
                                           cad::app::MB_ICONERROR);
        return false;
    }
    if (!queueGuardedCommand(settings, "_UBLI\n")) return false;
    // UBLI runs only when the host reads its next input, so the state is filled before it
    // looks.
    fillInsertionState(request,
                       states.of(cad::app::Application::current()->documentManager().curDocument()));
    return true;
}

bool insertWithDialog(QWidget* parent, UserBlockInput input, PlacementDialogContext& context,
                      InsertionStates& states, int insertMode) {
    const std::string path = input.libraryPath;
    UserBlockChoice choice;
    if (CUserBlockDlg::run(parent, std::move(input), context, choice) != CUserBlockDlg::Ending::Ok)
        return false;
    return OnInsertBlock({path, choice.blockName, choice.record, choice.scale, insertMode},
                         context.settings, states);
}

bool reopenUserBlockDlg(InsertionState& state, PlacementDialogContext& context, QWidget* parent) {
    if (!state.record.loaded) {
        const std::optional<DrawOptionValues> values = CDrawOptionDlg::run(
            parent, {context.settings.option, context.settings.drawAngle}, context);
        if (!values) {
            state.outcome = InsertionState::kOutcomeCancelled;
            return false;
        }
        context.settings.option = values->option;
        context.settings.drawAngle = values->angle;
        return true;
    }

    std::unique_ptr<cad::db::Database> library = openLibraryDrawing(state.libraryPath);
    UserBlockInput input;
    input.libraryPath = state.libraryPath;
    input.library = library.get();
    input.lastBlock = state.blockName;
    input.scale = state.scale;
    if (library) {
        if (std::optional<RecordLocation> found = locateRecord(*library, state.record))
            input.records = readGroupRecords(found->groupId).records;
    }
    auto same = std::find_if(input.records.begin(), input.records.end(),
                             [&](const PartRecord& r) { return r.key == state.record.key; });
    if (same == input.records.end()) {
        // The group is gone or changed under the drag: the record being placed is the choice.
        input.records.push_back(state.record);
        same = input.records.end() - 1;
    }
    input.lastChosen = static_cast<std::size_t>(same - input.records.begin());

    UserBlockChoice choice;
    switch (CUserBlockDlg::run(parent, std::move(input), context, choice)) {
        case CUserBlockDlg::Ending::Ok:
            state.blockName = choice.blockName;
            state.record = choice.record;
            state.scale = choice.scale;
            return true;
        case CUserBlockDlg::Ending::Cancel:
            return true;
        case CUserBlockDlg::Ending::CancelDrawing:
            state.outcome = InsertionState::kOutcomeCancelled;
            return false;
    }
    return false;
}

void runInsertionWithDialog(cad::app::Document& document, InsertionState& state,
                            ModuleSettings& settings) {
    if (document.database() == nullptr) return;
    PlacementDialogContext context{settings, cad::app::userDialogs(), cad::ed::editor()};
    Insertion insertion(context.editor, context.dialogs, settings);
    insertion.reopenDialog = [&context](InsertionState& reopened) {
        return reopenUserBlockDlg(reopened, context, QApplication::activeWindow());
    };
    insertion.run(*document.database(), state);
}

}  // namespace vantor
