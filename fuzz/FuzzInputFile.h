// The module's record files are read through the C runtime's text mode from a path, so a
// fuzz input goes to a file first: one file per target in a folder made once per run.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

inline const std::string& fuzzInputPath(const char* fileName) {
    static const std::string folder = [] {
        // In memory where the system offers it: the settings writes sync the file and its
        // folder, which on a disk costs more than the rest of a run.
        char shared[] = "/dev/shm/vantor-fuzz-XXXXXX";
        char onDisk[] = "/tmp/vantor-fuzz-XXXXXX";
        const char* made = mkdtemp(shared);
        if (made == nullptr) made = mkdtemp(onDisk);
        if (made == nullptr) std::abort();
        return std::string(made);
    }();
    static const std::string path = folder + "/" + fileName;
    // A run ends through exit(), crashes aside; the folder and what the readers and writers
    // left in it (lock files, the written file) go with it.
    static const int removal = std::atexit([] { std::filesystem::remove_all(folder); });
    (void)removal;
    return path;
}

inline void writeFuzzInput(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
}
