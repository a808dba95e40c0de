// MTEXT inline codes: one pass over the contents with a stack of formats for { } groups.
#include "cad/gs/text/MTextParser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "cad/gs/text/TextCodes.h"

namespace cad::gs {

namespace {

// How deep { } groups nest before further openings are taken as plain braces; a damaged text
// of a million '{' must not grow a million formats.
constexpr std::size_t kMaxGroupDepth = 64;

class Parser {
public:
    Parser(std::string_view text, const MTextFormat& initial, std::size_t limit)
        : text_(text), format_(initial), limit_(limit) {
        content_.paragraphs.emplace_back();
    }

    MTextContent run() {
        while (i_ < text_.size()) {
            if (content_.characters >= limit_) {
                content_.truncated = true;
                break;
            }
            const char c = text_[i_];
            if (c == '\\') {
                code();
            } else if (c == '{') {
                ++i_;
                if (groups_.size() < kMaxGroupDepth) groups_.push_back(format_);
            } else if (c == '}') {
                ++i_;
                if (!groups_.empty()) {
                    format_ = groups_.back();
                    groups_.pop_back();
                    formatChanged_ = true;
                }
            } else if (c == '^' && i_ + 1 < text_.size()) {
                caret();
            } else if (c == '%' && percentCode()) {
            } else {
                emit(nextUtf8(text_, i_));
            }
        }
        return std::move(content_);
    }

private:
    MTextParagraph& paragraph() { return content_.paragraphs.back(); }

    void newParagraph(bool columnBreak) {
        content_.paragraphs.emplace_back();
        paragraph().align = align_;
        paragraph().columnBreak = columnBreak;
    }

    void emit(char32_t c) {
        std::vector<MTextRun>& runs = paragraph().runs;
        if (runs.empty() || runs.back().kind != MTextRun::Kind::Text ||
            (formatChanged_ && !(runs.back().format == format_))) {
            runs.push_back({MTextRun::Kind::Text, format_, {}, {}, '/'});
        }
        formatChanged_ = false;
        runs.back().text.push_back(c);
        ++content_.characters;
    }

    void emitTab() {
        paragraph().runs.push_back({MTextRun::Kind::Tab, format_, {}, {}, '/'});
        ++content_.characters;
    }

    // ^I tab, ^J line break, ^M ignored, "^ " a caret; any other caret is itself.
    void caret() {
        const char next = text_[i_ + 1];
        switch (next) {
            case 'I': i_ += 2; emitTab(); return;
            case 'J': i_ += 2; newParagraph(false); return;
            case 'M': i_ += 2; return;
            case ' ': i_ += 2; emit(U'^'); return;
            default: ++i_; emit(U'^'); return;
        }
    }

    // %%c %%d %%p %%%, which MTEXT honours as single-line text does.
    bool percentCode() {
        if (i_ + 2 >= text_.size() || text_[i_ + 1] != '%') return false;
        char32_t c = 0;
        switch (text_[i_ + 2]) {
            case 'c': case 'C': c = U'\u2300'; break;
            case 'd': case 'D': c = U'\u00B0'; break;
            case 'p': case 'P': c = U'\u00B1'; break;
            case '%': c = U'%'; break;
            default: return false;
        }
        i_ += 3;
        emit(c);
        return true;
    }

    void code() {
        if (i_ + 1 >= text_.size()) {
            ++i_;
            return;
        }
        if (std::size_t at = i_; char32_t escaped = escapeAt(text_, at)) {
            i_ = at;
            emit(escaped);
            return;
        }
        const char code = text_[i_ + 1];
        i_ += 2;
        switch (code) {
            case 'P': newParagraph(false); return;
            case 'N': newParagraph(true); return;
            case 'X': newParagraph(false); return;
            case '~': emit(U'\u00A0'); return;
            case '\\': case '{': case '}': emit(static_cast<char32_t>(code)); return;
            case 'L': set(format_.underline, true); return;
            case 'l': set(format_.underline, false); return;
            case 'O': set(format_.overline, true); return;
            case 'o': set(format_.overline, false); return;
            case 'K': set(format_.strike, true); return;
            case 'k': set(format_.strike, false); return;
            case 'f': case 'F': font(); return;
            case 'H': scaled(format_.height); return;
            case 'W': scaled(format_.widthFactor); return;
            case 'T': scaled(format_.tracking); return;
            case 'Q': oblique(); return;
            case 'C': colorIndex(); return;
            case 'c': trueColor(); return;
            case 'A': lineAlign(); return;
            case 'p': paragraphCodes(); return;
            case 'S': stack(); return;
            default: return;  // unknown: the code letter is dropped, what follows is text
        }
    }

    template <class T>
    void set(T& field, T value) {
        if (field == value) return;
        field = value;
        formatChanged_ = true;
    }

    // The value of a code that runs to the next ';' (or the end of the text).
    std::string_view valueToSemicolon() {
        std::size_t end = text_.find(';', i_);
        if (end == std::string_view::npos) end = text_.size();
        const std::string_view value = text_.substr(i_, end - i_);
        i_ = end < text_.size() ? end + 1 : end;
        return value;
    }

    // A number at the current position, then an optional 'x' (relative) and ';'.
    bool number(double& value, bool& relative) {
        const char* begin = text_.data() + i_;
        const char* end = text_.data() + text_.size();
        if (begin != end && *begin == '+') ++begin;
        const auto [ptr, ec] = std::from_chars(begin, end, value);
        if (ec != std::errc() || !std::isfinite(value)) {
            valueToSemicolon();
            return false;
        }
        i_ = static_cast<std::size_t>(ptr - text_.data());
        relative = i_ < text_.size() && (text_[i_] == 'x' || text_[i_] == 'X');
        if (relative) ++i_;
        if (i_ < text_.size() && text_[i_] == ';') ++i_;
        return true;
    }

    // \H, \W, \T: an absolute value, or with 'x' a factor on the one in force.
    void scaled(double& field) {
        double value = 0.0;
        bool relative = false;
        if (!number(value, relative) || !(value > 0.0)) return;
        const double result = relative ? field * value : value;
        if (std::isfinite(result) && result > 0.0) set(field, result);
    }

    void oblique() {
        double degrees = 0.0;
        bool relative = false;
        if (!number(degrees, relative)) return;
        // Beyond ±85° a glyph is sheared into a line; drawing programs refuse such angles.
        degrees = std::fmod(degrees, 360.0);
        if (degrees > 180.0) degrees -= 360.0;
        if (degrees < -180.0) degrees += 360.0;
        if (std::abs(degrees) > 85.0) return;
        set(format_.oblique, degrees * std::numbers::pi / 180.0);
        set(format_.obliqueSet, true);
    }

    void colorIndex() {
        double value = 0.0;
        bool relative = false;
        if (!number(value, relative)) return;
        if (value < 0.0 || value > 256.0) return;
        set(format_.colorIndex, std::optional<int>(static_cast<int>(value)));
        set(format_.trueColor, std::optional<std::int32_t>());
    }

    // \c holds the colour with red in the low byte.
    void trueColor() {
        double value = 0.0;
        bool relative = false;
        if (!number(value, relative) || value < 0.0 || value > 0xFFFFFFFF) return;
        const auto bgr = static_cast<std::uint32_t>(value) & 0xFFFFFF;
        const std::int32_t rgb = static_cast<std::int32_t>(((bgr & 0xFF) << 16) | (bgr & 0xFF00) |
                                                           ((bgr >> 16) & 0xFF));
        set(format_.trueColor, std::optional<std::int32_t>(rgb));
        set(format_.colorIndex, std::optional<int>());
    }

    void lineAlign() {
        double value = 0.0;
        bool relative = false;
        if (!number(value, relative)) return;
        if (value >= 0.0 && value <= 2.0) set(format_.lineAlign, static_cast<std::uint8_t>(value));
    }

    // \fArial|b1|i0|c0|p34;  \FROMANS.SHX|c0;
    void font() {
        const std::string_view value = valueToSemicolon();
        const std::size_t bar = value.find('|');
        std::string_view name = value.substr(0, bar);
        while (!name.empty() && name.front() == ' ') name.remove_prefix(1);
        while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
        set(format_.font, std::string(name));
        bool bold = false, italic = false;
        for (std::size_t at = bar; at != std::string_view::npos;) {
            const std::size_t next = value.find('|', at + 1);
            const std::string_view option = value.substr(at + 1, next - std::min(next, at + 1));
            if (option.size() >= 2 && option[0] == 'b') bold = option[1] == '1';
            if (option.size() >= 2 && option[0] == 'i') italic = option[1] == '1';
            at = next;
        }
        set(format_.bold, bold);
        set(format_.italic, italic);
    }

    // \pxqc;  \pi-1,l1,t2;  Only the alignment is drawn; indents and tabs are not.
    void paragraphCodes() {
        std::string_view value = valueToSemicolon();
        if (!value.empty() && value.front() == 'x') value.remove_prefix(1);
        while (!value.empty()) {
            const std::size_t comma = value.find(',');
            const std::string_view item = value.substr(0, comma);
            if (item.size() >= 2 && item[0] == 'q') {
                switch (item[1]) {
                    case 'l': align_ = MTextParagraphAlign::Left; break;
                    case 'c': align_ = MTextParagraphAlign::Center; break;
                    case 'r': align_ = MTextParagraphAlign::Right; break;
                    case 'j': align_ = MTextParagraphAlign::Justified; break;
                    case 'd': align_ = MTextParagraphAlign::Distributed; break;
                    default: break;
                }
                paragraph().align = align_;
            }
            if (comma == std::string_view::npos) break;
            value.remove_prefix(comma + 1);
        }
    }

    // \Supper/lower;  \Supper#lower;  \Supper^lower;  with \; \/ \# \^ escaping.
    void stack() {
        MTextRun run{MTextRun::Kind::Stack, format_, {}, {}, '/'};
        bool lower = false;
        std::u32string* side = &run.text;
        while (i_ < text_.size() && text_[i_] != ';') {
            if (content_.characters + run.text.size() + run.lower.size() >= limit_) {
                content_.truncated = true;
                i_ = text_.size();
                break;
            }
            const char c = text_[i_];
            if (c == '\\' && i_ + 1 < text_.size()) {
                std::size_t at = i_;
                if (const char32_t escaped = escapeAt(text_, at)) {
                    i_ = at;
                    side->push_back(escaped);
                } else {
                    side->push_back(static_cast<unsigned char>(text_[i_ + 1]));
                    i_ += 2;
                }
                continue;
            }
            if (!lower && (c == '/' || c == '#' || c == '^')) {
                run.stackKind = c;
                lower = true;
                side = &run.lower;
                ++i_;
                // "^ " keeps the caret from reading as a control code; the blank is not text.
                if (c == '^' && i_ < text_.size() && text_[i_] == ' ') ++i_;
                continue;
            }
            side->push_back(nextUtf8(text_, i_));
        }
        if (i_ < text_.size()) ++i_;
        content_.characters += run.text.size() + run.lower.size();
        paragraph().runs.push_back(std::move(run));
        formatChanged_ = true;  // the next text starts a run of its own
    }

    std::string_view text_;
    std::size_t i_ = 0;
    MTextFormat format_;
    std::vector<MTextFormat> groups_;
    MTextParagraphAlign align_ = MTextParagraphAlign::Attachment;
    bool formatChanged_ = true;
    std::size_t limit_;
    MTextContent content_;
};

}  // namespace

MTextContent parseMText(std::string_view contents, const MTextFormat& initial, std::size_t limit) {
    return Parser(contents, initial, limit).run();
}

}  // namespace cad::gs
