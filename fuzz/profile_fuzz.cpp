// Any bytes as the module's settings file (Vantor.ini): loaded as the module loads it, read
// key by key and as key lists with the buffer sizes callers use, then written to and read
// again. Nothing may crash or hang; a value written must read back as written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "FuzzInputFile.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/PrivateProfile.h"
#include "vantor/ui/ModuleSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = fuzzInputPath("Vantor.ini");
    static const bool folderSet = [&] {
        // The settings are looked for in the module's folder; this one stands in for it.
        const std::string folder = path.substr(0, path.rfind('/') + 1);
        return setenv("VANTOR_MODULE_DIR", folder.c_str(), 1) == 0;
    }();
    if (!folderSet) std::abort();
    writeFuzzInput(path, data, size);

    vantor::ModuleSettings settings;
    settings.load();

    using cad::sys::getPrivateProfileString;
    for (const char* section : {"OPTION", "SETTING", "COLUMNS", ""}) {
        for (const std::size_t buffer :
             {std::size_t{1}, std::size_t{2}, std::size_t{90}, std::size_t{255}}) {
            // The buffer counts bytes on disk, with room for the closing extra '\0'.
            const std::string keys =
                getPrivateProfileString(section, std::nullopt, "", buffer, path);
            if (cad::sys::utf8ToCp949(keys).size() >= buffer) __builtin_trap();
        }
        getPrivateProfileString(section, "Option", "default ", 255, path);
    }

    // A write must keep the file readable and the value as written, whatever was around it.
    const std::string value = "C:\\parts\\export.csv";
    if (cad::sys::writePrivateProfileString("OPTION", "savePath", value, path)) {
        if (getPrivateProfileString("OPTION", "savePath", "", 255, path) != value) __builtin_trap();
    }
    return 0;
}
