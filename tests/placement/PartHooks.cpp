// Test-only commands built into a test copy of the module: a headless script chooses the part
// the library window would hand to UBLI, and reads back what the drag left in the state.
#include <memory>
#include <string>
#include <vector>

#include "cad/app/Application.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/ResultCodes.h"
#include "vantor/host/VantorApp.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/ui/ModuleSettings.h"

namespace {

using cad::ed::acutPrintf;

constexpr const char* kGroup = "VANTORPLACETEST";

cad::app::Application& host() {
    return *cad::app::Application::current();
}

vantor::InsertionState& currentState() {
    return vantor::VantorApp::instance()->insertionStates().of(
        host().documentManager().curDocument());
}

std::string ask(const char* prompt) {
    std::string text;
    host().editor().getString(prompt, text, true);
    return text;
}

// VNTPART: library drawing, the group's keys one per line ending with an empty line ("User
// data list", "볼트", "육각볼트", ""), record key, block and option word, as the insertion
// dialog's OK leaves them; insert mode 0.
void choosePart() {
    vantor::InsertionState& state = currentState();
    state.libraryPath = ask("\nLibrary: ");
    std::vector<std::string> keys;
    for (std::string key = ask("\nGroup key: "); !key.empty(); key = ask("\nGroup key: "))
        keys.push_back(key);
    const std::string key = ask("\nRecord: ");
    state.blockName = ask("\nBlock: ");
    int option = 0;
    host().editor().getInteger("\nOption: ", option);
    vantor::VantorApp::instance()->settings()->option = option;
    state.insertMode = 0;

    std::unique_ptr<cad::db::Database> library = vantor::openLibraryDrawing(state.libraryPath);
    cad::db::ObjectId record;
    if (library) {
        if (auto group = cad::db::open<cad::db::Dictionary>(
                vantor::dictionaryAtPath(*library, keys), cad::db::OpenMode::ForRead))
            group->getAt(key, record);
    }
    state.record = {};
    state.record.key = key;  // as the window's part list holds it
    if (!record.isNull()) vantor::readPartRecord(record, state.record);
    acutPrintf("\n[part] %s", state.record.loaded ? state.record.spec.c_str() : "none");
}

// VNTSTATE: the outcome the drag left.
void printState() {
    acutPrintf("\n[state] outcome %d", currentState().outcome);
}

struct Hooks {
    Hooks() {
        host().commandStack().addCommand(kGroup, "VNTPART", "VNTPART", 0, choosePart);
        host().commandStack().addCommand(kGroup, "VNTSTATE", "VNTSTATE", 0, printState);
    }
    ~Hooks() {
        if (cad::app::Application* application = cad::app::Application::current())
            application->commandStack().removeGroup(kGroup);
    }
} hooks;

}  // namespace
