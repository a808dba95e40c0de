// Any bytes as a headless host's script: read line by line and run at the command line of a
// new drawing, every answer a command asks for taken from the script, as `vantor-cad
// --headless --script` runs it. Only the drawing, editing, viewing and undo commands are there:
// the host's file and module commands (open, save, load a module, quit) would reach outside
// the run. Nothing may crash or hang, and no object may stay open.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzInputFile.h"
#include "cad/app/Application.h"
#include "cad/app/Document.h"
#include "cad/app/HostCommands.h"
#include "cad/db/Database.h"
#include "cad/ed/ScriptInputSource.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = fuzzInputPath("fuzz.script");
    writeFuzzInput(path, data, size);

    cad::ed::ScriptInputSource script;
    if (script.readFile(path) != cad::ErrorStatus::eOk) __builtin_trap();
    cad::app::Application app;
    app.commandStack().removeGroup(cad::app::HostCommands::kGroupName);
    app.documentManager().appContextNewDocument();
    app.editor().setInputSource(&script);
    app.commandProcessor().run();
    if (!script.atEnd()) __builtin_trap();
    cad::app::Document* document = app.documentManager().curDocument();
    if (document != nullptr && document->database()->openObjectCount() != 0) __builtin_trap();
    app.editor().setInputSource(nullptr);
    return 0;
}
