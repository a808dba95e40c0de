// The last file error of each thread.
#include "cad/sys/FileError.h"

#include <cstring>

namespace cad::sys {

namespace {

thread_local FileError lastError;

}  // namespace

std::string osErrorText(int osError) {
    // strerror is not thread-safe; the GNU strerror_r answers a pointer to the text, which may
    // or may not be the buffer given.
    char buffer[256];
    return ::strerror_r(osError, buffer, sizeof buffer);
}

void setFileError(std::string_view action, const std::string& path, int osError) {
    lastError.path = path;
    lastError.osError = osError;
    lastError.text = "cannot " + std::string(action) + " " + path + ": " + osErrorText(osError);
}

void setFileErrorText(const std::string& path, std::string text) {
    lastError.path = path;
    lastError.osError = 0;
    lastError.text = std::move(text);
}

const FileError& lastFileError() {
    return lastError;
}

void clearFileError() {
    lastError = FileError{};
}

}  // namespace cad::sys
