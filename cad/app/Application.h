// The host application below the GUI: the editor, the documents, the command stack and
// processor, the module loader and the menus, wired together. One is made by the host program
// (or a test) and is the process's current application until it goes; closing it closes the
// documents (the modules are told) and then unloads the modules.
#pragma once

#include "cad/app/CommandProcessor.h"
#include "cad/app/CommandStack.h"
#include "cad/app/DocumentManager.h"
#include "cad/app/DrawingCommands.h"
#include "cad/app/EditCommands.h"
#include "cad/app/HostCommands.h"
#include "cad/app/UndoCommands.h"
#include "cad/app/ViewCommands.h"
#include "cad/app/MenuBar.h"
#include "cad/app/MenuGroups.h"
#include "cad/app/ModuleLoader.h"
#include "cad/ed/Editor.h"

namespace cad::app {

class Application {
public:
    Application();
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The application of the process; nullptr when there is none.
    static Application* current();

    ed::Editor& editor() { return editor_; }
    DocumentManager& documentManager() { return documents_; }
    CommandStack& commandStack() { return commands_; }
    CommandProcessor& commandProcessor() { return processor_; }
    ModuleLoader& moduleLoader() { return loader_; }
    MenuGroups& menuGroups() { return menuGroups_; }
    MenuBar& menuBar() { return menuBar_; }
    HostCommands& hostCommands() { return hostCommands_; }
    ViewCommands& viewCommands() { return viewCommands_; }

    // True when the host shows windows to a user (the GUI host). A headless host runs the same
    // commands with nothing on screen, so modules keep their own windows closed there.
    bool showsWindows() const { return showsWindows_; }
    void setShowsWindows(bool shows) { showsWindows_ = shows; }

private:
    ed::Editor editor_;
    CommandStack commands_;
    MenuBar menuBar_;
    MenuGroups menuGroups_{menuBar_};
    DocumentManager documents_{editor_};
    ModuleLoader loader_{editor_};
    CommandProcessor processor_{editor_, documents_, commands_};
    HostCommands hostCommands_{*this};
    ViewCommands viewCommands_{*this};
    DrawingCommands drawingCommands_{*this};
    EditCommands editCommands_{*this};
    UndoCommands undoCommands_{*this};
    bool showsWindows_ = false;
};

}  // namespace cad::app
