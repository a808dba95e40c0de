// The lowest stage of writing a drawing: tags appended to a text DXF file held in memory
// (the database saves it atomically). Knows nothing of objects or sections.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "cad/db/dxf/Tag.h"
#include "cad/sys/CodePage.h"

namespace cad::db::dxf {

class TagWriter {
public:
    // Binary data goes out in tags of at most this many bytes, as other programs expect.
    static constexpr std::size_t kMaxBinaryChunk = 127;

    explicit TagWriter(sys::CodePage codePage = sys::CodePage::Ansi1252) : codePage_(codePage) {}

    // The code page strings are written in; escapes carry what it cannot hold.
    void setCodePage(sys::CodePage codePage) { codePage_ = codePage; }
    sys::CodePage codePage() const { return codePage_; }

    // UTF-8 text, encoded for the file.
    void writeString(int code, std::string_view utf8);
    // A value already in the file's form (a tag kept raw), written as it is.
    void writeRaw(int code, std::string_view value);
    void writeTag(const Tag& tag) { writeRaw(tag.code, tag.value); }
    // The shortest text that reads back as the same double; whole numbers keep a ".0".
    void writeDouble(int code, double value);
    void writeInt(int code, std::int64_t value);
    void writeBool(int code, bool value) { writeInt(code, value ? 1 : 0); }
    // Upper-case hexadecimal without leading zeros.
    void writeHandle(int code, std::uint64_t handle);
    // Bytes as upper-case hexadecimal, in tags of at most kMaxBinaryChunk bytes each; no bytes
    // still make one empty tag, so an empty chunk of extended data survives a round trip.
    void writeBinary(int code, std::string_view bytes);
    // x under `code`, y under code + 10, z under code + 20 (no z for the 2D form).
    void writePoint(int code, double x, double y, double z);
    void writePoint2d(int code, double x, double y);

    // With a sink, whole tags are handed to it in pieces of about `chunk` bytes instead of
    // piling up in text(); finish() hands over the rest.
    void setSink(std::function<void(std::string_view)> sink, std::size_t chunk) {
        sink_ = std::move(sink);
        chunk_ = chunk;
    }
    void finish() {
        if (!sink_) return;
        if (!text_.empty()) sink_(text_);
        text_.clear();
    }

    const std::string& text() const { return text_; }
    std::string takeText() { return std::move(text_); }
    void reserve(std::size_t bytes) { text_.reserve(bytes); }

private:
    void writeCode(int code);

    sys::CodePage codePage_;
    std::string text_;
    std::function<void(std::string_view)> sink_;
    std::size_t chunk_ = 0;
};

}  // namespace cad::db::dxf
