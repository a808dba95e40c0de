// The library window's commands: each id of the menus, tool bars and context menus with its
// text and the one action it runs, so that every pair of ids (a tool button and its menu
// item) runs the same handler. Free of Qt; the frame maps actions to its handlers.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace vantor {

enum class FrameAction {
    ShowDrawingTree,
    ShowExplorer,
    TogglePreview,
    ToggleDataView,
    RegisterDrawings,
    ManageRegistrations,
    ScanFolder,
    CaptureBlock,
    OpenDrawing,
    Export,
    ViewMenu,
    IconView,
    ListView,
    DetailsView,
    AlwaysOnTop,
    Quit,
    FieldLabels,
    Help,
    About,
    NewCategory,
    RenameCategory,
    DeleteCategory,
    AddPartData,
    DeleteAllData,
    InsertPart,
    ModifyPartData,
    DeletePartData,
    AddWindow,
    RenameWindow,
    DeleteWindow,
    RefreshWindow,
};

struct FrameCommand {
    int id;
    FrameAction action;
    // The string-table entry: the status-bar prompt, "-", the short text of a tool button; for
    // menu items the item's text alone.
    std::string_view entry;
};

// Every command the frame routes, by id.
std::span<const FrameCommand> frameCommands();
const FrameCommand* frameCommand(int id);
// The status prompt of a command: its entry without the short text (the whole entry when it
// has no "-").
std::string_view commandPrompt(const FrameCommand& command);

// The main tool bar's buttons in order, 0 marking a separator, and the management windows'
// small tool bar, whose first place holds the window drop-down.
std::span<const int> mainToolBar();
std::span<const int> windowToolBar();
inline constexpr int kWindowDropDownId = 9980;
inline constexpr int kWindowDropDownPlace = 1301;

}  // namespace vantor
