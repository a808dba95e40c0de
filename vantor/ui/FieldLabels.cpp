// Field titles: defaults, keys, and the reset and OK rules of the title dialog.
#include "vantor/ui/FieldLabels.h"

#include <stdexcept>

#include "cad/app/UserDialogs.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TextRules.h"

namespace vantor {

namespace {

const PartFields::Field& titled(std::size_t index) {
    if (index >= FieldLabels::kCount)
        throw std::out_of_range("no field title " + std::to_string(index));
    return PartFields::all()[index];
}

}  // namespace

FieldLabels::Texts FieldLabels::defaults() {
    Texts texts;
    for (std::size_t i = 0; i < kCount; ++i) texts[i] = defaultLabel(i);
    return texts;
}

std::string_view FieldLabels::defaultLabel(std::size_t index) {
    return titled(index).defaultLabel;
}

std::string_view FieldLabels::key(std::size_t index) {
    return titled(index).labelKey;
}

void FieldLabels::resetLabels(ModuleSettings& settings) {
    settings.labels = defaults();
}

int FieldLabels::applyLabels(ModuleSettings& settings, const Texts& texts,
                             cad::app::UserDialogs& dialogs) {
    int firstBlank = -1;
    for (std::size_t i = 0; i < kCount; ++i) {
        if (isBlankText(texts[i])) {
            firstBlank = static_cast<int>(i);
            dialogs.messageBox("빈 문자열은 입력할 수 없습니다.", "빈문자열 에러",
                               cad::app::MB_OK | cad::app::MB_ICONERROR);
            break;
        }
    }
    settings.labels = texts;
    return firstBlank;
}

}  // namespace vantor
