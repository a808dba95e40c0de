// A name beside a file for a copy of a change that could not be written to the file itself,
// so that the change is kept where its user will look for it.
#pragma once

#include <ctime>
#include <string>

namespace cad::sys {

// "<folder>/<stem>.recovered-<YYYYMMDD-HHMMSS><ext>" in local time, with "-2", "-3", ... after
// the time when that name is taken. The extension stays last, so the copy opens as what the
// file was. The name is reserved by creating an empty file there exclusively: two programs
// recovering in the same second never choose the same one, and the copy is then saved over
// the reservation. Empty when the folder refuses the file; lastFileError() says why.
std::string reserveRecoveryPath(const std::string& target, std::time_t when);

}  // namespace cad::sys
