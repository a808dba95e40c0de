// Command execution at the command prompt.
#include "cad/app/CommandProcessor.h"

#include <algorithm>
#include <exception>

#include "cad/app/CommandStack.h"
#include "cad/app/DocumentManager.h"
#include "cad/db/Database.h"
#include "cad/ed/Editor.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/SelectionSet.h"
#include "cad/sys/AsciiCase.h"

namespace cad::app {

namespace {

constexpr std::string_view kPrompt = "Command: ";

}  // namespace

void CommandProcessor::showPrompt() {
    if (promptShown_) return;
    editor_.print(editor_.commandLine().currentLine().empty() ? kPrompt
                                                              : "\n" + std::string(kPrompt));
    promptShown_ = true;
}

bool CommandProcessor::step(bool wait) {
    showPrompt();
    ed::InputRequest request(ed::InputRequest::Kind::Command, std::string(kPrompt));
    request.wait = wait;
    ed::InputEvent input = editor_.nextInput(request);
    switch (input.kind) {
        case ed::InputEvent::Kind::End:
            return false;
        case ed::InputEvent::Kind::Move:
        case ed::InputEvent::Kind::Key:
            return true;
        case ed::InputEvent::Kind::Cancel:
            editor_.print("*Cancel*");
            editor_.setPickfirst({});
            promptShown_ = false;
            return true;
        case ed::InputEvent::Kind::Pick: {
            // A pick at the prompt selects, for a command that uses the pick-first set.
            ed::SelectionSet picked;
            std::vector<db::ObjectId> ids = editor_.pickfirst();
            if (editor_.ssget(ed::Editor::SelectMode::Point, picked, input.message.point) ==
                    ed::RTNORM &&
                std::find(ids.begin(), ids.end(), picked.ids().front()) == ids.end())
                ids.push_back(picked.ids().front());
            editor_.setPickfirst(std::move(ids));
            return true;
        }
        case ed::InputEvent::Kind::Text:
            promptShown_ = false;
            // Enter at the prompt repeats the last command, as typing does.
            if (input.text.empty()) {
                if (lastCommand_.empty()) {
                    showPrompt();
                } else {
                    execute(lastCommand_);
                }
            } else {
                execute(input.text);
            }
            showPrompt();
            return true;
    }
    return true;
}

void CommandProcessor::runPending() {
    while (!quit_ && step(false)) {
    }
}

void CommandProcessor::run() {
    quit_ = false;
    while (!quit_ && step(true)) {
    }
}

bool CommandProcessor::execute(std::string_view typedName) {
    std::string_view name = typedName;
    bool global = false;
    while (!name.empty() && (name.front() == '_' || name.front() == '.' || name.front() == '\'')) {
        global = global || name.front() == '_';
        name.remove_prefix(1);
    }
    const Command* found = commands_.lookupCmd(name, global);
    if (found == nullptr) {
        editor_.printf("\nUnknown command \"%s\".  Press F1 for help.", sys::asciiUpper(typedName).c_str());
        for (ed::EditorReactor* reactor : editor_.reactors()) reactor->unknownCommand(sys::asciiUpper(name));
        return false;
    }
    // A copy: the command may remove its own group while it runs.
    Command command = *found;
    Document* document = documents_.curDocument();
    if ((command.flags & ACRX_CMD_USEPICKSET) == 0) editor_.setPickfirst({});
    lastCommand_ = "_" + command.globalName;

    ++depth_;
    documents_.commandStarted(document);
    // The whole command is one undo step, cancelled or failed too: what it did before it
    // stopped stays in the drawing until U takes it back. A transparent command run inside
    // another nests in the outer step. The document stays alive until commandFinished, even
    // when the command closed it.
    db::Database* database = document != nullptr ? document->database() : nullptr;
    if (database != nullptr) database->startUndoGroup(command.globalName);
    int cancellations = editor_.cancellations();
    for (ed::EditorReactor* reactor : editor_.reactors())
        reactor->commandWillStart(command.globalName);
    bool failed = false;
    try {
        if (command.flags & ACRX_CMD_SESSION) {
            // Session commands (opening and closing drawings) run in application context.
            documents_.executeInApplicationContext(
                [](void* function) { (*static_cast<CommandFunction*>(function))(); },
                &command.function);
        } else {
            command.function();
        }
    } catch (const std::exception& error) {
        failed = true;
        editor_.printf("\nCommand %s failed: %s", command.globalName.c_str(), error.what());
    } catch (...) {
        failed = true;
        editor_.printf("\nCommand %s failed.", command.globalName.c_str());
    }
    bool cancelled = editor_.cancellations() != cancellations;
    for (ed::EditorReactor* reactor : editor_.reactors()) {
        if (failed)
            reactor->commandFailed(command.globalName);
        else if (cancelled)
            reactor->commandCancelled(command.globalName);
        else
            reactor->commandEnded(command.globalName);
    }
    // After the reactors: what they change in answer to the command belongs to its step.
    if (database != nullptr) database->endUndoGroup();
    documents_.commandFinished(document);
    --depth_;
    editor_.setPickfirst({});
    return true;
}

}  // namespace cad::app
