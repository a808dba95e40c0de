// Module entry: initialisation, unload and the per-document unload.
#include "vantor/host/VantorApp.h"

#include "cad/app/Application.h"
#include "cad/ed/ResultCodes.h"
#include "vantor/host/PartialMenu.h"
#include "vantor/host/RecordingFrame.h"
#include "vantor/host/VantorDocReactor.h"
#include "vantor/host/VantorEditorReactor.h"
#include "vantor/placement/Insertion.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

VantorApp* loaded = nullptr;

}  // namespace

cad::app::AppRetCode VantorApp::entryPoint(cad::app::AppMsg message, void* data,
                                           const std::optional<FileVersion>& version) {
    cad::app::Application* host = cad::app::Application::current();
    switch (message) {
        case cad::app::kInitAppMsg:
            if (host == nullptr || loaded != nullptr) break;
            host->moduleLoader().unlockApplication(data);
            host->moduleLoader().registerAppMDIAware(data);
            loaded = new VantorApp(*host);
            loaded->initialise(version);
            break;
        case cad::app::kUnloadAppMsg:
            if (loaded == nullptr) break;
            loaded->unload();
            delete loaded;
            loaded = nullptr;
            break;
        case cad::app::kUnloadDwgMsg:
            if (loaded != nullptr) loaded->unloadDocument(static_cast<cad::app::Document*>(data));
            break;
        default:
            break;
    }
    return cad::app::kRetOK;
}

VantorApp* VantorApp::instance() {
    return loaded;
}

void VantorApp::abandon() {
    loaded = nullptr;
}

VantorApp::VantorApp(cad::app::Application& host)
    : host_(host), frame_(std::make_unique<RecordingFrame>()) {}

VantorApp::~VantorApp() = default;

void VantorApp::registerCommands() {
    cad::app::CommandStack& stack = host_.commandStack();
    struct Entry {
        const char* name;
        void (VantorCommands::*run)();
    };
    // The commands reach the module through instance(), not `this`: the host keeps them in
    // its command stack, and a command must never outlive the object it calls.
    const Entry entries[] = {
        {"VNK", &VantorCommands::vnk},
        {"UBLI", &VantorCommands::ubli},
        {"UBLO", &VantorCommands::ublo},
        {"VNKSYNC", &VantorCommands::vnksync},
    };
    for (const Entry& entry : entries) {
        stack.addCommand(kCommandGroup, entry.name, entry.name, kCommandFlags, [run = entry.run] {
            if (VantorApp* app = VantorApp::instance()) (app->commands().*run)();
        });
    }
}

void VantorApp::initialise(const std::optional<FileVersion>& version) {
    registerCommands();
    settings_ = std::make_unique<ModuleSettings>();
    settings_->load();
    loadPartialMenu(host_, settings_->moduleFolder);
    settings_->version = versionText(version);
    help_ = std::make_unique<Help>(settings_->moduleFolder);
    host_.editor().printf("\n%s V%s", std::string(kProductTitle).c_str(),
                          settings_->version.c_str());
    docReactor_ = std::make_unique<VantorDocReactor>(*this);
    editorReactor_ = std::make_unique<VantorEditorReactor>(host_.editor());
    placement_ = [this](cad::app::Document& document, InsertionState& state) {
        runInsertion(document, state, *settings_);
    };
    syncList_ = [this](const PartSyncList& list) {
        return presentSyncOnCommandLine(list, host_.editor());
    };
}

void VantorApp::unload() {
    host_.commandStack().removeGroup(kCommandGroup);
    if (settings_) {
        settings_->save();
        settings_.reset();
    }
    docReactor_.reset();
    editorReactor_.reset();
}

bool VantorApp::multiDocument() const {
    cad::ed::SysVarValue sdi;
    return host_.editor().getVar("SDI", sdi) == cad::ed::RTNORM && std::get<int>(sdi) == 0;
}

void VantorApp::unloadDocument(cad::app::Document* document) {
    if (host_.documentManager().documentCount() == 1 && multiDocument()) closeLibraryWindow();
    insertionStates_.clear(document);
}

void VantorApp::closeLibraryWindow() {
    if (settings_ && settings_->windowOpen) {
        frame_->postMessage(WM_CLOSE, 0, 0);
        // The window is gone for the module from here on, whenever the frame's own loop
        // gets to the close.
        settings_->windowOpen = false;
    }
    insertionStates_.clear(host_.documentManager().curDocument());
}

}  // namespace vantor
