// Code page conversion over glibc iconv, with an ASCII fast path because the DXF reader
// converts every string of a drawing and most of them are plain ASCII.
#include "cad/sys/CodePage.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "cad/sys/AsciiCase.h"

namespace cad::sys {
namespace {

struct CodePageInfo {
    CodePage codePage;
    const char* iconvName;
    std::string_view dxfName;
};

// Listed in enum order so that a code page indexes its own row.
constexpr std::array kCodePages{
    CodePageInfo{CodePage::Utf8, "UTF-8", "UTF-8"},
    CodePageInfo{CodePage::Ansi949, "CP949", "ANSI_949"},
    CodePageInfo{CodePage::Ansi1252, "CP1252", "ANSI_1252"},
    CodePageInfo{CodePage::Ansi1250, "CP1250", "ANSI_1250"},
    CodePageInfo{CodePage::Ansi1251, "CP1251", "ANSI_1251"},
    CodePageInfo{CodePage::Ansi1253, "CP1253", "ANSI_1253"},
    CodePageInfo{CodePage::Ansi1254, "CP1254", "ANSI_1254"},
    CodePageInfo{CodePage::Ansi1255, "CP1255", "ANSI_1255"},
    CodePageInfo{CodePage::Ansi1256, "CP1256", "ANSI_1256"},
    CodePageInfo{CodePage::Ansi1257, "CP1257", "ANSI_1257"},
    CodePageInfo{CodePage::Ansi1258, "CP1258", "ANSI_1258"},
    CodePageInfo{CodePage::Ansi874, "CP874", "ANSI_874"},
    CodePageInfo{CodePage::Ansi932, "CP932", "ANSI_932"},
    CodePageInfo{CodePage::Ansi936, "CP936", "ANSI_936"},
    CodePageInfo{CodePage::Ansi950, "CP950", "ANSI_950"},
    CodePageInfo{CodePage::Dos437, "CP437", "DOS437"},
    CodePageInfo{CodePage::Dos850, "CP850", "DOS850"},
    CodePageInfo{CodePage::Dos852, "CP852", "DOS852"},
    CodePageInfo{CodePage::Dos855, "CP855", "DOS855"},
    CodePageInfo{CodePage::Dos857, "CP857", "DOS857"},
    CodePageInfo{CodePage::Dos860, "CP860", "DOS860"},
    CodePageInfo{CodePage::Dos861, "CP861", "DOS861"},
    CodePageInfo{CodePage::Dos863, "CP863", "DOS863"},
    CodePageInfo{CodePage::Dos865, "CP865", "DOS865"},
    CodePageInfo{CodePage::Dos866, "CP866", "DOS866"},
    CodePageInfo{CodePage::Dos869, "CP869", "DOS869"},
    CodePageInfo{CodePage::Dos932, "CP932", "DOS932"},
};

constexpr bool rowsInEnumOrder() {
    for (std::size_t i = 0; i < kCodePages.size(); ++i) {
        if (static_cast<std::size_t>(kCodePages[i].codePage) != i) return false;
    }
    return true;
}
static_assert(rowsInEnumOrder());

const CodePageInfo& info(CodePage codePage) {
    return kCodePages[static_cast<std::size_t>(codePage)];
}

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD in UTF-8

// Length of the well-formed UTF-8 sequence at the start of `text` (overlong forms, surrogates
// and values above U+10FFFF are not well formed), or 0 when there is none.
std::size_t utf8SequenceLength(std::string_view text, char32_t& codePoint) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(0);
    std::size_t length = 0;
    char32_t minimum = 0;
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        codePoint = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        codePoint = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        codePoint = lead & 0x07;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) return 0;
        codePoint = (codePoint << 6) | (byteAt(i) & 0x3F);
    }
    if (codePoint < minimum || codePoint > 0x10FFFF) return 0;
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) return 0;
    return length;
}

// Copies well-formed UTF-8 and writes `replacement` for each byte that is not.
std::string sanitizeUtf8(std::string_view text, std::string_view replacement) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t codePoint;
        const std::size_t length = utf8SequenceLength(text, codePoint);
        if (length == 0) {
            out += replacement;
            text.remove_prefix(1);
        } else {
            out.append(text.substr(0, length));
            text.remove_prefix(length);
        }
    }
    return out;
}

enum Direction { kDecode, kEncode };

// iconv_open is far too slow to call per string, and a descriptor keeps conversion state so
// it cannot be shared between threads: each thread opens what it uses, once.
class ThreadConverters {
public:
    ThreadConverters() { handles_.fill(kNotOpened); }
    ThreadConverters(const ThreadConverters&) = delete;
    ThreadConverters& operator=(const ThreadConverters&) = delete;
    ~ThreadConverters() {
        for (iconv_t handle : handles_) {
            if (handle != kNotOpened && handle != kUnavailable) iconv_close(handle);
        }
    }

    // The descriptor for the direction, or kUnavailable when the C library lacks the page.
    iconv_t get(CodePage codePage, Direction direction) {
        iconv_t& handle = handles_[static_cast<std::size_t>(codePage) * 2 + direction];
        if (handle == kNotOpened) {
            const char* name = info(codePage).iconvName;
            // A failed open stores kUnavailable, so it is not retried on every string.
            handle = direction == kDecode ? iconv_open("UTF-8", name) : iconv_open(name, "UTF-8");
        }
        return handle;
    }

    static inline const iconv_t kUnavailable = reinterpret_cast<iconv_t>(-1);

private:
    static inline const iconv_t kNotOpened = nullptr;
    std::array<iconv_t, kCodePages.size() * 2> handles_;
};

ThreadConverters& converters() {
    thread_local ThreadConverters perThread;
    return perThread;
}

// Runs `text` through the descriptor. At each sequence the converter refuses, `onInvalid`
// gets the rest of the input, appends its replacement to the output and returns how many
// bytes it consumed (at least one), so conversion always reaches the end of the input.
// Without a converter for the page every non-ASCII byte is one we cannot convert.
template <typename OnInvalid>
std::string convert(iconv_t handle, std::string_view text, OnInvalid onInvalid) {
    std::string out;
    if (handle == ThreadConverters::kUnavailable) {
        while (!text.empty()) {
            if (static_cast<unsigned char>(text.front()) < 0x80) {
                out += text.front();
                text.remove_prefix(1);
            } else {
                text.remove_prefix(onInvalid(text, out));
            }
        }
        return out;
    }
    out.reserve(text.size() + text.size() / 2);
    char buffer[4096];
    const auto flush = [&] {
        // Emits what a stateful converter still holds (CP1258 waits for combining marks).
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        iconv(handle, nullptr, nullptr, &outPtr, &outLeft);
        out.append(buffer, static_cast<std::size_t>(outPtr - buffer));
    };
    iconv(handle, nullptr, nullptr, nullptr, nullptr);
    char* inPtr = const_cast<char*>(text.data());  // iconv's signature only; never written
    std::size_t inLeft = text.size();
    while (inLeft > 0) {
        char* outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        const std::size_t result = iconv(handle, &inPtr, &inLeft, &outPtr, &outLeft);
        const int error = errno;
        out.append(buffer, static_cast<std::size_t>(outPtr - buffer));
        if (result != static_cast<std::size_t>(-1) || error == E2BIG) continue;
        // EILSEQ (invalid or unmappable) or EINVAL (a sequence cut off by the end).
        flush();
        const std::size_t consumed = onInvalid(std::string_view(inPtr, inLeft), out);
        inPtr += consumed;
        inLeft -= consumed;
    }
    flush();
    return out;
}

void appendDxfEscape(std::string& out, char32_t codePoint) {
    constexpr char kHex[] = "0123456789ABCDEF";
    out += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(codePoint >> shift) & 0xF];
}

}  // namespace

std::string toUtf8(std::string_view bytes, CodePage codePage) {
    if (isAscii(bytes)) return std::string(bytes);
    if (codePage == CodePage::Utf8) return sanitizeUtf8(bytes, kReplacement);
    const auto replaceByte = [](std::string_view, std::string& out) {
        out += kReplacement;
        return std::size_t{1};
    };
    return convert(converters().get(codePage, kDecode), bytes, replaceByte);
}

std::string fromUtf8(std::string_view utf8, CodePage codePage, Unmappable policy) {
    if (isAscii(utf8)) return std::string(utf8);
    if (codePage == CodePage::Utf8) return sanitizeUtf8(utf8, "?");
    // Called where the converter stops: a character it cannot map, or bytes that are not
    // UTF-8 at all, told apart by decoding the sequence ourselves.
    const auto replace = [policy](std::string_view rest, std::string& out) {
        char32_t codePoint = 0;
        const std::size_t length = utf8SequenceLength(rest, codePoint);
        if (length == 0) {
            out += '?';
            return std::size_t{1};
        }
        if (policy == Unmappable::DxfEscape && codePoint <= 0xFFFF) {
            appendDxfEscape(out, codePoint);
        } else {
            out += '?';
        }
        return length;
    };
    return convert(converters().get(codePage, kEncode), utf8, replace);
}

bool isAscii(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t size = text.size();
    std::size_t i = 0;
    // Eight bytes at a time: a set high bit anywhere in the word means a non-ASCII byte.
    for (; i + 8 <= size; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, sizeof word);
        if (word & 0x8080808080808080ULL) return false;
    }
    for (; i < size; ++i) {
        if (bytes[i] & 0x80) return false;
    }
    return true;
}

bool isUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        // Drawings are mostly ASCII: eight bytes are passed over at a time where they are.
        if (const std::string_view word = bytes.substr(0, 8); isAscii(word)) {
            bytes.remove_prefix(word.size());
            continue;
        }
        char32_t codePoint = 0;
        const std::size_t length = utf8SequenceLength(bytes, codePoint);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

bool canHold(std::string_view utf8, CodePage codePage) {
    if (isAscii(utf8)) return true;
    if (codePage == CodePage::Utf8) return isUtf8(utf8);
    bool held = true;
    const auto refuse = [&held](std::string_view, std::string&) {
        held = false;
        return std::size_t{1};
    };
    convert(converters().get(codePage, kEncode), utf8, refuse);
    return held;
}

std::string cp949ToUtf8(std::string_view bytes) {
    return toUtf8(bytes, CodePage::Ansi949);
}

std::string utf8ToCp949(std::string_view utf8, Unmappable policy) {
    return fromUtf8(utf8, CodePage::Ansi949, policy);
}

std::optional<CodePage> codePageFromDxfName(std::string_view name) {
    if (equalNoCase(name, "UTF8")) return CodePage::Utf8;
    for (const CodePageInfo& row : kCodePages) {
        if (equalNoCase(name, row.dxfName)) return row.codePage;
    }
    return std::nullopt;
}

std::string_view dxfCodePageName(CodePage codePage) {
    return info(codePage).dxfName;
}

}  // namespace cad::sys
