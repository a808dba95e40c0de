// A pull-down menu of a menu group (a ***POPn section): its title and items.
#pragma once

#include <string>
#include <vector>

#include "cad/app/MenuItem.h"

namespace cad::app {

struct PopMenu {
    std::string alias;    // "POP1"
    std::string nameTag;  // of the title line
    std::string label;    // the title shown in the menu bar
    std::vector<MenuItem> items;
};

}  // namespace cad::app
