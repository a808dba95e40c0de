// The one module-wide settings object: the user's preferences kept in Vantor.ini beside the
// module, plus the run-time state the other parts share while the module is loaded.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/PartShortcuts.h"
#include "vantor/ui/ProfileFile.h"

namespace vantor {

// The library window's outer rectangle in screen pixels.
struct FrameRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

class ModuleSettings {
public:
    // Entries of the window geometry, in the order of their keys in the file.
    enum Geometry : std::size_t {
        kWidth,
        kHeight,
        kPosX,
        kPosY,
        kLeftWidth,
        kSubTreePos,
        kSubPreviewPos,
        kSubListPos,
        kGeometryCount,
    };
    static constexpr std::size_t kBlockColumnCount = 15;
    static constexpr std::size_t kRecordColumnCount = 13;

    ModuleSettings();

    // Called once when the module is loaded: finds the module's folder and reads Vantor.ini
    // there. Nothing is reported; a missing or unreadable file leaves the defaults.
    void load();
    // Called once when the module is unloaded: writes every key, whatever changed.
    void save();

    // The settings file: the module folder followed by "Vantor.ini".
    const std::string& iniPath() const { return profile_.file(); }
    // The window rectangle from the geometry texts (atoi, so an empty text is 0).
    FrameRect frameRect() const;

    // Kept in Vantor.ini.
    int option = 3073;  // the insertion options' bits 0, 10 and 11
    std::string drawAngle = "0.00";
    int delimiter = 0;
    std::string savePath;
    std::string curListName;
    std::array<std::string, kGeometryCount> geometry;
    FieldLabels::Texts labels;
    std::array<int, kBlockColumnCount> blockWidths{};
    std::array<int, kRecordColumnCount> recordWidths{};
    int ublView = 1;
    int preView = 0;
    int dataView = 0;
    int viewType = 0;
    int todayMode = 0;
    int iconSize = 48;  // the data pane's icon view, in pixels
    PartShortcuts shortcuts;  // favourites and the parts placed last

    // Run-time state, never written to the file.
    std::string moduleFolder;  // ends in a separator
    std::string version = "0.0.0.0";
    bool windowOpen = false;
    bool displayMode = false;
    bool commandBusy = false;
    std::vector<std::string> openQueue;  // drawings the open command opens next
    bool openQueueBusy = false;          // a previous batch is still being opened

private:
    void fillDefaultWidths();

    ProfileFile profile_;
};

}  // namespace vantor
