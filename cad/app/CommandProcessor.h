// The command processor: reads command names at the "Command: " prompt from typed or queued
// text, looks them up in the command stack (a leading "_" asks for the global name, "." and
// "'" are accepted as typed), and runs them in the current document with the editor reactors
// told, each as one undo step of the document's drawing. The command's own prompts read on
// from the same text, then from the input source.
#pragma once

#include <string>
#include <string_view>

namespace cad::ed {
class Editor;
}

namespace cad::app {

class CommandStack;
class DocumentManager;

class CommandProcessor {
public:
    CommandProcessor(ed::Editor& editor, DocumentManager& documents, CommandStack& commands)
        : editor_(editor), documents_(documents), commands_(commands) {}

    // Runs what is typed ahead or queued to the current document until none is left, without
    // waiting for the input source at the command prompt. The GUI calls it after queuing.
    void runPending();
    // Reads and runs commands until the input ends or quit() is called (the headless host).
    void run();
    void quit() { quit_ = true; }

    // Runs the command as if its name were typed at the prompt. False for an unknown name
    // ("Unknown command" is printed).
    bool execute(std::string_view typedName);

    bool isCommandActive() const { return depth_ > 0; }
    const std::string& lastCommand() const { return lastCommand_; }

    // Shows "Command: " unless it is showing already.
    void showPrompt();

private:
    // One turn at the command prompt; false when nothing (more) came.
    bool step(bool wait);

    ed::Editor& editor_;
    DocumentManager& documents_;
    CommandStack& commands_;
    std::string lastCommand_;
    int depth_ = 0;
    bool promptShown_ = false;
    bool quit_ = false;
};

}  // namespace cad::app
