// The module while it is loaded: what acrxEntryPoint does with each application message, and
// the module-wide objects it owns from kInitAppMsg to kUnloadAppMsg: the settings, the
// library window's frame, the two reactors, the per-document insertion states and help.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "cad/app/AppMsg.h"
#include "cad/app/Command.h"
#include "vantor/host/FrameMessages.h"
#include "vantor/host/Help.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/host/ModuleVersion.h"
#include "vantor/host/VantorCommands.h"
#include "vantor/placement/PartSyncCommand.h"

namespace cad::app {
class Application;
class Document;
}  // namespace cad::app

namespace vantor {

class ModuleSettings;
class VantorDocReactor;
class VantorEditorReactor;

class VantorApp {
public:
    static constexpr std::string_view kProductTitle = "Vantor";
    static constexpr std::string_view kCommandGroup = "KEBQRBVANTOR";
    // Transparent, and the pick-first set is kept for the command.
    static constexpr int kCommandFlags =
        cad::app::ACRX_CMD_TRANSPARENT | cad::app::ACRX_CMD_USEPICKSET;

    // Runs the placement of a part into the document: the insertion of vantor/placement, set
    // at initialisation (a test copy of the module may put its own in its place).
    using PlacementHook = std::function<void(cad::app::Document& document, InsertionState& state)>;
    // Shows VNKSYNC's list and answers whether to update: the command line by default, a
    // dialog where the host shows windows.
    using SyncListHook = PartSyncPresenter;

    // The module's answer to every application message (always kRetOK). `version` is the file
    // version built into the module, if any.
    static cad::app::AppRetCode entryPoint(cad::app::AppMsg message, void* data,
                                           const std::optional<FileVersion>& version);
    // The module between kInitAppMsg and kUnloadAppMsg; nullptr outside.
    static VantorApp* instance();
    // For the library's unload without kUnloadAppMsg (the host ended without unloading it):
    // the object is forgotten, not destroyed, as its destructor would call into a host whose
    // objects may be gone.
    static void abandon();

    explicit VantorApp(cad::app::Application& host);
    ~VantorApp();
    VantorApp(const VantorApp&) = delete;
    VantorApp& operator=(const VantorApp&) = delete;

    cad::app::Application& host() { return host_; }
    // nullptr only while the module is being made or taken down.
    ModuleSettings* settings() { return settings_.get(); }
    FrameMessages& frame() { return *frame_; }
    // The library window puts itself here when it is made.
    void setFrame(std::unique_ptr<FrameMessages> frame) { frame_ = std::move(frame); }
    InsertionStates& insertionStates() { return insertionStates_; }
    const PlacementHook& placementHook() const { return placement_; }
    void setPlacementHook(PlacementHook hook) { placement_ = std::move(hook); }
    const SyncListHook& syncListHook() const { return syncList_; }
    void setSyncListHook(SyncListHook hook) { syncList_ = std::move(hook); }
    Help& help() { return *help_; }
    VantorCommands& commands() { return commands_; }

    // kInitAppMsg after the host was told the module may be unloaded and is MDI-aware.
    void initialise(const std::optional<FileVersion>& version);
    // kUnloadAppMsg.
    void unload();
    // kUnloadDwgMsg for `document`.
    void unloadDocument(cad::app::Document* document);
    // The last document of a multi-document session goes: the library window goes with it,
    // and the document's insertion data.
    void closeLibraryWindow();

    // "SDI" is 0: several documents may be open.
    bool multiDocument() const;

private:
    void registerCommands();

    cad::app::Application& host_;
    std::unique_ptr<ModuleSettings> settings_;
    std::unique_ptr<FrameMessages> frame_;
    std::unique_ptr<VantorDocReactor> docReactor_;
    std::unique_ptr<VantorEditorReactor> editorReactor_;
    std::unique_ptr<Help> help_;
    InsertionStates insertionStates_;
    PlacementHook placement_;
    SyncListHook syncList_;
    VantorCommands commands_{*this};
};

}  // namespace vantor
