// Module loading with dlopen and the entry-point protocol.
#include "cad/app/ModuleLoader.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>

#include "cad/ed/Editor.h"

namespace cad::app {

namespace {

std::string fullPath(const std::string& path) {
    std::error_code ec;
    std::filesystem::path canonical = std::filesystem::weakly_canonical(path, ec);
    return ec ? path : canonical.string();
}

}  // namespace

ModuleLoader::~ModuleLoader() {
    unloadAll();
}

ModuleLoader::Module* ModuleLoader::find(const std::string& path) const {
    std::string key = fullPath(path);
    for (const auto& module : modules_)
        if (module->path == key) return module.get();
    return nullptr;
}

ModuleLoader::Module* ModuleLoader::find(void* appId) const {
    for (const auto& module : modules_)
        if (module.get() == appId) return module.get();
    return nullptr;
}

ErrorStatus ModuleLoader::loadModule(const std::string& path, bool printIt) {
    if (find(path) != nullptr) return ErrorStatus::eOk;
    std::string full = fullPath(path);
    if (!std::filesystem::is_regular_file(full)) {
        editor_.printf("\nCannot find module \"%s\".", path.c_str());
        return ErrorStatus::eFileNotFound;
    }
    void* handle = ::dlopen(full.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* why = ::dlerror();
        editor_.printf("\nCannot load module \"%s\": %s", path.c_str(), why ? why : "?");
        return ErrorStatus::eInvalidInput;
    }
    auto entryPoint = reinterpret_cast<EntryPointFunction>(::dlsym(handle, kEntryPointName));
    if (entryPoint == nullptr) {
        ::dlclose(handle);
        editor_.printf("\n\"%s\" is not a module: it has no %s.", path.c_str(), kEntryPointName);
        return ErrorStatus::eInvalidInput;
    }
    // The module is known before it is initialised: its kInitAppMsg handler calls back with its
    // id (unlockApplication, registerAppMDIAware).
    modules_.push_back(std::make_unique<Module>(Module{full, handle, entryPoint}));
    Module* module = modules_.back().get();
    if (entryPoint(kInitAppMsg, module) != kRetOK) {
        editor_.printf("\nModule \"%s\" failed to initialise and was unloaded.", path.c_str());
        ::dlclose(handle);
        std::erase_if(modules_, [&](const auto& m) { return m.get() == module; });
        return ErrorStatus::eNotApplicable;
    }
    if (printIt) editor_.printf("\n\"%s\" loaded.", path.c_str());
    return ErrorStatus::eOk;
}

void ModuleLoader::unload(Module* module) {
    module->entryPoint(kUnloadAppMsg, module);
    ::dlclose(module->handle);
    std::erase_if(modules_, [&](const auto& m) { return m.get() == module; });
}

ErrorStatus ModuleLoader::unloadModule(const std::string& path, bool printIt) {
    Module* module = find(path);
    if (module == nullptr) {
        editor_.printf("\nModule \"%s\" is not loaded.", path.c_str());
        return ErrorStatus::eKeyNotFound;
    }
    if (module->locked) {
        editor_.printf("\nModule \"%s\" is locked and cannot be unloaded.", path.c_str());
        return ErrorStatus::eNotApplicable;
    }
    unload(module);
    if (printIt) editor_.printf("\n\"%s\" unloaded.", path.c_str());
    return ErrorStatus::eOk;
}

void ModuleLoader::unloadAll() {
    sendMessage(kQuitMsg, nullptr);
    while (!modules_.empty()) unload(modules_.back().get());
}

bool ModuleLoader::isModuleLoaded(const std::string& path) const {
    return find(path) != nullptr;
}

std::vector<std::string> ModuleLoader::loadedModules() const {
    std::vector<std::string> out;
    for (const auto& module : modules_) out.push_back(module->path);
    return out;
}

void ModuleLoader::sendMessage(AppMsg message, void* data) {
    // A module may load or unload modules while handling a message: walk a snapshot and skip
    // those gone meanwhile.
    std::vector<Module*> snapshot;
    for (const auto& module : modules_) snapshot.push_back(module.get());
    for (Module* module : snapshot)
        if (find(static_cast<void*>(module)) != nullptr) module->entryPoint(message, data);
}

bool ModuleLoader::unlockApplication(void* appId) {
    Module* module = find(appId);
    if (module != nullptr) module->locked = false;
    return module != nullptr;
}

bool ModuleLoader::lockApplication(void* appId) {
    Module* module = find(appId);
    if (module != nullptr) module->locked = true;
    return module != nullptr;
}

bool ModuleLoader::isApplicationLocked(const std::string& path) const {
    Module* module = find(path);
    return module != nullptr && module->locked;
}

bool ModuleLoader::registerAppMDIAware(void* appId) {
    Module* module = find(appId);
    if (module != nullptr) module->mdiAware = true;
    return module != nullptr;
}

bool ModuleLoader::isAppMDIAware(const std::string& path) const {
    Module* module = find(path);
    return module != nullptr && module->mdiAware;
}

}  // namespace cad::app
