// A menu group read from a menu file in the classic format: "***MENUGROUP=name", pull-down
// sections "***POP1" ... whose first line is the menu's title and the others items
// "ID_tag   [label]macro", separators "[--]", cascades opened by "[->label]" and closed by the
// item "[<-label]" ("[<-<-label]" closes two), and "***HELPSTRINGS" giving items their
// status-bar texts. "//" starts a comment line and a "+" at the end of a line continues it.
// Other sections (tool bars, screen, tablet, buttons ...) are skipped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/app/PopMenu.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::app {

class MenuGroup {
public:
    // Reads the file: UTF-8 when it is valid UTF-8, else code page 949 as menu files of Korean
    // systems are. eFileNotFound; eInvalidInput with `error` naming the file, the line and
    // what was expected.
    static ErrorStatus load(const std::string& path, MenuGroup& group, std::string& error);
    static ErrorStatus parse(std::string_view text, std::string_view fileName, MenuGroup& group,
                             std::string& error);

    const std::string& name() const { return name_; }
    const std::string& fileName() const { return fileName_; }
    const std::vector<PopMenu>& menus() const { return menus_; }

private:
    std::string name_;
    std::string fileName_;
    std::vector<PopMenu> menus_;
};

}  // namespace cad::app
