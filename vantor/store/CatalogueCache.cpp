#include "vantor/store/CatalogueCache.h"

#include <charconv>
#include <fstream>
#include <iterator>

#include "cad/sys/AtomicFile.h"
#include "cad/sys/CaretText.h"
#include "cad/sys/FileSystem.h"
#include "vantor/store/TreeCache.h"

namespace vantor {

namespace {

constexpr std::string_view kVersionLine = "VANTOR CATALOGUE 1";
constexpr std::string_view kCountWord = "COUNT ";

// The next line of `bytes` from `at`, without its line feed; nullopt at the end or when the
// last line has no line feed (a file cut short).
std::optional<std::string_view> nextLine(std::string_view bytes, std::size_t& at) {
    const std::size_t end = bytes.find('\n', at);
    if (end == std::string_view::npos) return std::nullopt;
    std::string_view line = bytes.substr(at, end - at);
    at = end + 1;
    return line;
}

template <typename Number>
bool parseNumber(std::string_view text, Number& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size();
}

std::optional<CatalogueEntry> parseEntry(std::string_view line) {
    CatalogueEntry entry;
    std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos || !parseNumber(line.substr(0, tab), entry.recordId))
        return std::nullopt;
    for (std::size_t i = 0; i < PartRecord::kTextCount; ++i) {
        if (tab == std::string_view::npos) return std::nullopt;
        const std::size_t from = tab + 1;
        tab = line.find('\t', from);
        entry.record.text(i) = cad::sys::fromCaretForm(line.substr(from, tab == std::string_view::npos
                                                             ? std::string_view::npos
                                                             : tab - from));
    }
    if (tab != std::string_view::npos) return std::nullopt;
    return entry;
}

}  // namespace

std::string CatalogueCache::pathFor(std::string_view drawingPath) {
    std::string path = TreeCache::pathFor(drawingPath);
    path.back() = 'c';  // ".vnf" -> ".vnc"
    return path;
}

bool CatalogueCache::isCurrent(const std::string& drawingPath) {
    const std::optional<std::int64_t> drawingTime = cad::sys::lastWriteTime(drawingPath);
    const std::optional<std::int64_t> cacheTime = cad::sys::lastWriteTime(pathFor(drawingPath));
    return drawingTime && cacheTime && *drawingTime <= *cacheTime;
}

bool CatalogueCache::write(const std::string& path, const std::vector<CatalogueEntry>& entries) {
    std::string bytes(kVersionLine);
    bytes += '\n';
    for (const CatalogueEntry& entry : entries) {
        bytes += std::to_string(entry.recordId);
        // A tab or a line feed inside a text is a control character, so its caret form keeps
        // the fields and lines apart.
        for (std::size_t i = 0; i < PartRecord::kTextCount; ++i) {
            bytes += '\t';
            bytes += cad::sys::toCaretForm(entry.record.text(i));
        }
        bytes += '\n';
    }
    bytes += kCountWord;
    bytes += std::to_string(entries.size());
    bytes += '\n';
    cad::sys::AtomicFile file;
    if (file.open(path) != cad::ErrorStatus::eOk) return false;
    file.write(bytes);
    return file.commit() == cad::ErrorStatus::eOk;
}

std::optional<std::vector<CatalogueEntry>> CatalogueCache::read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) return std::nullopt;
    return parse(bytes);
}

std::optional<std::vector<CatalogueEntry>> CatalogueCache::parse(std::string_view bytes) {
    std::size_t at = 0;
    if (nextLine(bytes, at) != kVersionLine) return std::nullopt;
    std::vector<CatalogueEntry> entries;
    while (std::optional<std::string_view> line = nextLine(bytes, at)) {
        if (line->starts_with(kCountWord)) {
            std::size_t count = 0;
            const bool whole = parseNumber(line->substr(kCountWord.size()), count) &&
                               count == entries.size() && at == bytes.size();
            return whole ? std::optional(std::move(entries)) : std::nullopt;
        }
        std::optional<CatalogueEntry> entry = parseEntry(*line);
        if (!entry) return std::nullopt;
        entries.push_back(std::move(*entry));
    }
    return std::nullopt;
}

}  // namespace vantor
