// The menu-bar model.
#include "cad/app/MenuBar.h"

#include <algorithm>

namespace cad::app {

void MenuBar::insertInMenuBar(std::string_view groupName, const PopMenu& menu, int position) {
    bool placed = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& e) {
        return e.groupName == groupName && e.menu.alias == menu.alias;
    });
    if (placed) return;
    auto where = position < 0 || position > count() ? entries_.end() : entries_.begin() + position;
    entries_.insert(where, Entry{std::string(groupName), menu});
    changed();
}

void MenuBar::removeFromMenuBar(std::string_view groupName, std::string_view alias) {
    if (std::erase_if(entries_, [&](const Entry& e) {
            return e.groupName == groupName && e.menu.alias == alias;
        }))
        changed();
}

void MenuBar::removeGroup(std::string_view groupName) {
    if (std::erase_if(entries_, [&](const Entry& e) { return e.groupName == groupName; }))
        changed();
}

}  // namespace cad::app
