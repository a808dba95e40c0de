// The host's own commands, in the group "ACAD": OPEN, NEW, CLOSE, QSAVE, SAVEAS, SETVAR,
// ARX (load and unload modules), MENULOAD, MENUUNLOAD and QUIT. They take every answer
// from the command line, so scripts drive them as they drive module commands.
#pragma once

namespace cad::app {

class Application;

class HostCommands {
public:
    static constexpr const char* kGroupName = "ACAD";

    explicit HostCommands(Application& application) : app_(application) {}
    void registerCommands();

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
};

}  // namespace cad::app
