// Saving a file so that a crash or a failed write never leaves it half-written: the content
// goes to a hidden temporary beside the target and replaces the target only on commit. A
// failure names the target and the system's reason in lastFileError().
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
    // file or the target is a folder, eFileWriteError when the device is full or failing.
    ErrorStatus open(const std::string& targetPath);
    // Appends bytes; a failure is remembered and also reported by commit().
    ErrorStatus write(std::string_view bytes);
    // Flushes, syncs and renames the temporary over the target. The target keeps its
    // permission bits; a new target gets the ordinary ones a newly created file would get.
    // On failure the temporary is gone and the target is as it was.
    ErrorStatus commit();
    // Drops the temporary; the target stays as it was.
    void discard();

    bool isOpen() const { return fd_ >= 0; }
    // The system's error number of the first failure, 0 when none.
    int osError() const { return osError_; }
    const std::string& targetPath() const { return target_; }
    const std::string& temporaryPath() const { return temporary_; }

private:
    ErrorStatus flushBuffer();
    ErrorStatus writeDirect(std::string_view bytes);
    ErrorStatus failed(int osError);

    int fd_ = -1;
    std::string target_;
    std::string temporary_;
    std::string buffer_;
    ErrorStatus writeStatus_ = ErrorStatus::eOk;
    int osError_ = 0;
};

}  // namespace cad::sys
