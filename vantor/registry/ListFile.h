// The record file of the management windows (UBTabList.dat) and of their registered drawings
// (UBList<n>.dat): a count, then counted texts, written through a text-mode C-runtime file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/sys/CrtFile.h"

namespace vantor {

// Texts are UTF-8 in memory and CP949 on disk, control characters and carets in the caret
// form DXF uses ("^J", "^ "; cad::sys::toCaretForm). Text mode is part of the format: a 0x0A the
// writer emits is stored as 0x0D 0x0A, and a 0x1A met while reading ends the data. The flag of
// a counted text keeps a length of 26 off the disk; the count has no such protection, so a
// count of 26 (or of any number whose first byte is 0x1A) reads back as an empty file.
class ListFile {
public:
    // The longest text the readers of the format take, in bytes on disk.
    static constexpr std::size_t kMaxTextBytes = 259;

    enum class Entry {
        Text,     // a text was read
        Skipped,  // the entry's length was below 1: nothing to add, reading goes on
        End,      // all entries read, or the data ended or went wrong: stop
    };

    // Opens for reading and reads the count; false when the file does not open. A file whose
    // count cannot be read holds no entries.
    bool open(const std::string& path);
    std::int32_t count() const { return count_; }
    // The next entry, its text in `text` when the answer is Entry::Text.
    Entry next(std::string& text);
    void close();

    // Every text of the file in order, skipped entries left out and reading stopped where the
    // data ends or goes wrong; nullopt when the file does not open.
    static std::optional<std::vector<std::string>> readAll(const std::string& path);
    // Writes count and texts in place of the file, atomically: false, with the old file as
    // it was and the reason in cad::sys::lastFileError(), when the new one cannot be
    // written. Callers that read the file first hold its lock (cad::sys::FileLock).
    static bool write(const std::string& path, const std::vector<std::string>& texts);
    // True when the text's bytes on disk (caret form, CP949) stay within kMaxTextBytes.
    static bool fits(std::string_view text);

private:
    cad::sys::CrtFile file_;
    std::int32_t count_ = 0;
    std::int32_t read_ = 0;
};

}  // namespace vantor
