// The guard in front of every command string the library window queues to the host: work in
// the drawing starts only when the host waits at its command prompt and no insertion runs.
#pragma once

#include <string_view>

namespace vantor {

class ModuleSettings;

struct QueueFlags {
    bool activate = true;
    bool wrapUpInactiveDoc = false;
    bool echo = true;
};

// Whether work in the drawing may start now; when not, says why in an error box: "명령 중첩
// 에러" while the host runs a command in the current document, "INSERT PROCESSING" while an
// insertion runs. A part dragged onto the drawing asks before its drag begins.
bool commandGuardPasses(const ModuleSettings& settings);
// Queues `command` ("_UBLI\n", "_UBLO\n") to the current document when the guard passes;
// otherwise queues nothing. Answers whether the command was queued.
bool queueGuardedCommand(const ModuleSettings& settings, std::string_view command,
                         QueueFlags flags = {});

}  // namespace vantor
