// Decoding of single-line text: UTF-8, the %% control codes and the Unicode escapes.
#include "cad/gs/text/TextCodes.h"

#include "cad/sys/CodePage.h"

namespace cad::gs {

namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Four hex digits at `at`, or -1.
long hex4(std::string_view text, std::size_t at) {
    if (at + 4 > text.size()) return -1;
    long value = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        const int d = hexDigit(text[at + k]);
        if (d < 0) return -1;
        value = value * 16 + d;
    }
    return value;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

char32_t nextUtf8(std::string_view text, std::size_t& i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    std::size_t length = 0;
    char32_t c = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        c = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        c = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        c = lead & 0x07;
    } else {
        ++i;
        return 0xFFFD;
    }
    if (i + length > text.size()) {
        ++i;
        return 0xFFFD;
    }
    for (std::size_t k = 1; k < length; ++k) {
        const auto b = static_cast<unsigned char>(text[i + k]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        c = (c << 6) | (b & 0x3F);
    }
    i += length;
    // Overlong forms and surrogates are as malformed as a stray byte.
    static constexpr char32_t kSmallest[5] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return 0xFFFD;
    return c;
}

char32_t escapeAt(std::string_view text, std::size_t& i) {
    if (i + 3 > text.size() || text[i] != '\\' || text[i + 2] != '+') return 0;
    const char kind = text[i + 1];
    if (kind == 'U' || kind == 'u') {
        const long value = hex4(text, i + 3);
        if (value <= 0) return 0;
        i += 7;
        return static_cast<char32_t>(value);
    }
    if (kind == 'M' || kind == 'm') {
        // \M+nXXXX: a character of the double-byte code page n, lead byte first.
        if (i + 8 > text.size()) return 0;
        const long value = hex4(text, i + 4);
        if (value < 0x100) return 0;
        sys::CodePage page;
        switch (text[i + 3]) {
            case '1': page = sys::CodePage::Ansi932; break;
            case '2': page = sys::CodePage::Ansi950; break;
            case '3': page = sys::CodePage::Ansi949; break;
            case '5': page = sys::CodePage::Ansi936; break;
            default: return 0;
        }
        const char bytes[2] = {static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
        const std::string utf8 = sys::toUtf8(std::string_view(bytes, 2), page);
        if (utf8.empty()) return 0;
        std::size_t k = 0;
        const char32_t c = nextUtf8(utf8, k);
        i += 8;
        return c;
    }
    return 0;
}

DecodedText decodeTextCodes(std::string_view utf8, std::size_t limit) {
    DecodedText out;
    std::uint8_t marks = 0;
    auto emit = [&](char32_t c) {
        out.chars.push_back(c);
        out.marks.push_back(marks);
    };
    std::size_t i = 0;
    while (i < utf8.size()) {
        if (out.chars.size() >= limit) {
            out.truncated = true;
            break;
        }
        const char c = utf8[i];
        if (c == '%' && i + 2 < utf8.size() && utf8[i + 1] == '%') {
            const char code = utf8[i + 2];
            switch (code) {
                case 'c': case 'C': emit(U'\u2300'); i += 3; continue;  // diameter
                case 'd': case 'D': emit(U'\u00B0'); i += 3; continue;  // degree
                case 'p': case 'P': emit(U'\u00B1'); i += 3; continue;  // plus/minus
                case '%': emit(U'%'); i += 3; continue;
                case 'u': case 'U': marks ^= DecodedText::kUnderline; i += 3; continue;
                case 'o': case 'O': marks ^= DecodedText::kOverline; i += 3; continue;
                case 'k': case 'K': marks ^= DecodedText::kStrike; i += 3; continue;
                default: break;
            }
            if (isDigit(code)) {
                // %%nnn: the character with that code, three digits at most.
                std::size_t end = i + 2;
                unsigned value = 0;
                while (end < utf8.size() && end < i + 5 && isDigit(utf8[end]))
                    value = value * 10 + static_cast<unsigned>(utf8[end++] - '0');
                if (value != 0) emit(value);
                i = end;
                continue;
            }
        }
        if (c == '\\') {
            std::size_t at = i;
            if (const char32_t escaped = escapeAt(utf8, at); escaped != 0) {
                emit(escaped);
                i = at;
                continue;
            }
        }
        emit(nextUtf8(utf8, i));
    }
    return out;
}

}  // namespace cad::gs
