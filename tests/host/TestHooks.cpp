// Test-only commands built into the test copy of the module (never into the shipped one), so
// a headless script can set what the library window would set and read what the module told
// the window: the open-drawing queue, the insert mode, the frame's messages, the guard run as
// the window's buttons run it.
#include <string>
#include <vector>

#include "cad/app/Application.h"
#include "cad/ed/ResultCodes.h"
#include "vantor/host/CommandGuard.h"
#include "vantor/host/RecordingFrame.h"
#include "vantor/host/VantorApp.h"
#include "vantor/ui/ModuleSettings.h"

namespace {

using cad::ed::acutPrintf;

constexpr const char* kGroup = "VANTORTEST";

vantor::VantorApp& module() {
    return *vantor::VantorApp::instance();
}

cad::app::Application& host() {
    return *cad::app::Application::current();
}

// VNTQUEUE: paths, one per line, until an empty line.
void setQueue() {
    std::vector<std::string> paths;
    std::string path;
    while (host().editor().getString("\nPath: ", path, true) == cad::ed::RTNORM && !path.empty())
        paths.push_back(path);
    module().settings()->openQueue = paths;
}

// VNTFRAME: what the frame was told since the last VNTFRAME, and whether the window is open.
void printFrame() {
    auto& frame = dynamic_cast<vantor::RecordingFrame&>(module().frame());
    for (const auto& entry : frame.entries()) acutPrintf("\n[frame] %s", entry.text().c_str());
    frame.clear();
    acutPrintf("\n[window] %s", module().settings()->windowOpen ? "open" : "closed");
}

// VNTGUARD: the guard from inside a command (the host is busy), then as the window's buttons
// run it at the command prompt: as things stand, and during an insertion. The library window
// runs from the event loop, outside every command; a script can only run commands, so the
// command steps out of its document's count for the two later calls.
void runGuard() {
    vantor::ModuleSettings& settings = *module().settings();
    cad::app::DocumentManager& documents = host().documentManager();
    cad::app::Document* document = documents.curDocument();
    auto report = [&](const char* when) {
        bool queued = vantor::queueGuardedCommand(settings, "_UBLI\n");
        acutPrintf("\n[guard] %s: %s", when, queued ? "queued" : "refused");
    };
    report("in a command");
    documents.commandFinished(document);
    report("at the prompt");
    const bool busy = settings.commandBusy;
    settings.commandBusy = true;
    report("while inserting");
    settings.commandBusy = busy;
    documents.commandStarted(document);
}

// VNTMODE: the current document's insert mode.
void setInsertMode() {
    int mode = 0;
    if (host().editor().getInteger("\nInsert mode: ", mode) != cad::ed::RTNORM) return;
    module().insertionStates().of(host().documentManager().curDocument()).insertMode = mode;
}

// What the placement sees when UBLI hands over.
void reportPlacement(cad::app::Document& document, vantor::InsertionState& state) {
    acutPrintf("\n[placement] outcome %d, busy %d, lock 0x%02x", state.outcome,
               module().settings()->commandBusy ? 1 : 0, static_cast<int>(document.lockMode()));
}

// The commands come with the library and go with it; the placement hook is set on the module
// when it is initialised, which VNTMODE's first use is after.
struct Hooks {
    Hooks() {
        cad::app::CommandStack& stack = host().commandStack();
        stack.addCommand(kGroup, "VNTQUEUE", "VNTQUEUE", 0, setQueue);
        stack.addCommand(kGroup, "VNTFRAME", "VNTFRAME", 0, printFrame);
        stack.addCommand(kGroup, "VNTGUARD", "VNTGUARD", 0, runGuard);
        stack.addCommand(kGroup, "VNTMODE", "VNTMODE", 0, [] {
            module().setPlacementHook(reportPlacement);
            setInsertMode();
        });
    }
    ~Hooks() {
        if (cad::app::Application* application = cad::app::Application::current())
            application->commandStack().removeGroup(kGroup);
    }
} hooks;

}  // namespace
