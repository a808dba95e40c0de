// VNK, UBLI, UBLO and VNKSYNC.
#include "vantor/host/VantorCommands.h"

#include <algorithm>
#include <string>
#include <vector>

#include "cad/app/Application.h"
#include "vantor/host/VantorApp.h"
#include "vantor/placement/PartSyncCommand.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

constexpr std::string_view kRedraw = "_redraw\n";

const char* fileNameOf(const cad::app::Document* document) {
    return document != nullptr ? document->fileName().c_str() : "";
}

// Queues the redraw that follows an opened drawing: without activating the document, wrapping
// up an inactive one, not echoed.
void queueRedraw(cad::app::DocumentManager& documents, cad::app::Document* document) {
    if (document != nullptr) documents.sendStringToExecute(document, kRedraw, false, true, false);
}

}  // namespace

// The title goes to the command line as well, so a headless run shows what opened.
void VantorCommands::vnk() {
    ModuleSettings& settings = *app_.settings();
    if (settings.windowOpen) {
        app_.frame().bringToFront();
        return;
    }
    settings.windowOpen = true;
    const std::string title =
        std::string(VantorApp::kProductTitle) + " Ver." + settings.version;
    app_.host().editor().printf("\n%s", title.c_str());
    app_.frame().create(title);
    app_.frame().postMessage(kMsgSwitchPane,
                             settings.displayMode ? kPaneDrawingTree : kPaneExplorer, 0);
}

void VantorCommands::ubli() {
    cad::app::DocumentManager& documents = app_.host().documentManager();
    cad::app::Document* document = documents.curDocument();
    if (document == nullptr) return;
    ModuleSettings& settings = *app_.settings();

    if (documents.lockDocument(document, cad::app::LockMode::Write) != cad::ErrorStatus::eOk)
        return;
    settings.commandBusy = true;
    // The busy flag and the lock are released however the placement ends, so the library
    // window is never locked out by a placement that failed.
    struct Release {
        cad::app::DocumentManager& documents;
        cad::app::Document* document;
        ModuleSettings& settings;
        ~Release() {
            documents.unlockDocument(document);
            settings.commandBusy = false;
        }
    } release{documents, document, settings};

    InsertionState& state = app_.insertionStates().of(document);
    if (applyInsertMode(state) && app_.placementHook()) app_.placementHook()(*document, state);
}

// The attributes change inside the command, which the command processor makes one undo step.
void VantorCommands::vnksync() {
    cad::app::DocumentManager& documents = app_.host().documentManager();
    cad::app::Document* document = documents.curDocument();
    if (document == nullptr || document->database() == nullptr) return;
    if (documents.lockDocument(document, cad::app::LockMode::Write) != cad::ErrorStatus::eOk)
        return;
    struct Release {
        cad::app::DocumentManager& documents;
        cad::app::Document* document;
        ~Release() { documents.unlockDocument(document); }
    } release{documents, document};
    runPartSync(*document->database(), app_.host().editor(), app_.syncListHook());
}

void VantorCommands::ublo() {
    if (app_.settings()->openQueue.empty()) return;
    struct Job {
        VantorCommands* commands;
        cad::app::Document* start;
    } job{this, app_.host().documentManager().curDocument()};
    app_.host().documentManager().executeInApplicationContext(
        [](void* data) {
            Job* started = static_cast<Job*>(data);
            started->commands->openQueuedDrawings(started->start);
        },
        &job);
}

void VantorCommands::openQueuedDrawings(cad::app::Document* start) {
    cad::app::DocumentManager& documents = app_.host().documentManager();
    cad::ed::Editor& editor = app_.host().editor();
    // A copy: the reactors and the window may touch the queue while drawings open.
    const std::vector<std::string> queue = app_.settings()->openQueue;

    if (!app_.multiDocument()) {
        if (!documents.isApplicationContext()) {
            editor.printf("\nERROR: in Document context : %s\n",
                          fileNameOf(documents.curDocument()));
            return;
        }
        if (documents.syncFileOpen(queue.front()) == cad::ErrorStatus::eOk)
            editor.printf("\nOpened a document synchronously:%s.\n", queue.front().c_str());
        return;
    }

    int failures = 0;
    for (const std::string& path : queue) {
        if (!documents.isApplicationContext()) {
            editor.printf("\nERROR: Open failed : %s\n", fileNameOf(documents.curDocument()));
            ++failures;
            continue;
        }
        // The host has said why a drawing could not be read; it counts as a failure for the
        // frame's summary.
        if (documents.appContextOpenDocument(path) != cad::ErrorStatus::eOk) {
            ++failures;
            continue;
        }
        editor.printf("\nOpened a document synchronously:%s.\n", path.c_str());
        queueRedraw(documents, documents.mdiActiveDocument());
    }
    // The library window stays bound to the drawing the user worked from.
    std::vector<cad::app::Document*> open = documents.documents();
    if (std::find(open.begin(), open.end(), start) != open.end()) {
        documents.activateDocument(start);
        queueRedraw(documents, start);
    }
    app_.frame().postMessage(kMsgDrawingsOpened, static_cast<std::intptr_t>(queue.size()),
                             failures);
}

}  // namespace vantor
