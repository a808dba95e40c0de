// The insertion dialog's input rules, apart from its window: the angle picked in the drawing,
// the scale and angle ranges with their messages, and OK, which keeps the angle in the settings
// and hands the chosen part to the document's insertion state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vantor/store/PartRecord.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

class ModuleSettings;
struct InsertionState;

class InsertionInput {
public:
    static constexpr std::string_view kInputErrorTitle = "입력 에러";
    static constexpr std::string_view kScaleRange = "Sorry, Range = 0.00000001 to 100000000.0";
    static constexpr std::string_view kAngleRange = "Sorry, Range = -360 to 360";
    static constexpr std::string_view kAnglePrompt = "\nAngle: ";

    // The field the user must correct, so the dialog can select its text and focus it.
    enum class Field { None, Scale, Angle };

    // Degrees as the angle edit shows them ("%0.3f"): radians * 0.5 * (360 / pi).
    static std::string angleText(double radians);
    // Asks for the angle in the drawing; on cancel the angle stored in the settings comes back.
    static std::string pickAngle(cad::ed::Editor& editor, const ModuleSettings& settings);
    // The scale (then the angle, in degrees) out of range is shown under "입력 에러" and named.
    static Field validate(double scale, double angleDegrees, cad::app::UserDialogs& dialogs);

    // What the dialog holds when OK is pressed.
    struct Choice {
        std::string libraryPath;
        PartRecord record;     // the record the cascade chose
        std::size_t view = 0;  // the row of the specification list: the record's view slot
        double scale = 1.0;
        std::string angle;  // the angle edit's text, degrees
    };
    // OK: validates, stores the angle text in the settings and fills the state with the view
    // block of the chosen record. A block the library drawing does not define is reported
    // under "블록 삽입 에러" and nothing is handed over. True when the dialog may close and the
    // insertion run.
    static bool accept(const Choice& choice, const cad::db::Database& library,
                       ModuleSettings& settings, InsertionState& state,
                       cad::app::UserDialogs& dialogs);
};

}  // namespace vantor
