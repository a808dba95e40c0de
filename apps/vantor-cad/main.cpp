// vantor-cad, the host program: the main window with its command line, or the same host
// offscreen reading its command line from a script or standard input (--headless).
#include <QApplication>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "HostOptions.h"
#include "HostSession.h"
#include "ScriptLineDialogs.h"
#include "ScriptLineSource.h"
#include "StdoutSink.h"
#include "cad/gui/CommandLineWidget.h"
#include "cad/gui/MainWindow.h"
#include "cad/gui/QtDialogs.h"
#include "cad/gui/QtInputSource.h"

namespace {

using vantorcad::HostOptions;
using vantorcad::HostSession;

int runHeadless(const HostOptions& options) {
    std::ifstream script;
    std::istream* in = &std::cin;
    if (options.script) {
        script.open(*options.script, std::ios::binary);
        if (!script) {
            std::fprintf(stderr, "vantor-cad: cannot read the script \"%s\"\n",
                         options.script->c_str());
            return 2;
        }
        in = &script;
    }
    // Declared before the session so that the modules' last words, when the session closes
    // the drawings and unloads them, still reach standard output.
    vantorcad::StdoutSink out;
    vantorcad::ScriptLineSource input(*in);
    vantorcad::ScriptLineDialogs dialogs(
        input, [](std::string_view text) { cad::ed::editor().print(text); });
    cad::app::setUserDialogs(&dialogs);
    int exitCode = 0;
    {
        HostSession session(true);
        cad::app::Application& app = session.application();
        app.editor().commandLine().addSink(&out);
        app.editor().setInputSource(&input);
        // Made but not shown: it follows the documents as in the GUI, with nothing to show.
        cad::gui::MainWindow window(app,
                                    [&](const std::string& text) { app.editor().typeAhead(text); });
        if (session.start(options)) app.commandProcessor().run();
        exitCode = session.exitCode();
    }
    cad::app::setUserDialogs(nullptr);
    std::fputs("\n", stdout);
    return exitCode;
}

int runGui(const HostOptions& options) {
    HostSession session(false);
    cad::app::Application& app = session.application();
    app.setShowsWindows(true);
    cad::gui::QtInputSource input(app);
    cad::gui::QtDialogs dialogs;
    cad::app::setUserDialogs(&dialogs);
    int exitCode = 0;
    {
        cad::gui::MainWindow window(app, [&](const std::string& text) { input.typeText(text); });
        window.attachInput(input);
        window.show();
        session.start(options);
        app.commandProcessor().showPrompt();
        exitCode = QApplication::exec();
    }
    // The drawings close and the modules unload with the session, after the window: what they
    // show then goes through the default dialogs.
    cad::app::setUserDialogs(nullptr);
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    std::string error;
    std::optional<HostOptions> options =
        HostOptions::parse(std::vector<std::string>(argv + 1, argv + argc), error);
    if (!options) {
        std::fprintf(stderr, "vantor-cad: %s\n\n%s", error.c_str(), HostOptions::usage().c_str());
        return 2;
    }
    if (options->help) {
        std::fputs(HostOptions::usage().c_str(), stdout);
        return 0;
    }
    if (options->headless && std::getenv("QT_QPA_PLATFORM") == nullptr)
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);

    QApplication qt(argc, argv);
    QApplication::setApplicationName("vantor-cad");
    // Qt takes the user's locale; the command line prints numbers as the drawing files and
    // scripts write them, with a decimal point.
    std::setlocale(LC_NUMERIC, "C");
    return options->headless ? runHeadless(*options) : runGui(*options);
}
