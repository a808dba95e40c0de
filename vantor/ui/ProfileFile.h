// The settings file accessor: one INI file, read and written key by key with the buffer sizes
// the settings have always been read with.
#pragma once

#include <string>
#include <string_view>

namespace vantor {

class ProfileFile {
public:
    void setFile(std::string path) { path_ = std::move(path); }
    const std::string& file() const { return path_; }

    // What the last call answered: the bytes of the key list or value read, or 1 / 0 for a
    // write that succeeded or failed.
    int lastResult() const { return result_; }

    // True when the section holds at least one key. The key names are fetched with a buffer of
    // 90 bytes, so a missing file, a missing section and an empty one all count as absent.
    bool sectionExists(std::string_view section);
    // The key's value, or empty when the key is missing; values longer than 254 bytes on disk
    // are cut there.
    std::string read(std::string_view section, std::string_view key);
    // The same for the keys that hold a path and more, read with a buffer of 4,096 bytes.
    std::string readLong(std::string_view section, std::string_view key);
    // Creates the file, the section and the key as needed. A failure is only remembered.
    void write(std::string_view section, std::string_view key, std::string_view value);

private:
    std::string path_;
    int result_ = 0;
};

}  // namespace vantor
