// One run of the host: the application with the host program's own commands (SAVE,
// LOADMODULE, UNLOADMODULE) beside the platform's, and the start-up work of the options:
// single-document mode, modules, drawings. GUI and headless runs share it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cad/app/Application.h"

namespace vantorcad {

struct HostOptions;

class HostSession {
public:
    static constexpr const char* kGroupName = "VANTORCAD";

    // With `stopOnLoadFailure` (headless) a module that fails to load ends the run.
    explicit HostSession(bool stopOnLoadFailure);

    cad::app::Application& application() { return app_; }

    // Sets "SDI", loads the modules, then opens the drawings (a new drawing when none is
    // given). False when a module or drawing failed; with stopOnLoadFailure at the first one.
    bool start(const HostOptions& options);

    // 0, or 1 once a load failed.
    int exitCode() const { return exitCode_; }

    // The loaded module a name stands for: its full path, its file name, the file name without
    // extension, or that without the "lib" prefix ("vantor" for .../libvantor.so).
    std::optional<std::string> loadedModule(std::string_view name);

private:
    void registerCommands();
    void loadModuleCommand();
    void unloadModuleCommand();
    bool openDrawing(const std::string& path);
    void loadFailed();

    cad::app::Application app_;
    bool stopOnLoadFailure_;
    int exitCode_ = 0;
};

}  // namespace vantorcad
