// The settings file accessor over the profile functions.
#include "vantor/ui/ProfileFile.h"

#include <optional>

#include "cad/sys/PrivateProfile.h"

namespace vantor {

namespace {

constexpr std::size_t kKeyListBuffer = 90;
constexpr std::size_t kValueBuffer = 255;
constexpr std::size_t kLongValueBuffer = 4096;

std::string readValue(std::string_view section, std::string_view key, std::size_t buffer,
                      const std::string& path, int& result) {
    std::string value = cad::sys::getPrivateProfileString(section, key, "", buffer, path);
    result = static_cast<int>(value.size());
    return value;
}

}  // namespace

bool ProfileFile::sectionExists(std::string_view section) {
    std::string keys =
        cad::sys::getPrivateProfileString(section, std::nullopt, "", kKeyListBuffer, path_);
    result_ = static_cast<int>(keys.size());
    return result_ > 0;
}

std::string ProfileFile::read(std::string_view section, std::string_view key) {
    return readValue(section, key, kValueBuffer, path_, result_);
}

std::string ProfileFile::readLong(std::string_view section, std::string_view key) {
    return readValue(section, key, kLongValueBuffer, path_, result_);
}

void ProfileFile::write(std::string_view section, std::string_view key, std::string_view value) {
    result_ = cad::sys::writePrivateProfileString(section, key, value, path_) ? 1 : 0;
}

}  // namespace vantor
