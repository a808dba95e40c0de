// Block icons kept on disk between sessions, so a drawing shown again shows its icons at once.
// An icon is filed under its drawing, block and pixel size, and answers only while the drawing
// still has the time and size it had when the icon was drawn. Free of Qt: the picture is bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

// Icon sizes the data pane offers, in pixels.
inline constexpr int kMinBlockIconPixels = 32;
inline constexpr int kMaxBlockIconPixels = 256;
inline constexpr int kDefaultBlockIconPixels = 48;

// The size a setting asks for, within what the view offers; 0 (a key not written yet) is the
// default.
int blockIconPixels(int stored);

// A file's identity as far as a change shows: the time to the nanosecond and the size, so a
// save within the same second still counts as a change.
struct FileStamp {
    std::int64_t nanoseconds = -1;
    std::int64_t size = -1;
    bool valid() const { return size >= 0; }
    bool operator==(const FileStamp&) const = default;
};
// An invalid stamp when the file cannot be reached.
FileStamp fileStampOf(const std::string& path);

struct BlockIconKey {
    std::string drawingPath;
    FileStamp stamp;
    std::string block;
    int pixels = 0;
};

class BlockIconCache {
public:
    explicit BlockIconCache(std::string folder) : folder_(std::move(folder)) {}
    const std::string& folder() const { return folder_; }

    // One file per drawing, block and size: a later drawing of the same icon replaces it, so
    // the cache grows with the blocks shown, not with every save of a drawing.
    std::string fileFor(const BlockIconKey& key) const;
    // The picture stored for the key; nothing when there is none, when it was drawn from
    // another state of the drawing, or when the file is damaged.
    std::optional<std::string> load(const BlockIconKey& key) const;
    // Written beside its place and renamed into it, so a reader sees the old file or the new
    // one, never half of one. False when the folder cannot be written.
    bool store(const BlockIconKey& key, std::string_view picture) const;

    // The file's content, and the picture back from it when everything it records matches the
    // key and its checksum holds.
    static std::string encode(const BlockIconKey& key, std::string_view picture);
    static std::optional<std::string> decode(std::string_view file, const BlockIconKey& key);

private:
    std::string folder_;
};

}  // namespace vantor
