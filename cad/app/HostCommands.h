// The host's own commands, in the group "ACAD": OPEN, NEW, CLOSE, QSAVE, SAVEAS, SETVAR,
// REDRAW, ARX (load and unload modules), MENULOAD, MENUUNLOAD and QUIT. They take every answer
// from the command line, so scripts drive them as they drive module commands.
#pragma once

#include <functional>

namespace cad::app {

class Application;

class HostCommands {
public:
    static constexpr const char* kGroupName = "ACAD";

    explicit HostCommands(Application& application) : app_(application) {}
    void registerCommands();

    // What REDRAW does in the view (nothing headless).
    void setRedrawHandler(std::function<void()> handler) { redraw_ = std::move(handler); }

private:
    void open();
    void newDrawing();
    void close();
    void qsave();
    void saveAs();
    void setVar();
    void arx();
    void menuLoad();
    void menuUnload();

    Application& app_;
    std::function<void()> redraw_;
};

}  // namespace cad::app
