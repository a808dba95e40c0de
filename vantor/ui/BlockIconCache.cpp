// Filing block icons on disk.
#include "vantor/ui/BlockIconCache.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace vantor {

namespace {

namespace fs = std::filesystem;

// Bumped whenever the layout below or the look of a drawn icon changes, so old files miss.
constexpr std::string_view kMagic = "VNICON02";

std::uint64_t fnv1a(std::string_view bytes, std::uint64_t hash = 0xcbf29ce484222325ull) {
    for (const unsigned char c : bytes) {
        hash ^= c;
        hash *= 0x100000001b3ull;
    }
    return hash;
}

std::string hex(std::uint64_t value) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(value));
    return text;
}

void putNumber(std::string& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

void putText(std::string& out, std::string_view text) {
    putNumber(out, text.size(), 4);
    out.append(text);
}

// Reads what putNumber and putText wrote; every read fails once the input runs short.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    bool number(std::uint64_t& value, int bytes) {
        if (bytes_.size() < static_cast<std::size_t>(bytes)) return false;
        value = 0;
        for (int i = 0; i < bytes; ++i)
            value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[i])) << (8 * i);
        bytes_.remove_prefix(bytes);
        return true;
    }
    bool text(std::string_view& value) {
        std::uint64_t size = 0;
        if (!number(size, 4) || size > bytes_.size()) return false;
        value = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return true;
    }
    std::string_view rest() const { return bytes_; }

private:
    std::string_view bytes_;
};

}  // namespace

int blockIconPixels(int stored) {
    if (stored == 0) return kDefaultBlockIconPixels;
    return std::clamp(stored, kMinBlockIconPixels, kMaxBlockIconPixels);
}

FileStamp fileStampOf(const std::string& path) {
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    if (error) return {};
    const auto size = fs::file_size(path, error);
    if (error) return {};
    return {std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count(),
            static_cast<std::int64_t>(size)};
}

std::string BlockIconCache::fileFor(const BlockIconKey& key) const {
    // Hashed names: drawing paths and block names hold separators and characters no file
    // name may. The file records both in full, so a collision reads as a miss.
    return (fs::path(folder_) / hex(fnv1a(key.drawingPath)) /
            (hex(fnv1a(key.block)) + "-" + std::to_string(key.pixels) + ".icon"))
        .string();
}

std::string BlockIconCache::encode(const BlockIconKey& key, std::string_view picture) {
    std::string body;
    putText(body, key.drawingPath);
    putText(body, key.block);
    putNumber(body, static_cast<std::uint64_t>(key.stamp.nanoseconds), 8);
    putNumber(body, static_cast<std::uint64_t>(key.stamp.size), 8);
    putNumber(body, static_cast<std::uint32_t>(key.pixels), 4);
    putText(body, picture);
    std::string file(kMagic);
    putNumber(file, fnv1a(body), 8);
    return file + body;
}

std::optional<std::string> BlockIconCache::decode(std::string_view file, const BlockIconKey& key) {
    if (!file.starts_with(kMagic)) return std::nullopt;
    Reader header(file.substr(kMagic.size()));
    std::uint64_t checksum = 0;
    if (!header.number(checksum, 8) || fnv1a(header.rest()) != checksum) return std::nullopt;
    Reader body(header.rest());
    std::string_view path, block, picture;
    std::uint64_t nanoseconds = 0, size = 0, pixels = 0;
    if (!body.text(path) || !body.text(block) || !body.number(nanoseconds, 8) ||
        !body.number(size, 8) || !body.number(pixels, 4) || !body.text(picture) ||
        !body.rest().empty())
        return std::nullopt;
    const FileStamp stamp{static_cast<std::int64_t>(nanoseconds), static_cast<std::int64_t>(size)};
    if (path != key.drawingPath || block != key.block || !(stamp == key.stamp) ||
        static_cast<int>(pixels) != key.pixels || picture.empty())
        return std::nullopt;
    return std::string(picture);
}

std::optional<std::string> BlockIconCache::load(const BlockIconKey& key) const {
    if (!key.stamp.valid()) return std::nullopt;
    std::ifstream in(fileFor(key), std::ios::binary);
    if (!in) return std::nullopt;
    const std::string file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return decode(file, key);
}

bool BlockIconCache::store(const BlockIconKey& key, std::string_view picture) const {
    if (!key.stamp.valid() || picture.empty() || folder_.empty()) return false;
    const fs::path target = fileFor(key);
    std::error_code error;
    fs::create_directories(target.parent_path(), error);
    if (error) return false;
    // Named per process and write, so two windows drawing the same icon never share a file.
    static std::atomic<unsigned> counter{0};
    fs::path temporary = target;
    temporary += "." + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        const std::string content = encode(key, picture);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.close();
        if (!out) {
            fs::remove(temporary, error);
            return false;
        }
    }
    // No sync: a cache file a crash damages is only redrawn.
    fs::rename(temporary, target, error);
    if (error) {
        fs::remove(temporary, error);
        return false;
    }
    return true;
}

}  // namespace vantor
