// Field titles: defaults, keys, and the reset and OK rules of the title dialog.
#include "vantor/ui/FieldLabels.h"

#include "cad/app/UserDialogs.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TextRules.h"

namespace vantor {

namespace {

// The blanks inside the defaults pad short Korean titles to the width of the longer ones in
// the dialogs; they are part of the titles.
constexpr std::array<std::string_view, FieldLabels::kCount> kDefaults = {
    "품   명(K)", "품   명(E)", "사   양",  "재   질",  "중   량",  "가   격", "비   고",
    "USER1",      "USER2",      "USER3",    "USER4",    "USER5",    "USER6",   "정 면 도",
    "측 면 도",   "평 면 도",   "도   면1", "도   면2", "도   면3",
};

constexpr std::array<std::string_view, FieldLabels::kCount> kKeys = {
    "Label_KName", "Label_EName",  "Label_Spec",  "Label_Material", "Label_Weight",
    "Label_Price", "Label_Remark", "Label_User1", "Label_User2",    "Label_User3",
    "Label_User4", "Label_User5",  "Label_User6", "Label_Draw1",    "Label_Draw2",
    "Label_Draw3", "Label_Draw4",  "Label_Draw5", "Label_Draw6",
};

}  // namespace

FieldLabels::Texts FieldLabels::defaults() {
    Texts texts;
    for (std::size_t i = 0; i < kCount; ++i) texts[i] = kDefaults[i];
    return texts;
}

std::string_view FieldLabels::defaultLabel(std::size_t index) {
    return kDefaults.at(index);
}

std::string_view FieldLabels::key(std::size_t index) {
    return kKeys.at(index);
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
