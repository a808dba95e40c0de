// Notifications of the editor that modules may follow: commands starting and ending, system
// variables changing. Every function does nothing unless overridden.
#pragma once

#include <string>

namespace cad::ed {

class EditorReactor {
public:
    virtual ~EditorReactor() = default;
    // The names are the commands' global names.
    virtual void commandWillStart(const std::string& /*commandName*/) {}
    virtual void commandEnded(const std::string& /*commandName*/) {}
    virtual void commandCancelled(const std::string& /*commandName*/) {}
    virtual void commandFailed(const std::string& /*commandName*/) {}
    virtual void unknownCommand(const std::string& /*commandName*/) {}
    virtual void sysVarChanged(const std::string& /*variableName*/, bool /*success*/) {}
};

}  // namespace cad::ed
