// The record fields shared by the module's own files (the tree cache and the list files):
// counted texts and decimal texts, written through a text-mode CrtFile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "cad/sys/CrtFile.h"

namespace cad::sys {

// A 4-byte flag, a 4-byte length, then the bytes without terminator (bytes on disk, so the
// caller converts to the file's code page first). A text of exactly 26 bytes is written with
// flag 1 and length 25, followed by all 26 bytes, because a length byte 0x1A would end the
// data for a text-mode reader. False when a write fails or the text is longer than 2^31-1.
bool writeCountedText(CrtFile& file, std::string_view bytes);

// Reads flag and length, adds 1 to the length when the flag is not 0, then the bytes.
// nullopt when the data ends early or the length is negative or above maxLength; memory is
// only taken as the bytes arrive, so a damaged length never allocates beyond the file. A
// length of 0 answers an empty text, which callers skip.
std::optional<std::string> readCountedText(CrtFile& file, std::size_t maxLength);

// A 4-byte length, then the value in ASCII digits with a leading "-" when negative, no
// terminator.
bool writeDecimalText(CrtFile& file, std::int64_t value);
// nullopt for a length below 1 or above 20, anything but an optional "-" and digits, a value
// outside 64 bits, or data that ends early.
std::optional<std::int64_t> readDecimalText(CrtFile& file);

}  // namespace cad::sys
