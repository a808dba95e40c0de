// A DXF file's bytes together with its tags, which view into those bytes: the result of the
// first reading stage, kept alive while later stages use the tags.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/Tag.h"
#include "cad/db/dxf/TextArena.h"

namespace cad::db::dxf {

class DxfFile {
public:
    // Reads the tags of `bytes`; error() tells whether that succeeded.
    static DxfFile fromBytes(std::string bytes);
    // Reads a file from disk; a file that cannot be read is an error at line 0.
    static DxfFile fromPath(const std::filesystem::path& path);

    bool ok() const { return !error_.has_value(); }
    const std::optional<DxfError>& error() const { return error_; }
    bool isBinary() const { return binary_; }
    // Lines for text files, byte offsets for binary ones.
    TagPlace place() const { return binary_ ? TagPlace::Offset : TagPlace::Line; }
    std::span<const Tag> tags() const { return tags_; }
    std::string_view bytes() const { return *bytes_; }

private:
    DxfFile() = default;

    // Behind a pointer so that moving the file never moves the characters the tags view
    // (a short std::string would carry them along inside itself).
    std::unique_ptr<std::string> bytes_;
    std::unique_ptr<TextArena> arena_;
    std::vector<Tag> tags_;
    std::optional<DxfError> error_;
    bool binary_ = false;
};

}  // namespace cad::db::dxf
