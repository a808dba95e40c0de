// Grouping tags into sections and structures. One pass over the tags; spans point into the
// caller's tag vector, so nothing is copied.
#include "cad/db/dxf/StructureLoader.h"

#include <string>

namespace cad::db::dxf {
namespace {

constexpr int kVariableCode = 9;

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

void readHeader(const Section& section, DxfStructure& into) {
    const TagSpan tags = section.tags;
    std::size_t start = tags.size();
    const auto finish = [&](std::size_t end) {
        if (start < end) {
            into.header.push_back(
                {trimBlanks(tags[start].value), tags.subspan(start + 1, end - start - 1)});
        }
    };
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (tags[i].code != kVariableCode) continue;
        finish(i);
        start = i;
    }
    finish(tags.size());

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

}  // namespace

std::optional<DxfError> StructureLoader::load(std::span<const Tag> tags, DxfStructure& into,
                                              TagPlace place) {
    std::size_t i = 0;
    std::uint32_t lastPlace = 1;
    while (i < tags.size()) {
        const Tag& start = tags[i];
        if (isMarker(start, "EOF")) return {};
        if (!isMarker(start, "SECTION")) {
            return dxfError(
                place, start.line,
                "expected 0 SECTION or 0 EOF, found " + describe(start) + " outside any section");
        }
        if (i + 1 == tags.size() || tags[i + 1].code != 2) {
            return dxfError(place, start.line,
                            "expected the section name (group code 2) after 0 SECTION");
        }
        Section section;
        section.name = trimBlanks(tags[i + 1].value);
        section.line = start.line;
        const std::size_t body = i + 2;
        std::size_t item = tags.size();
        std::size_t end = body;
        for (; end < tags.size(); ++end) {
            const Tag& tag = tags[end];
            if (tag.code != 0) continue;
            const std::string_view name = trimBlanks(tag.value);
            if (name == "ENDSEC") break;
            if (name == "SECTION" || name == "EOF") {
                return dxfError(place, section.line,
                                "section " + section.name +
                                    " has no end: expected 0 ENDSEC before " + describe(tag) +
                                    " at " + placeText(place, tag.line));
            }
            if (item < end) section.items.push_back(tags.subspan(item, end - item));
            item = end;
        }
        if (end == tags.size()) {
            return dxfError(place, section.line,
                            "section " + section.name +
                                " has no end: expected 0 ENDSEC before the end of the file");
        }
        if (item < end) section.items.push_back(tags.subspan(item, end - item));
        section.tags = tags.subspan(body, end - body);
        if (section.name == "HEADER") readHeader(section, into);
        into.sections.push_back(std::move(section));
        lastPlace = tags[end].line;
        i = end + 1;
    }
    if (into.sections.empty()) {
        return dxfError(place, lastPlace, "expected 0 SECTION or 0 EOF, found the end of the file");
    }
    return dxfError(place, lastPlace,
                    "expected 0 EOF after the last section, found the end of the file");
}

}  // namespace cad::db::dxf
