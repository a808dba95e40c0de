// The fields a part record cannot be stored without, checked before anything is stored: the
// group, then the Korean name. Kept apart from the data entry dialog, which only shows the
// answer and focuses the field.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "vantor/ui/FieldLabels.h"

namespace vantor {

// The group's title is fixed; the other fields' titles are the user's labels.
inline constexpr std::string_view kGroupTitle = "그 룹";
inline constexpr std::string_view kRequiredFieldTitle = "빈문자열 에러";

struct MissingField {
    enum class Field { Group, KName };
    Field field;
    std::string message;  // shown under kRequiredFieldTitle with the error icon
};

// The first of the two that is blank (nothing left once the spaces are removed, so a field of
// spaces is empty while a tab is content), with the message built from its title; nullopt
// when both are filled.
std::optional<MissingField> findMissingField(std::string_view group, std::string_view kname,
                                             const FieldLabels::Texts& labels);

}  // namespace vantor
