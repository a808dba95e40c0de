// The library window's layout rules.
#include "vantor/ui/FrameLayout.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

int geometryValue(const ModuleSettings& settings, ModuleSettings::Geometry entry) {
    return std::atoi(settings.geometry[entry].c_str());
}

}  // namespace

PaneSizes PaneSizes::fromSettings(const ModuleSettings& settings) {
    PaneSizes sizes;
    sizes.leftWidth = std::max(geometryValue(settings, ModuleSettings::kLeftWidth), kLeftWidthFloor);
    sizes.subTree = std::max(geometryValue(settings, ModuleSettings::kSubTreePos), kRowFloor);
    sizes.subPreview = geometryValue(settings, ModuleSettings::kSubPreviewPos);
    sizes.subList = std::max(geometryValue(settings, ModuleSettings::kSubListPos), kRowFloor);
    return sizes;
}

void FrameGeometry::store(ModuleSettings& settings) const {
    settings.geometry[ModuleSettings::kWidth] = std::to_string(width);
    settings.geometry[ModuleSettings::kHeight] = std::to_string(height);
    settings.geometry[ModuleSettings::kPosX] = std::to_string(left);
    settings.geometry[ModuleSettings::kPosY] = std::to_string(top);
}

void storePaneSizes(ModuleSettings& settings, const PaneSizes& sizes) {
    settings.geometry[ModuleSettings::kLeftWidth] = std::to_string(sizes.leftWidth);
    settings.geometry[ModuleSettings::kSubTreePos] = std::to_string(sizes.subTree);
    settings.geometry[ModuleSettings::kSubPreviewPos] = std::to_string(sizes.subPreview);
    settings.geometry[ModuleSettings::kSubListPos] = std::to_string(sizes.subList);
}

}  // namespace vantor
