// Command registration and look-up.
#include "cad/app/CommandStack.h"
#include "cad/sys/AsciiCase.h"

#include <algorithm>
#include <cctype>

namespace cad::app {

namespace {

bool validName(std::string_view name) {
    return !name.empty() && std::none_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isspace(c) || c < 0x20;
    });
}

}  // namespace

CommandStack::Group* CommandStack::findGroup(std::string_view name) {
    for (Group& group : groups_)
        if (sys::equalNoCase(group.name, name)) return &group;
    return nullptr;
}

ErrorStatus CommandStack::addCommand(std::string_view groupName, std::string_view globalName,
                                     std::string_view localName, int flags,
                                     CommandFunction function) {
    if (!validName(groupName) || !validName(globalName) || !validName(localName))
        return ErrorStatus::eInvalidInput;
    Group* group = findGroup(groupName);
    if (group == nullptr) {
        groups_.insert(groups_.begin(), Group{std::string(groupName), {}});
        group = &groups_.front();
    }
    for (const Command& command : group->commands)
        if (sys::equalNoCase(command.globalName, globalName) ||
            sys::equalNoCase(command.localName, localName))
            return ErrorStatus::eDuplicateKey;
    group->commands.push_back(
        {group->name, std::string(globalName), std::string(localName), flags, std::move(function)});
    return ErrorStatus::eOk;
}

ErrorStatus CommandStack::removeCmd(std::string_view groupName, std::string_view globalName) {
    Group* group = findGroup(groupName);
    if (group == nullptr) return ErrorStatus::eKeyNotFound;
    auto removed = std::erase_if(
        group->commands, [&](const Command& c) { return sys::equalNoCase(c.globalName, globalName); });
    return removed ? ErrorStatus::eOk : ErrorStatus::eKeyNotFound;
}

ErrorStatus CommandStack::removeGroup(std::string_view groupName) {
    auto removed =
        std::erase_if(groups_, [&](const Group& g) { return sys::equalNoCase(g.name, groupName); });
    return removed ? ErrorStatus::eOk : ErrorStatus::eKeyNotFound;
}

const Command* CommandStack::lookupCmd(std::string_view name, bool globalFlag) const {
    if (globalFlag && !name.empty() && name.front() == '_') name.remove_prefix(1);
    for (const Group& group : groups_)
        for (const Command& command : group.commands)
            if (sys::equalNoCase(globalFlag ? command.globalName : command.localName, name))
                return &command;
    return nullptr;
}

std::vector<std::string> CommandStack::groupNames() const {
    std::vector<std::string> out;
    for (const Group& group : groups_) out.push_back(group.name);
    return out;
}

std::vector<const Command*> CommandStack::commands(std::string_view groupName) const {
    std::vector<const Command*> out;
    for (const Group& group : groups_)
        if (sys::equalNoCase(group.name, groupName))
            for (const Command& command : group.commands) out.push_back(&command);
    return out;
}

}  // namespace cad::app
