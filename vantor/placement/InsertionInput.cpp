// The insertion dialog's input rules.
#include "vantor/placement/InsertionInput.h"

#include <cstdio>
#include <cstdlib>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/placement/Insertion.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

std::string InsertionInput::angleText(double radians) {
    // Half of 360/pi rather than 180/pi: the two factors give the same digits the edit has
    // always shown, to the last place.
    char text[64];
    std::snprintf(text, sizeof text, "%0.3f", radians * 0.5 * 114.59155902616465);
    return text;
}

std::string InsertionInput::pickAngle(cad::ed::Editor& editor, const ModuleSettings& settings) {
    editor.initGet(0);
    double radians = 0.0;
    if (editor.getAngle(kAnglePrompt, radians) != cad::ed::RTNORM) return settings.drawAngle;
    return angleText(radians);
}

InsertionInput::Field InsertionInput::validate(double scale, double angleDegrees,
                                               cad::app::UserDialogs& dialogs) {
    if (!(scale >= 0.00000001 && scale <= 100000000.0)) {
        dialogs.messageBox(kScaleRange, kInputErrorTitle, cad::app::MB_ICONERROR);
        return Field::Scale;
    }
    if (!(angleDegrees >= -360.0 && angleDegrees <= 360.0)) {
        dialogs.messageBox(kAngleRange, kInputErrorTitle, cad::app::MB_ICONERROR);
        return Field::Angle;
    }
    return Field::None;
}

bool InsertionInput::accept(const Choice& choice, const cad::db::Database& library,
                            ModuleSettings& settings, InsertionState& state,
                            cad::app::UserDialogs& dialogs) {
    if (validate(choice.scale, std::atof(choice.angle.c_str()), dialogs) != Field::None)
        return false;
    settings.drawAngle = choice.angle;
    const std::string& block =
        choice.view < PartRecord::kViewCount ? choice.record.viewBlocks[choice.view] : "";
    auto table =
        cad::db::open<cad::db::SymbolTable>(library.blockTableId(), cad::db::OpenMode::ForRead);
    if (block.empty() || !table || !table->has(block)) {
        dialogs.messageBox(Insertion::kMissingBlock, Insertion::kMissingBlockTitle,
                           cad::app::MB_ICONERROR);
        return false;
    }
    state.libraryPath = choice.libraryPath;
    state.blockName = block;
    state.record = choice.record;
    state.scale = choice.scale;
    return true;
}

}  // namespace vantor
