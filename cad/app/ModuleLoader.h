// Loads modules (shared libraries exporting acrxEntryPoint) into the host's process and sends
// them the application messages. A module calls back into the host through the platform's
// functions, which the host program exports to it: a module links none of the platform itself.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cad/app/AppMsg.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::ed {
class Editor;
}

namespace cad::app {

class ModuleLoader {
public:
    explicit ModuleLoader(ed::Editor& editor) : editor_(editor) {}
    // Unloads every module still loaded, the last loaded first.
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // Loads the module and sends it kInitAppMsg with its application id. Loading a module that
    // is already loaded does nothing and answers eOk. eFileNotFound, eInvalidInput (not a
    // module, or no entry point), eNotApplicable (its initialisation answered kRetError, and it
    // was unloaded again). Failures are printed on the command line; success too with printIt.
    ErrorStatus loadModule(const std::string& path, bool printIt = false);
    // Sends kUnloadAppMsg and unloads. A module stays locked (eNotApplicable) unless it called
    // unlockApplication; eKeyNotFound when it is not loaded.
    ErrorStatus unloadModule(const std::string& path, bool printIt = false);
    // Sends kQuitMsg and then unloads every module, locked or not, the last loaded first.
    void unloadAll();

    bool isModuleLoaded(const std::string& path) const;
    std::vector<std::string> loadedModules() const;  // full paths, in load order

    // Sends `message` with `data` to every loaded module, in load order.
    void sendMessage(AppMsg message, void* data);

    // What a module does with its application id.
    bool unlockApplication(void* appId);
    bool lockApplication(void* appId);
    bool isApplicationLocked(const std::string& path) const;
    bool registerAppMDIAware(void* appId);
    bool isAppMDIAware(const std::string& path) const;

private:
    struct Module {
        std::string path;
        void* handle = nullptr;
        EntryPointFunction entryPoint = nullptr;
        bool locked = true;
        bool mdiAware = false;
    };

    Module* find(const std::string& path) const;
    Module* find(void* appId) const;
    void unload(Module* module);

    ed::Editor& editor_;
    std::vector<std::unique_ptr<Module>> modules_;
};

}  // namespace cad::app
