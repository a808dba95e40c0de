// The command stack: commands registered in named groups. The group registered last is on top
// and wins when two groups hold the same name. Names are looked up without regard to case.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/app/Command.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::app {

class CommandStack {
public:
    // eDuplicateKey when the group already holds a command of that global or local name (the
    // first registration stays); eInvalidInput for an empty name or one with blanks.
    ErrorStatus addCommand(std::string_view groupName, std::string_view globalName,
                           std::string_view localName, int flags, CommandFunction function);
    // eKeyNotFound when there is no such command or group.
    ErrorStatus removeCmd(std::string_view groupName, std::string_view globalName);
    ErrorStatus removeGroup(std::string_view groupName);

    // With globalFlag the name is a global name (typed with the "_" prefix, which may be
    // given here too); otherwise a local name. nullptr when unknown.
    const Command* lookupCmd(std::string_view name, bool globalFlag) const;
    const Command* lookupGlobalCmd(std::string_view name) const { return lookupCmd(name, true); }
    const Command* lookupLocalCmd(std::string_view name) const { return lookupCmd(name, false); }

    // Group names, top of the stack first.
    std::vector<std::string> groupNames() const;
    std::vector<const Command*> commands(std::string_view groupName) const;

private:
    struct Group {
        std::string name;
        std::vector<Command> commands;
    };
    Group* findGroup(std::string_view name);

    std::vector<Group> groups_;  // top of the stack first
};

}  // namespace cad::app
