// File-system services with the semantics of the Windows C runtime that the module's file
// handling was built on: rename never replaces, _mkdir answers through errno, times in seconds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cad/sys/ErrorStatus.h"

namespace cad::sys {

// The status for a failed system call: eFileNotFound for a missing file or folder,
// eFileAccessErr for a refusal (permissions, a folder where a file was expected, a file in
// use), eFileWriteError for a full or failing device.
ErrorStatus errorStatusFromErrno(int error);

// Seconds since the epoch, the sub-second part dropped so that two files written within the
// same second compare equal (the tree cache is current when it is not older than its
// drawing). nullopt when the path does not exist.
std::optional<std::int64_t> lastWriteTime(const std::string& path);

bool fileExists(const std::string& path);    // a regular file (or a link to one)
bool folderExists(const std::string& path);  // a folder (or a link to one)

// Never replaces: eFileAccessErr when `to` exists, eFileNotFound when `from` is missing.
ErrorStatus renameFile(const std::string& from, const std::string& to);
// eFileNotFound when missing, eFileAccessErr for a folder or a refusal.
ErrorStatus deleteFile(const std::string& path);
// 0 on success; otherwise -1 with errno set: EEXIST when the path exists, ENOENT when the
// parent folder is missing.
int makeDirectory(const std::string& path);

}  // namespace cad::sys
