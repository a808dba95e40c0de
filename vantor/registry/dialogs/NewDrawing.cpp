// The new drawing made from the drawing explorer.
#include "vantor/registry/dialogs/NewDrawing.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "cad/db/Database.h"

namespace vantor {

namespace fs = std::filesystem;

namespace {

constexpr const char* kStem = "새도면";

fs::path candidate(const std::string& folder, int number, const char* ext) {
    return fs::path(folder) / (std::string(kStem) + std::to_string(number) + ext);
}

bool taken(const std::string& folder, int number) {
    std::error_code error;
    return fs::exists(candidate(folder, number, ".dxf"), error) ||
           fs::exists(candidate(folder, number, ".dwg"), error) ||
           fs::exists(candidate(folder, number, ".DXF"), error) ||
           fs::exists(candidate(folder, number, ".DWG"), error);
}

}  // namespace

std::string NewDrawing::freeName(const std::string& folder) {
    int number = 1;
    while (taken(folder, number)) ++number;
    return candidate(folder, number, ".dxf").string();
}

cad::ErrorStatus NewDrawing::create(const std::string& folder, std::string& made) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) return cad::ErrorStatus::eFileNotFound;
    for (int number = 1;; ++number) {
        if (taken(folder, number)) continue;
        const std::string path = candidate(folder, number, ".dxf").string();
        const int claim = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
        if (claim < 0) {
            if (errno == EEXIST) continue;  // made by someone else since it was looked at
            return cad::ErrorStatus::eFileAccessErr;
        }
        ::close(claim);
        // The save renames its finished file over the empty claim.
        cad::db::Database drawing(true, true);
        const cad::ErrorStatus status = drawing.saveAs(path);
        if (status != cad::ErrorStatus::eOk) {
            fs::remove(path, error);
            return status;
        }
        made = path;
        return status;
    }
}

}  // namespace vantor
