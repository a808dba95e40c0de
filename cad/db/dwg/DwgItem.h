// One DXF structure as the DWG writer takes it: its type, its common part (handle, owner,
// reactors, extension dictionary) taken apart, and its other tags in order, with lookups by
// group code and a cursor for repeated groups.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cad/db/dxf/DxfStructure.h"
#include "cad/ge/Point3d.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {

std::uint64_t parseHandle(const std::string& text);

// One DXF structure, its common part taken apart.
struct DwgItem {
    std::string type;
    std::vector<std::pair<int, std::string>> tags;  // after the common part
    std::uint64_t handle = 0;
    std::uint64_t owner = 0;
    std::uint64_t xdictionary = 0;
    std::vector<std::uint64_t> reactors;
    std::vector<std::pair<int, std::string>> xdata;  // from the first 1001
    bool paper = false;

    const std::string* find(int code, int nth = 0) const {
        for (const auto& [c, v] : tags) {
            if (c == code && nth-- == 0) return &v;
        }
        return nullptr;
    }
    // The first tag of `code` after the marker `subclass`.
    const std::string* findIn(std::string_view subclass, int code) const {
        bool inside = false;
        for (const auto& [c, v] : tags) {
            if (c == 100) inside = v == subclass;
            if (inside && c == code) return &v;
        }
        return nullptr;
    }
    double realIn(std::string_view subclass, int code, double fallback = 0.0) const {
        const std::string* v = findIn(subclass, code);
        return v ? std::strtod(v->c_str(), nullptr) : fallback;
    }
    int integerIn(std::string_view subclass, int code, int fallback = 0) const {
        const std::string* v = findIn(subclass, code);
        return v ? static_cast<int>(std::strtol(v->c_str(), nullptr, 10)) : fallback;
    }
    std::string textIn(std::string_view subclass, int code) const {
        const std::string* v = findIn(subclass, code);
        return v ? sys::fromCaretForm(*v) : std::string();
    }
    ge::Point3d pointIn(std::string_view subclass, int code, const ge::Point3d& fallback = {}) const {
        return {realIn(subclass, code, fallback.x), realIn(subclass, code + 10, fallback.y),
                realIn(subclass, code + 20, fallback.z)};
    }
    std::string text(int code, std::string fallback = {}) const {
        const std::string* v = find(code);
        return v ? sys::fromCaretForm(*v) : fallback;
    }
    double real(int code, double fallback = 0.0) const {
        const std::string* v = find(code);
        return v ? std::strtod(v->c_str(), nullptr) : fallback;
    }
    int integer(int code, int fallback = 0) const {
        const std::string* v = find(code);
        return v ? static_cast<int>(std::strtol(v->c_str(), nullptr, 10)) : fallback;
    }
    std::uint64_t handleOf(int code) const {
        const std::string* v = find(code);
        return v ? parseHandle(*v) : 0;
    }
    ge::Point3d point(int code, const ge::Point3d& fallback = {}) const {
        return {real(code, fallback.x), real(code + 10, fallback.y), real(code + 20, fallback.z)};
    }
};

// Reads a structure's tags in order, as DXF lays out repeated groups (hatch paths, edges):
// each read takes the next tag when it has the code asked for, or gives the fallback.
class DwgItemCursor {
public:
    DwgItemCursor(const std::vector<std::pair<int, std::string>>& tags, std::size_t from)
        : tags_(tags), at_(from) {}
    bool next(int code) const { return at_ < tags_.size() && tags_[at_].first == code; }
    double real(int code, double fallback = 0.0) {
        return next(code) ? std::strtod(tags_[at_++].second.c_str(), nullptr) : fallback;
    }
    long integer(int code, long fallback = 0) {
        return next(code) ? std::strtol(tags_[at_++].second.c_str(), nullptr, 10) : fallback;
    }
    std::uint64_t handle(int code) {
        return next(code) ? parseHandle(tags_[at_++].second) : 0;
    }
    ge::Point3d point(int code, bool withZ = true) {
        const double x = real(code);
        const double y = real(code + 10);
        return {x, y, withZ ? real(code + 20) : 0.0};
    }
    // Moves on to the next tag of `code`, if there is one.
    void seek(int code) {
        while (at_ < tags_.size() && tags_[at_].first != code) ++at_;
    }

private:
    const std::vector<std::pair<int, std::string>>& tags_;
    std::size_t at_;
};

// The structure of a run of tags, from its code-0 tag on.
DwgItem itemFrom(dxf::TagSpan span);

}  // namespace cad::db::dwg
