// The loaded menu groups. Groups are compared by name exactly (case counts), as the host's
// menu automation does; unloading a group takes its menus out of the menu bar.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/app/MenuGroup.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::app {

class MenuBar;

class MenuGroups {
public:
    explicit MenuGroups(MenuBar& menuBar) : menuBar_(menuBar) {}

    // Loads the menu file as a group. eDuplicateKey when a group of that name is loaded
    // already; the errors of MenuGroup::load otherwise, with `error` saying what went wrong.
    ErrorStatus load(const std::string& path, std::string& error);
    ErrorStatus unload(std::string_view name);

    int count() const { return static_cast<int>(groups_.size()); }
    const MenuGroup* item(int index) const;
    const MenuGroup* item(std::string_view name) const;

private:
    MenuBar& menuBar_;
    std::vector<MenuGroup> groups_;
};

}  // namespace cad::app
