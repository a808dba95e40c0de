// Counted texts and decimal texts of the module's own record files.
#include "cad/sys/CountedText.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace cad::sys {

namespace {

constexpr std::size_t kProtectedLength = 26;  // 0x1A, the text-mode end-of-data byte
constexpr std::size_t kReadChunk = 4096;
constexpr std::size_t kMaxDecimalLength = 20;  // "-9223372036854775808"

}  // namespace

bool writeCountedText(CrtFile& file, std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        return false;
    }
    bool flagged = bytes.size() == kProtectedLength;
    auto length = static_cast<std::int32_t>(flagged ? bytes.size() - 1 : bytes.size());
    return file.writeInt32(flagged ? 1 : 0) && file.writeInt32(length) &&
           file.write(bytes.data(), bytes.size()) == bytes.size();
}

std::optional<std::string> readCountedText(CrtFile& file, std::size_t maxLength) {
    std::int32_t flag = 0;
    std::int32_t stored = 0;
    if (!file.readInt32(flag) || !file.readInt32(stored) || stored < 0) return std::nullopt;
    std::size_t length = static_cast<std::size_t>(stored) + (flag != 0 ? 1 : 0);
    if (length > maxLength) return std::nullopt;

    std::string text;
    while (text.size() < length) {
        std::size_t had = text.size();
        std::size_t want = std::min(kReadChunk, length - had);
        text.resize(had + want);
        if (file.read(text.data() + had, want) != want) return std::nullopt;
    }
    return text;
}

bool writeDecimalText(CrtFile& file, std::int64_t value) {
    char digits[kMaxDecimalLength];
    auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    auto length = static_cast<std::size_t>(end - digits);
    return error == std::errc() && file.writeInt32(static_cast<std::int32_t>(length)) &&
           file.write(digits, length) == length;
}

std::optional<std::int64_t> readDecimalText(CrtFile& file) {
    std::int32_t stored = 0;
    if (!file.readInt32(stored) || stored < 1 || stored > std::int32_t{kMaxDecimalLength}) {
        return std::nullopt;
    }
    char digits[kMaxDecimalLength];
    auto length = static_cast<std::size_t>(stored);
    if (file.read(digits, length) != length) return std::nullopt;
    // from_chars alone would accept a value followed by other bytes.
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(digits, digits + length, value);
    if (error != std::errc() || end != digits + length) return std::nullopt;
    return value;
}

}  // namespace cad::sys
