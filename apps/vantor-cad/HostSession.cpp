// The host program's session and its own commands.
#include "HostSession.h"

#include <filesystem>

#include "HostOptions.h"
#include "cad/ed/ResultCodes.h"

namespace vantorcad {

HostSession::HostSession(bool stopOnLoadFailure) : stopOnLoadFailure_(stopOnLoadFailure) {
    registerCommands();
}

void HostSession::registerCommands() {
    cad::app::CommandStack& stack = app_.commandStack();
    stack.addCommand(kGroupName, "SAVE", "SAVE", cad::app::ACRX_CMD_MODAL,
                     [this] { app_.commandProcessor().execute("_QSAVE"); });
    stack.addCommand(kGroupName, "LOADMODULE", "LOADMODULE", cad::app::ACRX_CMD_MODAL,
                     [this] { loadModuleCommand(); });
    stack.addCommand(kGroupName, "UNLOADMODULE", "UNLOADMODULE", cad::app::ACRX_CMD_MODAL,
                     [this] { unloadModuleCommand(); });
}

void HostSession::loadFailed() {
    exitCode_ = 1;
    if (stopOnLoadFailure_) app_.commandProcessor().quit();
}

void HostSession::loadModuleCommand() {
    cad::ed::Editor& editor = app_.editor();
    std::string path;
    if (editor.getString("\nModule to load: ", path, true) != cad::ed::RTNORM || path.empty())
        return;
    cad::app::ModuleLoader& loader = app_.moduleLoader();
    if (loader.isModuleLoaded(path)) {
        editor.printf("\n\"%s\" is loaded already.", path.c_str());
        return;
    }
    if (loader.loadModule(path, true) != cad::ErrorStatus::eOk) loadFailed();
}

void HostSession::unloadModuleCommand() {
    cad::ed::Editor& editor = app_.editor();
    std::string name;
    if (editor.getString("\nModule to unload: ", name, true) != cad::ed::RTNORM || name.empty())
        return;
    std::optional<std::string> path = loadedModule(name);
    if (!path) {
        editor.printf("\nModule \"%s\" is not loaded.", name.c_str());
        return;
    }
    app_.moduleLoader().unloadModule(*path, true);
}

std::optional<std::string> HostSession::loadedModule(std::string_view name) {
    for (const std::string& path : app_.moduleLoader().loadedModules()) {
        std::filesystem::path file(path);
        std::string stem = file.stem().string();
        std::string bare = stem.rfind("lib", 0) == 0 ? stem.substr(3) : stem;
        if (name == path || name == file.filename().string() || name == stem || name == bare)
            return path;
    }
    if (app_.moduleLoader().isModuleLoaded(std::string(name))) return std::string(name);
    return std::nullopt;
}

bool HostSession::openDrawing(const std::string& path) {
    cad::ed::SysVarValue sdi;
    app_.editor().getVar("SDI", sdi);
    cad::app::DocumentManager& documents = app_.documentManager();
    return (std::get<int>(sdi) != 0
                ? documents.syncFileOpen(path)
                : documents.appContextOpenDocument(path)) == cad::ErrorStatus::eOk;
}

bool HostSession::start(const HostOptions& options) {
    if (options.sdi) app_.editor().setVar("SDI", *options.sdi);
    for (const std::string& module : options.modules) {
        if (app_.moduleLoader().loadModule(module) != cad::ErrorStatus::eOk) {
            loadFailed();
            if (stopOnLoadFailure_) return false;
        }
    }
    for (const std::string& drawing : options.drawings) {
        if (!openDrawing(drawing)) {
            loadFailed();
            if (stopOnLoadFailure_) return false;
        }
    }
    if (app_.documentManager().documentCount() == 0) app_.documentManager().appContextNewDocument();
    return exitCode_ == 0;
}

}  // namespace vantorcad
