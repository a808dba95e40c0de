// U, UNDO and REDO, in the host's group: every command is one step of its document's drawing
// (the command processor records it); these take steps back and bring them again, naming
// each command as it goes.
#pragma once

namespace cad::app {

class Application;

class UndoCommands {
public:
    explicit UndoCommands(Application& application) : app_(application) {}
    void registerCommands();

private:
    // U is UNDO with one step and no question.
    void undo(bool ask);
    void redo();

    Application& app_;
};

}  // namespace cad::app
