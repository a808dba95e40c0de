// Formatting the module's file version.
#include "vantor/host/ModuleVersion.h"

#include <cstdio>

namespace vantor {

std::string versionText(const std::optional<FileVersion>& version) {
    if (!version) return "0.0.0.0";
    char text[64];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", (*version)[0], (*version)[1], (*version)[2],
                  (*version)[3]);
    return text;
}

}  // namespace vantor
