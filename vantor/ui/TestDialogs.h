// For tests: the message boxes the scripted dialogs showed, written so that one comparison
// checks their number, order, exact words, icon and buttons.
#pragma once

#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"

namespace vantor::testing_support {

// "title: text", then the icon and any buttons beyond OK: "저장 에러: ... [error]",
// "분류 삭제: ... [warning ok-cancel]".
inline std::vector<std::string> boxesShown(const cad::app::ScriptedDialogs& dialogs) {
    std::vector<std::string> shown;
    for (const auto& box : dialogs.messageBoxes()) {
        std::string line = box.title + ": " + box.text;
        std::string marks;
        switch (box.icon()) {
            case cad::app::MB_ICONERROR: marks = "error"; break;
            case cad::app::MB_ICONQUESTION: marks = "question"; break;
            case cad::app::MB_ICONWARNING: marks = "warning"; break;
            case cad::app::MB_ICONINFORMATION: marks = "information"; break;
            default: break;
        }
        switch (box.buttons()) {
            case cad::app::MB_OK: break;
            case cad::app::MB_OKCANCEL: marks += " ok-cancel"; break;
            case cad::app::MB_YESNO: marks += " yes-no"; break;
            case cad::app::MB_YESNOCANCEL: marks += " yes-no-cancel"; break;
            default: marks += " buttons " + std::to_string(box.buttons()); break;
        }
        if (marks.starts_with(' ')) marks.erase(0, 1);
        if (!marks.empty()) line += " [" + marks + "]";
        shown.push_back(line);
    }
    return shown;
}

}  // namespace vantor::testing_support
