// The JSON writer. Strings are checked as UTF-8 on the way out: a byte that does not start or
// continue a valid sequence (text a drawing gave in a code page that did not convert) becomes
// U+FFFD, so the output always parses.
#include "apps/common/JsonWriter.h"

#include <charconv>
#include <cmath>

namespace apps {
namespace {

// The length of the valid UTF-8 sequence at the start of `text`, or 0 when there is none
// (overlong forms, surrogates and values past U+10FFFF are not valid).
std::size_t utf8SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 0;
    unsigned char min = 0x80;
    unsigned char max = 0xBF;  // the range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) min = 0xA0;
        if (lead == 0xED) max = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) min = 0x90;
        if (lead == 0xF4) max = 0x8F;
    } else {
        return 0;
    }
    if (text.size() < length || byte(1) < min || byte(1) > max) return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return length;
}

}  // namespace

void JsonWriter::separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (first_.empty()) return;
    if (!first_.back()) out_ << ',';
    first_.back() = false;
}

JsonWriter& JsonWriter::beginObject() {
    separate();
    out_ << '{';
    first_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    out_ << '}';
    first_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    separate();
    out_ << '[';
    first_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    out_ << ']';
    first_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    separate();
    writeString(name);
    out_ << ':';
    afterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view text) {
    separate();
    writeString(text);
    return *this;
}

JsonWriter& JsonWriter::value(std::int64_t number) {
    separate();
    out_ << number;
    return *this;
}

JsonWriter& JsonWriter::value(double number) {
    separate();
    if (!std::isfinite(number)) {
        out_ << "null";
        return *this;
    }
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, number).ptr;
    out_ << std::string_view(text, static_cast<std::size_t>(end - text));
    return *this;
}

JsonWriter& JsonWriter::value(bool flag) {
    separate();
    out_ << (flag ? "true" : "false");
    return *this;
}

void JsonWriter::writeString(std::string_view text) {
    static constexpr char kHex[] = "0123456789abcdef";
    out_ << '"';
    std::size_t i = 0;
    while (i < text.size()) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const std::size_t length = utf8SequenceLength(text.substr(i));
            if (length == 0) {
                out_ << "\xEF\xBF\xBD";
                ++i;
            } else {
                out_ << text.substr(i, length);
                i += length;
            }
            continue;
        }
        switch (c) {
            case '"':
                out_ << "\\\"";
                break;
            case '\\':
                out_ << "\\\\";
                break;
            case '\n':
                out_ << "\\n";
                break;
            case '\r':
                out_ << "\\r";
                break;
            case '\t':
                out_ << "\\t";
                break;
            default:
                if (c < 0x20) {
                    out_ << "\\u00" << kHex[c >> 4] << kHex[c & 0xF];
                } else {
                    out_ << static_cast<char>(c);
                }
        }
        ++i;
    }
    out_ << '"';
}

}  // namespace apps
