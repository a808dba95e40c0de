// The first stage of reading a drawing: a whole DXF file's bytes, text or binary, split into
// tags. Knows nothing of sections or objects.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
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
// Every tag of a drawing passes through next() twice, so its usual path is here, inline: codes
// written three wide ("  0", " 10", "330"), values found a few bytes on.
class TextTagCursor {
public:
    // From the start of the file, after a UTF-8 byte order mark if there is one.
    explicit TextTagCursor(std::string_view bytes);
    // From the tag at byte `offset`, which stands on `line`.
    TextTagCursor(std::string_view bytes, std::uint32_t offset, std::uint32_t line);

    // The next tag: true with `tag` set; false at the end of the bytes, or with `error` set
    // when the bytes there are no tag.
    bool next(Tag& tag, std::optional<DxfError>& error) {
        while (p_ < end_) {
            int code = 0;
            const char* codeEnd = parseCode(p_, code);
            if (codeEnd == nullptr) {
                error = badCode();
                return false;
            }
            if (end_ - codeEnd < 2) {
                error = endAfter(code);
                return false;
            }
            const char* value = codeEnd + 1;
            const char* valueEnd = lineEnd(value);
            p_ = valueEnd == end_ ? end_ : valueEnd + 1;
            if (valueEnd > value && valueEnd[-1] == '\r') --valueEnd;
            if (valueEnd > value && (valueEnd[-1] == ' ' || valueEnd[-1] == '\t'))
                valueEnd = trimmedEnd(code, value, valueEnd);
            tag = Tag{code, {value, static_cast<std::size_t>(valueEnd - value)}, line_};
            line_ += 2;
            if (code != kComment) return true;
        }
        return false;
    }

    // Where the next tag starts: its byte offset and line.
    std::uint32_t offset() const { return static_cast<std::uint32_t>(p_ - begin_); }
    std::uint32_t line() const { return line_; }

private:
    static constexpr int kComment = 999;

    // The code on the line at `p`, answering where the line ends (its LF), or nullptr when it
    // is no group code. Three digits or blanks then LF (or CR LF) are taken without a loop.
    const char* parseCode(const char* p, int& code) const {
        if (end_ - p >= 5) {
            const auto a = static_cast<unsigned char>(p[0]);
            const auto b = static_cast<unsigned char>(p[1]);
            const auto c = static_cast<unsigned char>(p[2]);
            const char* lf = p[3] == '\n'                    ? p + 3
                             : p[3] == '\r' && p[4] == '\n' ? p + 4
                                                            : nullptr;
            const unsigned da = a - '0', db = b - '0', dc = c - '0';
            // Right-aligned: blanks only before the digits.
            const bool threeWide = (dc < 10) & ((db < 10) | ((b == ' ') & (a == ' '))) &
                                   ((da < 10) | (a == ' '));
            if (lf != nullptr && threeWide) {
                code = static_cast<int>((da < 10 ? da * 100 : 0) + (db < 10 ? db * 10 : 0) + dc);
                return lf;
            }
        }
        return parseAnyCode(p, code);
    }

    // The end of the line that starts at `p` (its LF, or the end of the bytes). Most values
    // are a few bytes long, so the first sixteen bytes are looked at eight at a time in
    // registers before memchr is called: its set-up costs more than such a short line.
    const char* lineEnd(const char* p) const {
        constexpr std::uint64_t kOnes = 0x0101010101010101;
        constexpr std::uint64_t kHigh = 0x8080808080808080;
        for (int word = 0; word < 2 && end_ - p >= 8; ++word, p += 8) {
            std::uint64_t bytes;
            std::memcpy(&bytes, p, sizeof bytes);
            const std::uint64_t x = bytes ^ (kOnes * '\n');  // bytes equal to LF become zero
            // The lowest set bit marks the first zero byte (higher ones may be false alarms).
            const std::uint64_t zero = (x - kOnes) & ~x & kHigh;
            if (zero != 0) return p + (std::countr_zero(zero) >> 3);
        }
        return endOfLine(p);
    }

    // The rare paths, out of line.
    const char* parseAnyCode(const char* p, int& code) const;
    const char* endOfLine(const char* p) const;
    // Numbers and handles lose trailing blanks; texts keep them.
    static const char* trimmedEnd(int code, const char* value, const char* end);
    DxfError badCode() const;
    DxfError endAfter(int code) const;

    const char* p_;
    const char* begin_;
    const char* end_;
    std::uint32_t line_;
};

}  // namespace cad::db::dxf
