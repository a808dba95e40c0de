// The version text the banner and the library window's title show.
#pragma once

#include <array>
#include <optional>
#include <string>

namespace vantor {

// The four numbers of the module's file version, most significant first.
using FileVersion = std::array<int, 4>;

// "%d.%d.%d.%d" of the file version; "0.0.0.0" for a module built without one.
std::string versionText(const std::optional<FileVersion>& version);

}  // namespace vantor
