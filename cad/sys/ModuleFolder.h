// The folder of the module's own file, where the settings file and the data folder live.
#pragma once

#include <string>

namespace cad::sys {

// The folder of the shared library (or the executable) that holds `addressInModule`, as an
// absolute path ending in '/'. Pass the address of a function of the module itself.
// When the environment variable VANTOR_MODULE_DIR is set and not empty, that folder is
// answered instead (with a '/' appended when it lacks one), so tests, command-line tools and
// installs can keep the settings and the data folder elsewhere.
// Empty when the address lies in no loaded file.
std::string moduleFolder(const void* addressInModule);

}  // namespace cad::sys
