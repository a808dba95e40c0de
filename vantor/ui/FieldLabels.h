// The 19 user-editable field titles: their defaults and settings keys, and the reset and OK
// rules of the title dialog, kept apart from the dialog so they are tested without a display.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class ModuleSettings;

class FieldLabels {
public:
    static constexpr std::size_t kCount = 19;
    using Texts = std::array<std::string, kCount>;

    // Positions in the label array, in the order of the dialog's edits and the settings keys.
    enum Index : std::size_t {
        KName,
        EName,
        Spec,
        Material,
        Weight,
        Price,
        Remark,
        User1,
        User2,
        User3,
        User4,
        User5,
        User6,
        Draw1,  // front view
        Draw2,  // side view
        Draw3,  // plan view
        Draw4,  // drawing 1
        Draw5,  // drawing 2
        Draw6,  // drawing 3
    };

    static Texts defaults();
    static std::string_view defaultLabel(std::size_t index);
    static std::string_view key(std::size_t index);  // "Label_KName" ...

    // The reset button: the live settings take the defaults at once, whatever the dialog's
    // OK or cancel does afterwards.
    static void resetLabels(ModuleSettings& settings);

    // The OK button. The first blank title is reported, but all 19 texts are stored anyway:
    // the message warns and does not keep the dialog open. Answers the index of that first
    // blank title, for the dialog to select and focus its edit, or -1.
    static int applyLabels(ModuleSettings& settings, const Texts& texts,
                           cad::app::UserDialogs& dialogs);
};

}  // namespace vantor
