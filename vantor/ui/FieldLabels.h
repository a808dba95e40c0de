// The 19 user-editable field titles: their defaults and settings keys as the field table gives
// them, and the reset and OK rules of the title dialog, tested without a display.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "vantor/ui/PartFields.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class ModuleSettings;

class FieldLabels {
public:
    static constexpr std::size_t kCount = PartFields::kLabelCount;
    using Texts = std::array<std::string, kCount>;

    // Positions in the label array are the fields' ids (FieldLabels::Weight ...); the group,
    // last among them, has no title here.
    using enum PartFields::Id;

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
