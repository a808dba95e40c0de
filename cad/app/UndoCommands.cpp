// U, UNDO and REDO over the current document's drawing.
#include "cad/app/UndoCommands.h"

#include <string>

#include "cad/app/Application.h"
#include "cad/db/Database.h"
#include "cad/ed/ResultCodes.h"

namespace cad::app {

namespace {

db::Database* currentDatabase(Application& app) {
    Document* document = app.documentManager().curDocument();
    return document != nullptr ? document->database() : nullptr;
}

// Said when a module left an object open: a step put back under it would leave the module
// holding an object the drawing no longer has.
constexpr const char* kObjectsOpen = "\nCannot undo or redo while an object is open.";

}  // namespace

void UndoCommands::registerCommands() {
    CommandStack& stack = app_.commandStack();
    const char* group = HostCommands::kGroupName;
    stack.addCommand(group, "U", "U", ACRX_CMD_MODAL, [this] { undo(false); });
    stack.addCommand(group, "UNDO", "UNDO", ACRX_CMD_MODAL, [this] { undo(true); });
    stack.addCommand(group, "REDO", "REDO", ACRX_CMD_MODAL, [this] { redo(); });
}

void UndoCommands::undo(bool ask) {
    ed::Editor& editor = app_.editor();
    int count = 1;
    if (ask) {
        editor.initGet(ed::RSG_NOZERO | ed::RSG_NONEG);
        const int answer =
            editor.getInteger("\nEnter the number of operations to undo <1>: ", count);
        if (answer == ed::RTNONE)
            count = 1;
        else if (answer != ed::RTNORM)
            return;
    }
    db::Database* database = currentDatabase(app_);
    if (database == nullptr || database->undoRecorder().undoCount() == 0) {
        editor.print("\nNothing to undo");
        return;
    }
    // The names of the steps taken back, on one line, most recent first.
    std::string names;
    for (int i = 0; i < count; ++i) {
        std::string name;
        const ErrorStatus es = database->undo(name);
        if (es == ErrorStatus::eNotApplicable) {
            if (!names.empty()) editor.print("\n" + names);
            editor.print("\nEverything has been undone");
            return;
        }
        if (es != ErrorStatus::eOk) {
            if (!names.empty()) editor.print("\n" + names);
            editor.print(kObjectsOpen);
            return;
        }
        names += (names.empty() ? "" : " ") + name;
    }
    editor.print("\n" + names);
}

void UndoCommands::redo() {
    ed::Editor& editor = app_.editor();
    db::Database* database = currentDatabase(app_);
    std::string name;
    const ErrorStatus es = database != nullptr ? database->redo(name) : ErrorStatus::eNotApplicable;
    if (es == ErrorStatus::eNotApplicable)
        editor.print("\nNothing to redo");
    else if (es != ErrorStatus::eOk)
        editor.print(kObjectsOpen);
    else
        editor.print("\n" + name);
}

}  // namespace cad::app
