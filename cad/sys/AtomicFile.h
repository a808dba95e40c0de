// Saving a file so that a crash or a failed write never leaves it half-written: the content
// goes to a hidden temporary beside the target and replaces the target only on commit.
#pragma once

#include <string>
#include <string_view>

#include "cad/sys/ErrorStatus.h"

namespace cad::sys {

class AtomicFile {
public:
    AtomicFile() = default;
    ~AtomicFile();
    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&& other) noexcept;
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Creates the temporary in the target's folder (a rename is only atomic within one file
    // system). eFileNotFound when the folder is missing, eFileAccessErr when it refuses the
    // file or the target is a folder.
    ErrorStatus open(const std::string& targetPath);
    // Appends bytes; a failure is remembered and also reported by commit().
    ErrorStatus write(std::string_view bytes);
    // Flushes, syncs and renames the temporary over the target. The target keeps its
    // permission bits; a new target gets the ordinary ones a newly created file would get.
    ErrorStatus commit();
    // Drops the temporary; the target stays as it was.
    void discard();

    bool isOpen() const { return fd_ >= 0; }
    const std::string& targetPath() const { return target_; }
    const std::string& temporaryPath() const { return temporary_; }

private:
    ErrorStatus flushBuffer();
    ErrorStatus writeDirect(std::string_view bytes);

    int fd_ = -1;
    std::string target_;
    std::string temporary_;
    std::string buffer_;
    ErrorStatus writeStatus_ = ErrorStatus::eOk;
};

}  // namespace cad::sys
