// Grouping tags into sections and structures, in one pass that holds only the structure being
// read: each becomes a run (where it starts, how many tags, its handle), and only the HEADER's
// tags are kept.
#include "cad/db/dxf/StructureLoader.h"

#include <string>
#include <utility>

#include "cad/db/dxf/ReadingFiler.h"
#include "cad/db/dxf/TagReader.h"

namespace cad::db::dxf {
namespace {

constexpr int kVariableCode = 9;
constexpr int kMarkerCode = 100;
constexpr int kFirstXdataCode = 1001;

std::string describe(const Tag& tag) {
    std::string_view value = trimBlanks(tag.value);
    constexpr std::size_t kMaxShown = 40;
    std::string shown = std::to_string(tag.code) + " '" + std::string(value.substr(0, kMaxShown));
    if (value.size() > kMaxShown) shown += "...";
    return shown + "'";
}

bool isMarker(const Tag& tag, std::string_view name) {
    return tag.code == 0 && trimBlanks(tag.value) == name;
}

// The first value of `code` in a header variable, if it has a non-empty one.
std::string_view firstValue(const HeaderVariable& variable, int code) {
    for (const Tag& tag : variable.tags) {
        if (tag.code == code) return trimBlanks(tag.value);
    }
    return {};
}

// The variables of the header tags [begin, end).
void readHeader(DxfStructure& into, std::size_t begin, std::size_t end) {
    const TagSpan tags = TagSpan(into.headerTags).subspan(begin, end - begin);
    std::size_t start = tags.size();
    const auto finish = [&](std::size_t last) {
        if (start < last) {
            into.header.push_back(
                {trimBlanks(tags[start].value), tags.subspan(start + 1, last - start - 1)});
        }
    };
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code != kVariableCode) continue;
        finish(i);
        start = i;
    }
    finish(tags.size());
}

void readVersionAndCodePage(DxfStructure& into) {
    // A file may name a variable twice; the first wins, as in variable().
    if (const HeaderVariable* version = into.variable("$ACADVER")) {
        if (const auto value = firstValue(*version, 1); !value.empty()) into.acadVersion = value;
    }
    if (const HeaderVariable* codePage = into.variable("$DWGCODEPAGE")) {
        if (const auto value = firstValue(*codePage, 3); !value.empty()) {
            into.codePageName = value;
        }
    }
}

// Walks tags held in memory; a tag's place is its index.
class HeldTagCursor {
public:
    explicit HeldTagCursor(TagSpan tags) : tags_(tags) {}
    bool next(Tag& tag, std::optional<DxfError>&) {
        if (next_ == tags_.size()) return false;
        tag = tags_[next_++];
        return true;
    }
    std::uint32_t offset() const { return static_cast<std::uint32_t>(next_); }
    std::uint32_t line() const { return next_ < tags_.size() ? tags_[next_].line : 0; }

private:
    TagSpan tags_;
    std::size_t next_ = 0;
};

// Walks a text file's bytes, letting the file drop what lies behind.
class FileTagCursor {
public:
    explicit FileTagCursor(DxfFile& file) : file_(file), cursor_(file.bytes()) {}
    bool next(Tag& tag, std::optional<DxfError>& error) {
        if ((++read_ & kReportEvery) == 0) file_.reached(cursor_.offset());
        return cursor_.next(tag, error);
    }
    std::uint32_t offset() const { return cursor_.offset(); }
    std::uint32_t line() const { return cursor_.line(); }

private:
    static constexpr std::uint32_t kReportEvery = 0xFFFF;
    DxfFile& file_;
    TextTagCursor cursor_;
    std::uint32_t read_ = 0;
};

template <class Cursor>
class Loader {
public:
    Loader(Cursor& cursor, DxfStructure& into, TagPlace place)
        : cursor_(cursor), into_(into), place_(place) {}

    std::optional<DxfError> load() {
        Tag start;
        std::uint32_t lastPlace = 1;
        while (next(start)) {
            if (isMarker(start, "EOF")) return finish();
            if (!isMarker(start, "SECTION")) {
                return dxfError(place_, start.line,
                                "expected 0 SECTION or 0 EOF, found " + describe(start) +
                                    " outside any section");
            }
            Tag name;
            if (!next(name) || name.code != 2) {
                if (error_) return error_;
                return dxfError(place_, start.line,
                                "expected the section name (group code 2) after 0 SECTION");
            }
            Section section;
            section.name = trimBlanks(name.value);
            section.line = start.line;
            if (!readBody(section, lastPlace)) return error_;
            into_.sections.push_back(std::move(section));
        }
        if (error_) return error_;
        if (into_.sections.empty()) {
            return dxfError(place_, lastPlace,
                            "expected 0 SECTION or 0 EOF, found the end of the file");
        }
        return dxfError(place_, lastPlace,
                        "expected 0 EOF after the last section, found the end of the file");
    }

private:
    bool next(Tag& tag) { return cursor_.next(tag, error_); }

    // The section's items up to its ENDSEC, whose place goes to `endPlace`.
    bool readBody(Section& section, std::uint32_t& endPlace) {
        const bool header = section.name == "HEADER";
        const std::size_t headerBegin = into_.headerTags.size();
        TagRun run;
        bool inItem = false;
        bool seekingHandle = false;
        std::uint32_t start = cursor_.offset();
        std::uint32_t line = cursor_.line();
        Tag tag;
        while (next(tag)) {
            if (tag.code == 0) {
                const std::string_view type = trimBlanks(tag.value);
                if (type == "SECTION" || type == "EOF") {
                    error_ = dxfError(place_, section.line,
                                      "section " + section.name +
                                          " has no end: expected 0 ENDSEC before " + describe(tag) +
                                          " at " + placeText(place_, tag.line));
                    return false;
                }
                if (inItem) endItem(section, run);
                if (type == "ENDSEC") {
                    if (header) headerRanges_.emplace_back(headerBegin, into_.headerTags.size());
                    endPlace = tag.line;
                    return true;
                }
                inItem = true;
                seekingHandle = true;
                run = TagRun{start, line, 0, {}};
            }
            if (inItem) {
                ++run.count;
                // The handle stands in the common part, which ends at the first subclass
                // marker or extended data: the tags after that cannot change it.
                if (seekingHandle) {
                    itemTags_.push_back(tag);
                    seekingHandle = tag.code != kMarkerCode && tag.code != kFirstXdataCode;
                }
            }
            if (header) into_.headerTags.push_back(tag);
            start = cursor_.offset();
            line = cursor_.line();
        }
        if (!error_) {
            error_ = dxfError(place_, section.line,
                              "section " + section.name +
                                  " has no end: expected 0 ENDSEC before the end of the file");
        }
        return false;
    }

    void endItem(Section& section, TagRun& run) {
        run.handle = ReadingFiler::handleOf(itemTags_);
        itemTags_.clear();
        section.items.push_back(run);
    }

    // The header's variables are taken once every HEADER section is read, since they view
    // into a vector that grows until then.
    std::optional<DxfError> finish() {
        for (const auto& [begin, end] : headerRanges_) readHeader(into_, begin, end);
        readVersionAndCodePage(into_);
        return {};
    }

    Cursor& cursor_;
    DxfStructure& into_;
    TagPlace place_;
    std::optional<DxfError> error_;
    std::vector<Tag> itemTags_;  // the item being read, for its handle
    std::vector<std::pair<std::size_t, std::size_t>> headerRanges_;
};

template <class Cursor>
std::optional<DxfError> loadWith(Cursor& cursor, DxfStructure& into, TagPlace place) {
    return Loader<Cursor>(cursor, into, place).load();
}

}  // namespace

std::optional<DxfError> StructureLoader::load(DxfFile& file, DxfStructure& into) {
    if (const auto held = file.heldTags()) {
        HeldTagCursor cursor(*held);
        return loadWith(cursor, into, file.place());
    }
    FileTagCursor cursor(file);
    return loadWith(cursor, into, file.place());
}

std::optional<DxfError> StructureLoader::load(std::span<const Tag> tags, DxfStructure& into,
                                              TagPlace place) {
    HeldTagCursor cursor(tags);
    return loadWith(cursor, into, place);
}

}  // namespace cad::db::dxf
