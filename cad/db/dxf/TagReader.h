// The first stage of reading a drawing: a whole DXF file's bytes, text or binary, split into
// tags. Knows nothing of sections or objects.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/Tag.h"
#include "cad/db/dxf/TextArena.h"

namespace cad::db::dxf {

class TagReader {
public:
    // Appends the tags of `bytes` to `tags`, up to and including 0/EOF; what follows EOF is
    // ignored. Comments (999) are dropped. Values view into `bytes`, or for binary files into
    // `arena`; both must outlive the tags. On failure returns the error and `tags` holds the
    // tags read before it.
    static std::optional<DxfError> read(std::string_view bytes, std::vector<Tag>& tags,
                                        TextArena& arena);

    // Why `bytes` cannot be read as DXF at all (too large, empty, a DWG file), or nothing.
    static std::optional<DxfError> refusal(std::string_view bytes);

    // The sentinel that opens a binary DXF file.
    static bool isBinaryDxf(std::string_view bytes);
    // The version magic that opens a DWG file ("AC1015" ...).
    static bool isDwg(std::string_view bytes);
};

// The tags of a text DXF file one at a time, from its start or from any place a tag starts:
// what lets a reader index a large file in one pass and read a structure's tags again later,
// without holding every tag at once. Values view into the bytes; comments are skipped.
class TextTagCursor {
public:
    // From the start of the file, after a UTF-8 byte order mark if there is one.
    explicit TextTagCursor(std::string_view bytes);
    // From the tag at byte `offset`, which stands on `line`.
    TextTagCursor(std::string_view bytes, std::uint32_t offset, std::uint32_t line);

    // The next tag: true with `tag` set; false at the end of the bytes, or with `error` set
    // when the bytes there are no tag.
    bool next(Tag& tag, std::optional<DxfError>& error);
    // Where the next tag starts: its byte offset and line.
    std::uint32_t offset() const { return static_cast<std::uint32_t>(p_ - begin_); }
    std::uint32_t line() const { return line_; }

private:
    const char* p_;
    const char* begin_;
    const char* end_;
    std::uint32_t line_;
};

}  // namespace cad::db::dxf
