// The module's record files are read through the C runtime's text mode from a path, so a
// fuzz input goes to a file first: one file per target in a folder made once per run.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

inline const std::string& fuzzInputPath(const char* fileName) {
    static const std::string path = [fileName] {
        char folder[] = "/tmp/vantor-fuzz-XXXXXX";
        if (mkdtemp(folder) == nullptr) std::abort();
        return std::string(folder) + "/" + fileName;
    }();
    return path;
}

inline void writeFuzzInput(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
}
