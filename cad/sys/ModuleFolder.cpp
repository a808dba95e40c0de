// Finds the module's file through the dynamic linker, the counterpart of asking the system
// for the file name of the module's instance handle.
#include "cad/sys/ModuleFolder.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace cad::sys {
namespace {

std::string withTrailingSlash(std::string folder) {
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

}  // namespace

std::string moduleFolder(const void* addressInModule) {
    if (const char* overridden = std::getenv("VANTOR_MODULE_DIR"); overridden && *overridden) {
        return withTrailingSlash(overridden);
    }
    Dl_info symbol{};
    link_map* module = nullptr;
    if (dladdr1(addressInModule, &symbol, reinterpret_cast<void**>(&module), RTLD_DL_LINKMAP) ==
            0 ||
        module == nullptr) {
        return {};
    }
    // The main program's entry has an empty name, and a library's name is the path it was
    // loaded by, which may be relative to the folder current at that moment.
    std::filesystem::path file = *module->l_name ? module->l_name : "/proc/self/exe";
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(file, error);
    if (!error) file = resolved;
    return withTrailingSlash(file.parent_path().string());
}

}  // namespace cad::sys
