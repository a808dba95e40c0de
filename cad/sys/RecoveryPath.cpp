// Reserving names for recovery copies.
#include "cad/sys/RecoveryPath.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "cad/sys/FileError.h"
#include "cad/sys/LocalTime.h"

namespace cad::sys {

std::string reserveRecoveryPath(const std::string& target, std::time_t when) {
    const std::filesystem::path path(target);
    const std::string base = (path.parent_path() / path.stem()).string() + ".recovered-" +
                             localTimeText(static_cast<std::int64_t>(when), "%Y%m%d-%H%M%S");
    const std::string extension = path.extension().string();
    // A folder full of copies of one second is no longer a race but a fault; stop there.
    for (int n = 1; n <= 1000; ++n) {
        const std::string candidate =
            base + (n == 1 ? std::string() : "-" + std::to_string(n)) + extension;
        const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            ::close(fd);
            return candidate;
        }
        if (errno != EEXIST) {
            setFileError("create", candidate, errno);
            return {};
        }
    }
    setFileError("create", base + extension, EEXIST);
    return {};
}

}  // namespace cad::sys
