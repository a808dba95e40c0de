// Loading and unloading menu groups.
#include "cad/app/MenuGroups.h"

#include <algorithm>

#include "cad/app/MenuBar.h"

namespace cad::app {

ErrorStatus MenuGroups::load(const std::string& path, std::string& error) {
    MenuGroup group;
    ErrorStatus es = MenuGroup::load(path, group, error);
    if (es != ErrorStatus::eOk) return es;
    if (item(group.name()) != nullptr) {
        error = "menu group \"" + group.name() + "\" is loaded already";
        return ErrorStatus::eDuplicateKey;
    }
    groups_.push_back(std::move(group));
    return ErrorStatus::eOk;
}

ErrorStatus MenuGroups::unload(std::string_view name) {
    if (!std::erase_if(groups_, [&](const MenuGroup& g) { return g.name() == name; }))
        return ErrorStatus::eKeyNotFound;
    menuBar_.removeGroup(name);
    return ErrorStatus::eOk;
}

const MenuGroup* MenuGroups::item(int index) const {
    return index >= 0 && index < count() ? &groups_[static_cast<std::size_t>(index)] : nullptr;
}

const MenuGroup* MenuGroups::item(std::string_view name) const {
    for (const MenuGroup& group : groups_)
        if (group.name() == name) return &group;
    return nullptr;
}

}  // namespace cad::app
