// The command line's JSON writer.
#include "apps/vantor/JsonWriter.h"

#include <charconv>
#include <cmath>

namespace vantor::cli {

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

JsonWriter& JsonWriter::value(bool flag) {
    separate();
    out_ << (flag ? "true" : "false");
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

// Text is UTF-8 already and goes out as it is; only what JSON forbids in a string is escaped.
void JsonWriter::writeString(std::string_view text) {
    static constexpr char kHex[] = "0123456789abcdef";
    out_ << '"';
    for (char c : text) {
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
                if (static_cast<unsigned char>(c) < 0x20) {
                    out_ << "\\u00" << kHex[(c >> 4) & 0xF] << kHex[c & 0xF];
                } else {
                    out_ << c;
                }
        }
    }
    out_ << '"';
}

}  // namespace vantor::cli
