// Holding a DXF file's bytes and reading runs of its tags again.
#include "cad/db/dxf/DxfFile.h"

#include <algorithm>

#include "cad/db/dxf/TagReader.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/SharedFile.h"

namespace cad::db::dxf {
namespace {

// Pages are let go in steps of this size, so a pass over a large file keeps only a few
// megabytes of it mapped in, at the cost of one system call per step.
constexpr std::uint32_t kReleaseStep = 4u << 20;

// Whether the first line ends in a carriage return of its own, as old Macintosh writers end
// every line.
bool endsLinesWithBareCr(std::string_view bytes) {
    const std::size_t end = bytes.find_first_of("\r\n");
    return end != std::string_view::npos && bytes[end] == '\r' &&
           (end + 1 == bytes.size() || bytes[end + 1] != '\n');
}

}  // namespace

DxfFile::DxfFile() : arena_(std::make_unique<TextArena>()) {}
DxfFile::DxfFile(DxfFile&&) noexcept = default;
DxfFile& DxfFile::operator=(DxfFile&&) noexcept = default;
DxfFile::~DxfFile() = default;

DxfFile DxfFile::fromBytes(std::string bytes) {
    DxfFile file;
    file.owned_ = std::make_unique<std::string>(std::move(bytes));
    file.bytes_ = *file.owned_;
    file.check();
    return file;
}

DxfFile DxfFile::fromMapping(sys::MappedFile mapping) {
    DxfFile file;
    file.mapping_ = std::move(mapping);
    file.bytes_ = file.mapping_.bytes();
    file.check();
    return file;
}

DxfFile DxfFile::fromPath(const std::filesystem::path& path) {
    sys::SharedFile shared;
    sys::MappedFile mapping;
    if (shared.open(path.string(), sys::ShareMode::DenyNone) != ErrorStatus::eOk ||
        mapping.map(shared) != ErrorStatus::eOk) {
        DxfFile file;
        file.error_ = DxfError{0, "cannot read " + path.string()};
        return file;
    }
    return fromMapping(std::move(mapping));
}

void DxfFile::check() {
    error_ = TagReader::refusal(bytes_);
    binary_ = !error_ && TagReader::isBinaryDxf(bytes_);
    if (binary_) error_ = TagReader::read(bytes_, tags_, *arena_);
    if (!error_ && !binary_ && endsLinesWithBareCr(bytes_)) readWithLineFeeds();
}

// Other readers take lines ended by a bare CR, so we do too; the tag reader knows LF and
// CRLF only, so such a file is read from a copy with LF line ends.
void DxfFile::readWithLineFeeds() {
    auto copy = std::make_unique<std::string>(bytes_);
    std::replace(copy->begin(), copy->end(), '\r', '\n');
    mapping_ = sys::MappedFile();
    owned_ = std::move(copy);
    bytes_ = *owned_;
}

std::optional<TagSpan> DxfFile::heldTags() const {
    if (!binary_) return std::nullopt;
    return TagSpan(tags_);
}

bool DxfFile::hasUtf8Text() {
    if (binary_) return false;
    const auto continues = [this](std::size_t at) {
        return at < bytes_.size() && (static_cast<unsigned char>(bytes_[at]) & 0xC0) == 0x80;
    };
    bool beyondAscii = false;
    std::size_t from = 0;
    while (from < bytes_.size()) {
        // Chunks end where a character starts, so none is split between two.
        const std::size_t end = std::min<std::size_t>(bytes_.size(), from + kReleaseStep);
        std::size_t to = end;
        while (to > from && continues(to)) --to;
        if (to == from) to = end;  // no character starts here: the chunk is not UTF-8
        const std::string_view chunk = bytes_.substr(from, to - from);
        if (!sys::isUtf8(chunk)) return false;
        beyondAscii = beyondAscii || !sys::isAscii(chunk);
        mapping_.release(from, to);
        from = to;
    }
    return beyondAscii;
}

std::optional<TagSpan> DxfFile::tagsOf(const TagRun& run) {
    if (binary_) {
        if (run.start > tags_.size() || tags_.size() - run.start < run.count) return std::nullopt;
        return TagSpan(tags_).subspan(run.start, run.count);
    }
    reached(run.start);
    scratch_.resize(run.count);
    TextTagCursor cursor(bytes_, run.start, run.line);
    std::optional<DxfError> error;
    for (Tag& tag : scratch_) {
        if (!cursor.next(tag, error)) return std::nullopt;
    }
    if (scratch_.empty() || scratch_.front().code != 0) return std::nullopt;
    return TagSpan(scratch_);
}

void DxfFile::reached(std::uint32_t offset) {
    if (offset < keptFrom_) {
        // A new pass from further back: the last one is done with what it left mapped.
        mapping_.release(keptFrom_, furthest_);
        keptFrom_ = furthest_ = offset;
        return;
    }
    furthest_ = std::max(furthest_, offset);
    if (offset - keptFrom_ >= kReleaseStep) {
        mapping_.release(keptFrom_, offset);
        keptFrom_ = offset;
    }
}

}  // namespace cad::db::dxf
