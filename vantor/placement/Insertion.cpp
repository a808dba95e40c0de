// The insertion command's placement and drag.
#include "vantor/placement/Insertion.h"

#include <cstdlib>
#include <filesystem>
#include <numbers>

#include "cad/app/Document.h"
#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/ed/Editor.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/placement/InsertionJig.h"
#include "vantor/placement/LinetypeFile.h"
#include "vantor/placement/PartPlacement.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

using cad::ErrorStatus;

Insertion::Insertion(cad::ed::Editor& editor, cad::app::UserDialogs& dialogs,
                     ModuleSettings& settings)
    : editor_(editor), dialogs_(dialogs), settings_(settings) {}

PlacementRequest Insertion::request(const InsertionState& state) const {
    PlacementRequest request;
    request.libraryPath = state.libraryPath;
    request.blockName = state.blockName;
    request.record = state.record;
    request.scale = state.scale;
    request.rotation = std::atof(settings_.drawAngle.c_str()) * std::numbers::pi / 180.0;
    request.options = DrawingOptions::fromBits(settings_.option);
    return request;
}

void Insertion::run(cad::db::Database& db, InsertionState& state) {
    if (state.libraryPath.empty() || state.blockName.empty()) return;
    // Undo and a new choice in the dialog drag again; the outcome UBLI started with is what
    // the window hears if that drag succeeds.
    const int startingOutcome = state.outcome;
    PartPlacement placement(db, editor_, settings_.moduleFolder + std::string(kLinetypeFileName));
    for (;;) {
        PlacedPart placed;
        const ErrorStatus es = placement.place(request(state), placed);
        if (es == ErrorStatus::eKeyNotFound) {
            dialogs_.messageBox(kMissingBlock, kMissingBlockTitle, cad::app::MB_ICONERROR);
            return;
        }
        if (es != ErrorStatus::eOk) {
            editor_.printf("\n라이브러리 도면에서 블록을 가져오지 못했습니다: %s (%s)",
                           state.libraryPath.c_str(),
                           std::string(cad::errorStatusName(es)).c_str());
            return;
        }
        InsertionInfo info{&state.record, std::filesystem::path(state.libraryPath).filename(),
                           state.blockName, placed.comments, settings_.option};
        InsertionJig jig(editor_, std::move(placed), settings_.option, std::move(info));
        jig.setReplace([&](PlacedPart& fresh) {
            return placement.place(request(state), fresh) == ErrorStatus::eOk;
        });
        if (jig.run(state) == InsertionJig::Result::Placed) return;
        const bool again = state.outcome == InsertionState::kOutcomeUndo ||
                           (state.outcome == InsertionState::kOutcomeSetting && reopenDialog &&
                            reopenDialog(state));
        if (!again) return;
        state.outcome = startingOutcome;
    }
}

void runInsertion(cad::app::Document& document, InsertionState& state, ModuleSettings& settings) {
    if (document.database() == nullptr) return;
    Insertion(cad::ed::editor(), cad::app::userDialogs(), settings)
        .run(*document.database(), state);
}

}  // namespace vantor
