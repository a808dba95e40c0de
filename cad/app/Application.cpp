// Wiring of the host application and its place as the process's current one.
#include "cad/app/Application.h"

namespace cad::app {

namespace {

Application* currentApplication = nullptr;

}  // namespace

Application::Application() {
    documents_.setModuleLoader(&loader_);
    hostCommands_.registerCommands();
    viewCommands_.registerCommands();
    drawingCommands_.registerCommands();
    editCommands_.registerCommands();
    undoCommands_.registerCommands();
    if (currentApplication == nullptr) {
        currentApplication = this;
        ed::setEditor(&editor_);
    }
}

Application::~Application() {
    // Modules see their documents go (kUnloadDwgMsg) before they are unloaded themselves.
    documents_.closeAllDocuments();
    loader_.unloadAll();
    documents_.setModuleLoader(nullptr);
    if (currentApplication == this) {
        currentApplication = nullptr;
        ed::setEditor(nullptr);
    }
}

Application* Application::current() {
    return currentApplication;
}

}  // namespace cad::app
