#include "vantor/search/SearchScope.h"

#include <algorithm>
#include <optional>

#include "vantor/registry/ListFile.h"
#include "vantor/registry/ManagementWindows.h"

namespace vantor {

std::vector<std::string> drawingsOfEveryWindow(const ManagementWindows& windows) {
    std::vector<std::string> drawings;
    const int count = static_cast<int>(windows.names().size());
    for (int position = 0; position < count; ++position) {
        std::optional<std::vector<std::string>> paths =
            ListFile::readAll(windows.listFile(position));
        if (!paths) continue;
        for (std::string& path : *paths) {
            if (std::find(drawings.begin(), drawings.end(), path) == drawings.end())
                drawings.push_back(std::move(path));
        }
    }
    return drawings;
}

}  // namespace vantor
