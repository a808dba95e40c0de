// Reading and writing INI ("private profile") files with the behaviour of the Windows profile
// functions that the module's settings file was written against.
//
// Reproduced:
// - Section and key names compare without regard to the case of ASCII letters; blanks (spaces
//   and tabs) around names and values are ignored. The first of repeated sections or keys wins.
// - Lines whose first non-blank character is ';' are comments. A line without '=' inside a
//   section is a key with an empty value.
// - A value enclosed in a matching pair of double or single quotes comes back without them.
// - Text is CP949 on disk and UTF-8 in memory. The buffer size counts bytes on disk, and an
//   answer is never cut inside a double-byte character (a lead byte left alone is dropped).
// - A new file, a new section (at the end of the file) and a new key (after the last key of
//   its section) are created as needed; an existing value is replaced in place; every other
//   line, comments included, stays as it was and where it was. Lines end in CR LF.
// Not reproduced: deleting keys or sections (null value or key), the mapping of profile files
// to the registry, and UTF-16 files.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cad/sys/FileLock.h"

namespace cad::sys {

// With a key: the key's value, cut to bufferSize - 1 bytes as stored on disk; a value longer
// than 254 bytes read with a buffer of 255 comes back as its first 254 bytes.
// Without a key: the names of the section's keys, each followed by '\0' (the answer's size is
// what the system function returns). When they do not fit the buffer with the closing extra
// '\0', the answer is cut to bufferSize - 2 bytes, the last name shortened. So an empty answer
// means the section is missing or has no keys.
// A missing file, section or key gives defaultValue, its trailing blanks removed, cut like a
// value. Nothing is ever reported: an unreadable file reads as a missing one.
std::string getPrivateProfileString(std::string_view section, std::optional<std::string_view> key,
                                    std::string_view defaultValue, std::size_t bufferSize,
                                    const std::string& path);

// Sets section/key to value in the file at `path`, replacing the file atomically so that a
// failed write leaves the old file whole. False when the file cannot be read or written, when
// a name is empty, or when the text would break the file's line structure (a line break
// anywhere, '=' in the key, ']' in the section name).
bool writePrivateProfileString(std::string_view section, std::string_view key,
                               std::string_view value, const std::string& path);

// Many keys of one file written in one rewrite: the file is read once, each set() follows the
// rules of writePrivateProfileString, and commit() replaces the file atomically once. Writing
// a settings file key by key rewrote it once per key. The file's lock is held from the read
// to the commit, so two programs saving their settings at once both keep every line the
// other wrote; when another holds it past the wait, nothing is written (lastFileError()
// says who holds it).
class PrivateProfileBatch {
public:
    explicit PrivateProfileBatch(std::string path);
    ~PrivateProfileBatch();
    PrivateProfileBatch(const PrivateProfileBatch&) = delete;
    PrivateProfileBatch& operator=(const PrivateProfileBatch&) = delete;

    // False, with nothing changed, where writePrivateProfileString would refuse.
    bool set(std::string_view section, std::string_view key, std::string_view value);
    // False when the file could not be read at the start or cannot be written.
    bool commit();

private:
    class Lines;
    std::string path_;
    FileLock lock_;
    std::unique_ptr<Lines> lines_;
};

}  // namespace cad::sys
