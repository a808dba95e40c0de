// The profile functions over a whole-file read and an atomic rewrite. The file is parsed
// afresh on every call: settings files are small, and another program may have changed it.
#include "cad/sys/PrivateProfile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

#include "cad/sys/AsciiCase.h"
#include "cad/sys/AtomicFile.h"
#include "cad/sys/CodePage.h"

namespace cad::sys {
namespace {

enum class FileRead { Ok, Missing, Failed };

FileRead readWholeFile(const std::string& path, std::string& bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return errno == ENOENT ? FileRead::Missing : FileRead::Failed;
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return in.bad() ? FileRead::Failed : FileRead::Ok;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool isCp949Lead(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x81 && byte <= 0xFE;
}

// CP949 trail bytes include the ASCII letters, so case folding must step over double-byte
// characters whole or two different Hangul syllables could compare equal.
bool sameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (isCp949Lead(a[i]) && i + 1 < a.size()) {
            if (a[i] != b[i] || a[i + 1] != b[i + 1]) return false;
            ++i;
        } else if (asciiUpper(a[i]) != asciiUpper(b[i])) {
            return false;
        }
    }
    return true;
}

// The longest start of `bytes` that fits in `maxBytes` without splitting a double-byte
// character.
std::string_view cutToFit(std::string_view bytes, std::size_t maxBytes) {
    if (bytes.size() <= maxBytes) return bytes;
    std::size_t end = 0;
    while (end < maxBytes) {
        const std::size_t length = isCp949Lead(bytes[end]) ? 2 : 1;
        if (end + length > maxBytes) break;
        end += length;
    }
    return bytes.substr(0, end);
}

std::string_view removeQuotes(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

struct Line {
    enum class Kind { Other, Section, Key };
    std::string text;  // CP949 bytes as on disk, without the line end
    Kind kind = Kind::Other;
    std::string_view name;   // into text: section or key name, trimmed
    std::string_view value;  // into text: the key's value, trimmed
};

// Made on the heap, where the views into its text stay valid: moving a short std::string
// moves its bytes.
std::unique_ptr<Line> parseLine(std::string text) {
    auto line = std::make_unique<Line>();
    line->text = std::move(text);
    const std::string_view content = trim(line->text);
    if (content.empty() || content.front() == ';') return line;
    if (content.front() == '[') {
        const std::size_t close = content.find(']');
        line->kind = Line::Kind::Section;
        line->name = trim(content.substr(1, close == std::string_view::npos ? close : close - 1));
        return line;
    }
    line->kind = Line::Kind::Key;
    const std::size_t equals = content.find('=');
    line->name = trim(content.substr(0, equals));
    if (equals != std::string_view::npos) line->value = trim(content.substr(equals + 1));
    return line;
}

// A profile file as lines, held by pointer so that a line never moves (see parseLine).
class ProfileLines {
public:
    explicit ProfileLines(std::string_view bytes) {
        while (!bytes.empty()) {
            const std::size_t end = bytes.find('\n');
            std::string_view text = bytes.substr(0, end);
            if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
            lines_.push_back(parseLine(std::string(text)));
            bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        }
    }

    // Index of the header of the first section named `name`, or npos.
    std::size_t findSection(std::string_view name) const {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            if (lines_[i]->kind == Line::Kind::Section && sameName(lines_[i]->name, name)) return i;
        }
        return npos;
    }

    // One past the last line of the section whose header is at `header`.
    std::size_t sectionEnd(std::size_t header) const {
        std::size_t i = header + 1;
        while (i < lines_.size() && lines_[i]->kind != Line::Kind::Section) ++i;
        return i;
    }

    std::size_t findKey(std::size_t header, std::string_view name) const {
        for (std::size_t i = header + 1; i < sectionEnd(header); ++i) {
            if (lines_[i]->kind == Line::Kind::Key && sameName(lines_[i]->name, name)) return i;
        }
        return npos;
    }

    const Line& operator[](std::size_t i) const { return *lines_[i]; }
    std::size_t size() const { return lines_.size(); }

    void replace(std::size_t i, std::string text) { lines_[i] = parseLine(std::move(text)); }
    void insert(std::size_t i, std::string text) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(i), parseLine(std::move(text)));
    }

    std::string bytes() const {
        std::string out;
        for (const auto& line : lines_) out += line->text + "\r\n";
        return out;
    }

    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

private:
    std::vector<std::unique_ptr<Line>> lines_;
};

std::string fittedDefault(std::string_view defaultValue, std::size_t bufferSize) {
    std::string_view value = defaultValue;
    while (!value.empty() && isBlank(value.back())) value.remove_suffix(1);
    if (bufferSize == 0) return {};
    const std::string disk = utf8ToCp949(value);
    if (disk.size() < bufferSize) return std::string(value);
    return cp949ToUtf8(cutToFit(disk, bufferSize - 1));
}

std::string keyNames(const ProfileLines& lines, std::size_t header, std::size_t bufferSize) {
    std::string names;
    for (std::size_t i = header + 1; i < lines.sectionEnd(header); ++i) {
        if (lines[i].kind == Line::Kind::Key && !lines[i].name.empty()) {
            names += lines[i].name;
            names += '\0';
        }
    }
    // The list ends in an extra '\0' in the caller's buffer; when that does not fit, the
    // system cuts the list so that two '\0' close it.
    if (names.size() + 1 > bufferSize) {
        names = cutToFit(names, bufferSize < 2 ? 0 : bufferSize - 2);
    }
    return cp949ToUtf8(names);
}

bool breaksLines(std::string_view text) {
    return text.find_first_of("\r\n") != text.npos;
}

}  // namespace

std::string getPrivateProfileString(std::string_view section, std::optional<std::string_view> key,
                                    std::string_view defaultValue, std::size_t bufferSize,
                                    const std::string& path) {
    std::string bytes;
    if (readWholeFile(path, bytes) != FileRead::Ok) return fittedDefault(defaultValue, bufferSize);
    const ProfileLines lines(bytes);
    const std::size_t header = lines.findSection(utf8ToCp949(trim(section)));
    if (header == ProfileLines::npos) return fittedDefault(defaultValue, bufferSize);
    if (!key) return keyNames(lines, header, bufferSize);
    const std::size_t keyLine = lines.findKey(header, utf8ToCp949(trim(*key)));
    if (keyLine == ProfileLines::npos) return fittedDefault(defaultValue, bufferSize);
    if (bufferSize == 0) return {};
    return cp949ToUtf8(cutToFit(removeQuotes(lines[keyLine].value), bufferSize - 1));
}

namespace {

// Sets one key in the lines; false, with nothing changed, when the text is not allowed.
bool setValue(ProfileLines& lines, std::string_view section, std::string_view key,
              std::string_view value) {
    section = trim(section);
    key = trim(key);
    if (section.empty() || key.empty()) return false;
    if (breaksLines(section) || breaksLines(key) || breaksLines(value)) return false;
    if (key.find('=') != key.npos || section.find(']') != section.npos) return false;

    const std::string diskSection = utf8ToCp949(section);
    const std::string diskKey = utf8ToCp949(key);
    const std::string diskValue = utf8ToCp949(value);

    const std::size_t header = lines.findSection(diskSection);
    if (header == ProfileLines::npos) {
        lines.insert(lines.size(), "[" + diskSection + "]");
        lines.insert(lines.size(), diskKey + "=" + diskValue);
    } else if (const std::size_t keyLine = lines.findKey(header, diskKey);
               keyLine != ProfileLines::npos) {
        // The key keeps the spelling the file has; only its value changes.
        lines.replace(keyLine, std::string(lines[keyLine].name) + "=" + diskValue);
    } else {
        std::size_t after = header + 1;
        for (std::size_t i = header + 1; i < lines.sectionEnd(header); ++i) {
            if (lines[i].kind == Line::Kind::Key) after = i + 1;
        }
        lines.insert(after, diskKey + "=" + diskValue);
    }
    return true;
}

}  // namespace

bool writePrivateProfileString(std::string_view section, std::string_view key,
                               std::string_view value, const std::string& path) {
    PrivateProfileBatch batch(path);
    return batch.set(section, key, value) && batch.commit();
}

class PrivateProfileBatch::Lines : public ProfileLines {
public:
    using ProfileLines::ProfileLines;
};

PrivateProfileBatch::PrivateProfileBatch(std::string path) : path_(std::move(path)) {
    if (lock_.acquire(path_) != ErrorStatus::eOk) return;
    std::string bytes;
    if (readWholeFile(path_, bytes) != FileRead::Failed) lines_ = std::make_unique<Lines>(bytes);
}

PrivateProfileBatch::~PrivateProfileBatch() = default;

bool PrivateProfileBatch::set(std::string_view section, std::string_view key,
                              std::string_view value) {
    return lines_ && setValue(*lines_, section, key, value);
}

bool PrivateProfileBatch::commit() {
    if (!lines_) return false;
    AtomicFile file;
    const bool written = file.open(path_) == ErrorStatus::eOk &&
                         file.write(lines_->bytes()) == ErrorStatus::eOk &&
                         file.commit() == ErrorStatus::eOk;
    lock_.release();
    return written;
}

}  // namespace cad::sys
