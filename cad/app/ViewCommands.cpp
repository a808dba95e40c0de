// ZOOM, PAN, REGEN and REDRAW.
#include "cad/app/ViewCommands.h"

#include <cmath>
#include <cstdlib>

#include "cad/app/Application.h"
#include "cad/app/HostCommands.h"
#include "cad/app/ViewPort.h"
#include "cad/ed/ResultCodes.h"
#include "cad/sys/AsciiCase.h"

namespace cad::app {

namespace {

// "2", "0.5x", "3X": a scale factor relative to the present view; nothing else is one.
bool scaleFactor(const std::string& text, double& factor) {
    std::string digits = text;
    if (!digits.empty() && sys::asciiUpper(digits.back()) == 'X') digits.pop_back();
    if (digits.empty()) return false;
    char* end = nullptr;
    factor = std::strtod(digits.c_str(), &end);
    return end == digits.c_str() + digits.size() && std::isfinite(factor) && factor > 0.0;
}

}  // namespace

void ViewCommands::registerCommands() {
    CommandStack& stack = app_.commandStack();
    const char* group = HostCommands::kGroupName;
    stack.addCommand(group, "ZOOM", "ZOOM", ACRX_CMD_TRANSPARENT, [this] { zoom(); });
    stack.addCommand(group, "PAN", "PAN", ACRX_CMD_TRANSPARENT, [this] { pan(); });
    stack.addCommand(group, "REGEN", "REGEN", ACRX_CMD_MODAL, [this] {
        if (view_) view_->regen();
    });
    stack.addCommand(group, "REDRAW", "REDRAW", ACRX_CMD_TRANSPARENT, [this] {
        if (view_) view_->redraw();
    });
}

void ViewCommands::zoom() {
    ed::Editor& editor = app_.editor();
    editor.initGet(ed::RSG_OTHER, "Extents Previous Window");
    ge::Point3d corner;
    const int answer = editor.getPoint(
        "\nSpecify corner of window, enter a scale factor (nX), or [Extents/Previous/Window] <Extents>: ",
        corner);
    std::string word;
    if (answer == ed::RTKWORD) editor.getInput(word);
    if (answer == ed::RTNONE || word == "Extents") {
        if (view_) view_->zoomExtents();
        return;
    }
    if (word == "Previous") {
        if (view_ && !view_->zoomPrevious()) editor.print("\nNo previous view saved.");
        return;
    }
    if (answer == ed::RTKWORD && word != "Window") {
        double factor = 0.0;
        if (!scaleFactor(word, factor)) {
            editor.print("\nRequires a point, a scale factor (nX) or an option keyword.");
            return;
        }
        if (view_) view_->zoomScale(factor);
        return;
    }
    if (word == "Window") {
        if (editor.getPoint("\nSpecify first corner: ", corner) != ed::RTNORM) return;
    } else if (answer != ed::RTNORM) {
        return;
    }
    ge::Point3d other;
    if (editor.getCorner("\nSpecify opposite corner: ", corner, other) != ed::RTNORM) return;
    if (view_) view_->zoomWindow(corner, other);
}

void ViewCommands::pan() {
    ed::Editor& editor = app_.editor();
    ge::Point3d base;
    if (editor.getPoint("\nSpecify base point or displacement: ", base) != ed::RTNORM) return;
    ge::Point3d second;
    const int answer = editor.getPoint("\nSpecify second point: ", second, base);
    if (answer == ed::RTNONE) {
        // Enter: the first point was the displacement itself.
        if (view_) view_->pan({base.x, base.y, base.z});
    } else if (answer == ed::RTNORM) {
        if (view_) view_->pan(second - base);
    }
}

}  // namespace cad::app
