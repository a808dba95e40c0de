// Loading and saving the module's settings file.
#include "vantor/ui/ModuleSettings.h"

#include <string_view>

#include "cad/sys/ModuleFolder.h"
#include "cad/sys/PrivateProfile.h"
#include "vantor/ui/TextRules.h"

namespace vantor {

namespace {

constexpr std::string_view kOption = "OPTION";
constexpr std::string_view kSetting = "SETTING";
constexpr std::string_view kColumns = "COLUMNS";
constexpr std::string_view kShortcuts = "SHORTCUTS";

// "Favourite1" .. : a list kept as numbered keys. Once the section is there every slot is
// written, so that a shorter list leaves no old entries behind.
std::string shortcutKey(std::string_view list, std::size_t i) {
    return std::string(list) + std::to_string(i + 1);
}

std::vector<std::string> readShortcutList(ProfileFile& profile, std::string_view list,
                                          std::size_t limit) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < limit; ++i) {
        std::string value = profile.readLong(kShortcuts, shortcutKey(list, i));
        if (!value.empty()) values.push_back(std::move(value));
    }
    return values;
}

void writeShortcutList(cad::sys::PrivateProfileBatch& batch, bool everySlot,
                       std::string_view list, const std::vector<PartShortcut>& parts,
                       std::size_t limit) {
    for (std::size_t i = 0; i < (everySlot ? limit : parts.size()); ++i)
        batch.set(kShortcuts, shortcutKey(list, i), i < parts.size() ? parts[i].toSetting() : "");
}

constexpr std::array<std::string_view, ModuleSettings::kGeometryCount> kGeometryKeys = {
    "BomDlg Width",      "BomDlg Height",      "BomDlg PosX",           "BomDlg PosY",
    "BomDlg Left Width", "BomDlg SubTree Pos", "BomDlg SubPreview Pos", "BomDlg SubList Pos",
};
constexpr std::array<std::string_view, ModuleSettings::kGeometryCount> kGeometryDefaults = {
    "800", "600", "100", "100", "230", "300", "300", "150",
};

// The last two keys carry the column titles without a prefix. Files in use have them so, and
// a prefixed key would read as a missing one.
constexpr std::array<std::string_view, ModuleSettings::kBlockColumnCount> kBlockWidthKeys = {
    "Width_KName", "Width_EName",  "Width_Spec",  "Width_Material", "Width_Weight",
    "Width_Price", "Width_Remark", "Width_User1", "Width_User2",    "Width_User3",
    "Width_User4", "Width_User5",  "Width_User6", "Block name",     "Description",
};
constexpr std::array<std::string_view, ModuleSettings::kRecordColumnCount> kRecordWidthKeys = {
    "Width2_KName", "Width2_EName",  "Width2_Spec",  "Width2_Material", "Width2_Weight",
    "Width2_Price", "Width2_Remark", "Width2_User1", "Width2_User2",    "Width2_User3",
    "Width2_User4", "Width2_User5",  "Width2_User6",
};
// One table for both views: the record view takes its first 13 entries.
constexpr std::array<int, ModuleSettings::kBlockColumnCount> kDefaultWidths = {
    130, 150, 180, 80, 50, 50, 100, 70, 70, 70, 70, 70, 70, 200, 300,
};

// Only its address matters: it lies in the module's own file, wherever the module was loaded
// from.
void moduleAnchor() {}

}  // namespace

ModuleSettings::ModuleSettings() : labels(FieldLabels::defaults()) {
    for (std::size_t i = 0; i < kGeometryCount; ++i) geometry[i] = kGeometryDefaults[i];
    fillDefaultWidths();
}

void ModuleSettings::fillDefaultWidths() {
    for (std::size_t i = 0; i < kBlockColumnCount; ++i) blockWidths[i] = kDefaultWidths[i];
    for (std::size_t i = 0; i < kRecordColumnCount; ++i) recordWidths[i] = kDefaultWidths[i];
}

FrameRect ModuleSettings::frameRect() const {
    const int left = atoiText(geometry[kPosX]);
    const int top = atoiText(geometry[kPosY]);
    return {left, top, left + atoiText(geometry[kWidth]), top + atoiText(geometry[kHeight])};
}

void ModuleSettings::load() {
    moduleFolder = cad::sys::moduleFolder(reinterpret_cast<const void*>(&moduleAnchor));
    profile_.setFile(moduleFolder + "Vantor.ini");

    // Once a section exists its keys are taken as read: a missing key gives 0 or an empty
    // text, not the default, and the geometry likewise. Only the labels keep their defaults
    // when read empty, since a window without column titles is unusable.
    if (profile_.sectionExists(kOption)) {
        option = atoiText(profile_.read(kOption, "Option"));
        drawAngle = profile_.read(kOption, "DrawAngle");
        delimiter = atoiText(profile_.read(kOption, "Delimiter"));
        savePath = profile_.read(kOption, "savePath");
        curListName = profile_.read(kOption, "curListName");
    }

    labels = FieldLabels::defaults();
    if (profile_.sectionExists(kSetting)) {
        for (std::size_t i = 0; i < kGeometryCount; ++i) {
            geometry[i] = profile_.read(kSetting, kGeometryKeys[i]);
        }
        for (std::size_t i = 0; i < FieldLabels::kCount; ++i) {
            std::string label = profile_.read(kSetting, FieldLabels::key(i));
            if (!label.empty()) labels[i] = std::move(label);
        }
        ublView = atoiText(profile_.read(kSetting, "UblView"));
        preView = atoiText(profile_.read(kSetting, "PreView"));
        dataView = atoiText(profile_.read(kSetting, "DataView"));
        viewType = atoiText(profile_.read(kSetting, "ViewType"));
        todayMode = atoiText(profile_.read(kSetting, "TodayMode"));
        iconSize = atoiText(profile_.read(kSetting, "IconSize"));
    }
    shortcuts.setFavourites(readShortcutList(profile_, "Favourite", PartShortcuts::kFavouriteLimit));
    shortcuts.setRecent(readShortcutList(profile_, "Recent", PartShortcuts::kRecentLimit));

    fillDefaultWidths();
    if (profile_.sectionExists(kColumns)) {
        for (std::size_t i = 0; i < kBlockColumnCount; ++i) {
            blockWidths[i] = atoiText(profile_.read(kColumns, kBlockWidthKeys[i]));
        }
        for (std::size_t i = 0; i < kRecordColumnCount; ++i) {
            recordWidths[i] = atoiText(profile_.read(kColumns, kRecordWidthKeys[i]));
        }
    }
}

void ModuleSettings::save() {
    // One rewrite of the file for all keys, not one per key.
    cad::sys::PrivateProfileBatch batch(profile_.file());
    batch.set(kOption, "Option", std::to_string(option));
    batch.set(kOption, "DrawAngle", drawAngle);
    batch.set(kOption, "Delimiter", std::to_string(delimiter));
    batch.set(kOption, "savePath", savePath);
    batch.set(kOption, "curListName", curListName);

    for (std::size_t i = 0; i < kGeometryCount; ++i) {
        batch.set(kSetting, kGeometryKeys[i], geometry[i]);
    }
    for (std::size_t i = 0; i < FieldLabels::kCount; ++i) {
        batch.set(kSetting, FieldLabels::key(i), labels[i]);
    }
    batch.set(kSetting, "UblView", std::to_string(ublView));
    batch.set(kSetting, "PreView", std::to_string(preView));
    batch.set(kSetting, "DataView", std::to_string(dataView));
    batch.set(kSetting, "ViewType", std::to_string(viewType));
    batch.set(kSetting, "TodayMode", std::to_string(todayMode));
    batch.set(kSetting, "IconSize", std::to_string(iconSize));
    const bool everySlot = profile_.sectionExists(kShortcuts);
    writeShortcutList(batch, everySlot, "Favourite", shortcuts.favourites(),
                      PartShortcuts::kFavouriteLimit);
    writeShortcutList(batch, everySlot, "Recent", shortcuts.recent(), PartShortcuts::kRecentLimit);

    for (std::size_t i = 0; i < kBlockColumnCount; ++i) {
        batch.set(kColumns, kBlockWidthKeys[i], std::to_string(blockWidths[i]));
    }
    for (std::size_t i = 0; i < kRecordColumnCount; ++i) {
        batch.set(kColumns, kRecordWidthKeys[i], std::to_string(recordWidths[i]));
    }
    batch.commit();
}

}  // namespace vantor
