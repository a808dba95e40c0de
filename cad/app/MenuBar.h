// The host's menu bar as a model: the pull-down menus placed in it, each with the group it
// came from. The GUI renders it and is told when it changes; choosing an item queues the
// item's typed text to the current document.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/app/PopMenu.h"

namespace cad::app {

class MenuBar {
public:
    struct Entry {
        std::string groupName;
        PopMenu menu;
    };

    // Places the menu at `position` (at the end when out of range). A menu of the same group
    // and alias already in the bar stays where it is.
    void insertInMenuBar(std::string_view groupName, const PopMenu& menu, int position = -1);
    void removeFromMenuBar(std::string_view groupName, std::string_view alias);
    // Every menu of the group (when its group is unloaded).
    void removeGroup(std::string_view groupName);

    const std::vector<Entry>& menus() const { return entries_; }
    int count() const { return static_cast<int>(entries_.size()); }

    void setChangedHandler(std::function<void()> handler) { changed_ = std::move(handler); }

private:
    void changed() {
        if (changed_) changed_();
    }

    std::vector<Entry> entries_;
    std::function<void()> changed_;
};

}  // namespace cad::app
