// A DXF file's bytes, read from disk or given, and the way back to its tags: the source every
// reading stage draws on. Text files are not split into tags up front; the structure stage
// walks them once and later stages read each structure's tags again (tagsOf), so a large
// drawing never has all its tags in memory. Binary files are turned into tags whole, since
// their values need converting to text anyway.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfStructure.h"
#include "cad/db/dxf/Tag.h"
#include "cad/db/dxf/TextArena.h"
#include "cad/sys/MappedFile.h"

namespace cad::db::dxf {

class DxfFile {
public:
    // Bytes in memory; error() tells whether they can be read as DXF at all.
    static DxfFile fromBytes(std::string bytes);
    // A file mapped into memory; its pages are let go behind the reading as it moves on.
    static DxfFile fromMapping(sys::MappedFile mapping);
    // Maps a file from disk; a file that cannot be read is an error at line 0.
    static DxfFile fromPath(const std::filesystem::path& path);

    DxfFile(DxfFile&&) noexcept;
    DxfFile& operator=(DxfFile&&) noexcept;
    ~DxfFile();

    bool ok() const { return !error_.has_value(); }
    const std::optional<DxfError>& error() const { return error_; }
    bool isBinary() const { return binary_; }
    // Lines for text files, byte offsets for binary ones.
    TagPlace place() const { return binary_ ? TagPlace::Offset : TagPlace::Line; }
    std::string_view bytes() const { return bytes_; }
    // The tags of a binary file, read whole; nothing for a text file.
    std::optional<TagSpan> heldTags() const;
    // Whether a text file has bytes beyond ASCII and they all read as UTF-8. Scans the whole
    // file, letting its pages go behind the scan.
    bool hasUtf8Text();

    // The tags of a run the structure stage found, read again; valid until the next call.
    // Nothing when they no longer read as they did (the file changed on disk meanwhile).
    std::optional<TagSpan> tagsOf(const TagRun& run);
    // Reading has come to byte `offset`: the pages of a mapped file well behind it are let
    // go (a later pass that comes back for them reads them from the file again).
    void reached(std::uint32_t offset);

private:
    DxfFile();
    // Refuses what is no DXF at all, and reads a binary file's tags.
    void check();
    void readWithLineFeeds();

    std::unique_ptr<std::string> owned_;  // given bytes; behind a pointer so views survive moves
    sys::MappedFile mapping_;
    std::string_view bytes_;
    std::unique_ptr<TextArena> arena_;
    std::vector<Tag> tags_;     // every tag of a binary file
    std::vector<Tag> scratch_;  // the run tagsOf read last
    std::optional<DxfError> error_;
    bool binary_ = false;
    std::uint32_t keptFrom_ = 0;  // pages before this offset have been let go
    std::uint32_t furthest_ = 0;  // the furthest offset this pass has reached
};

}  // namespace cad::db::dxf
