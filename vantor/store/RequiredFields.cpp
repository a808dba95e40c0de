// The required fields of a part record.
#include "vantor/store/RequiredFields.h"

#include "vantor/ui/TextRules.h"

namespace vantor {

namespace {

std::string mustEnter(std::string_view title) {
    return "\"" + std::string(title) + "\"을(를) 반드시 입력하십시오.";
}

}  // namespace

std::optional<MissingField> findMissingField(std::string_view group, std::string_view kname,
                                             const FieldLabels::Texts& labels) {
    if (isBlankText(group)) return MissingField{MissingField::Field::Group, mustEnter(kGroupTitle)};
    if (isBlankText(kname))
        return MissingField{MissingField::Field::KName, mustEnter(labels[FieldLabels::KName])};
    return std::nullopt;
}

}  // namespace vantor
