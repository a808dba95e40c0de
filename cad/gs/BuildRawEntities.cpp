// The entity types the database keeps as tags, read from those tags for drawing only:
// dimensions and tables (their stored blocks), leaders, multilines, meshes, xlines and rays, 3D faces,
// traces, wipeouts and image frames. A tag that is missing or damaged leaves the entity undrawn, never a guess.
#include <cmath>
#include <numbers>
#include <cstdlib>
#include <optional>

#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/RawEntity.h"
#include "cad/db/SymbolTable.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DisplayListBuilder.h"

namespace cad::gs {

namespace {

// The values of one entity's tags by group code.
class TagValues {
public:
    explicit TagValues(const std::vector<db::RawTag>& tags) : tags_(tags) {}

    std::optional<double> number(int code, std::size_t occurrence = 0) const {
        for (const db::RawTag& tag : tags_) {
            if (tag.code != code) continue;
            if (occurrence-- > 0) continue;
            char* end = nullptr;
            const double value = std::strtod(tag.value.c_str(), &end);
            if (end == tag.value.c_str() || !std::isfinite(value)) return std::nullopt;
            return value;
        }
        return std::nullopt;
    }
    std::optional<ge::Point3d> point(int code, std::size_t occurrence = 0) const {
        auto x = number(code, occurrence), y = number(code + 10, occurrence);
        if (!x || !y) return std::nullopt;
        return ge::Point3d(*x, *y, number(code + 20, occurrence).value_or(0.0));
    }
    const std::string* text(int code) const {
        for (const db::RawTag& tag : tags_)
            if (tag.code == code) return &tag.value;
        return nullptr;
    }
    std::size_t count(int code) const {
        std::size_t n = 0;
        for (const db::RawTag& tag : tags_) n += tag.code == code;
        return n;
    }

private:
    const std::vector<db::RawTag>& tags_;
};

ge::Point2d xy(const ge::Point3d& p) { return {p.x, p.y}; }

double headerNumber(const db::Database& database, const char* name, double fallback) {
    auto text = database.header().text(name);
    if (!text) return fallback;
    char* end = nullptr;
    const double value = std::strtod(text->c_str(), &end);
    return end != text->c_str() && std::isfinite(value) ? value : fallback;
}

}  // namespace

void DisplayListBuilder::addRawEntity(const db::RawEntity& entity, std::uint32_t look,
                                      db::ObjectId owner) {
    const TagValues tags(entity.tags());
    const std::string_view type = entity.dxfName();
    if (type == "DIMENSION" || type == "ARC_DIMENSION" || type == "LARGE_RADIAL_DIMENSION" ||
        type == "ACAD_TABLE") {
        // What a dimension or a table shows is its block, made by the program that drew it: a
        // dimension's in world coordinates, a table's placed at its insertion point.
        const std::string* name = tags.text(2);
        db::Database* database = entity.database();
        if (name == nullptr || database == nullptr) return;
        db::ObjectPtr<db::SymbolTable> blocks(database->blockTableId(), db::OpenMode::ForRead);
        db::ObjectId block;
        if (!blocks || blocks->getAt(*name, block) != ErrorStatus::eOk) return;
        blocks.close();
        InsertRef insert;
        insert.block = block;
        if (type == "ACAD_TABLE")
            if (auto at = tags.point(10)) insert.transform = Affine2d::translation(at->x, at->y);
        addInsert(insert, look, owner);
    } else if (type == "VIEWPORT") {
        addViewport(entity.tags(), look, owner);
    } else if (type == "MLINE") {
        addMultiline(entity.tags(), look, owner);
    } else if (type == "MESH") {
        addSubdivisionMesh(entity.tags(), look, owner);
    } else if (type == "XLINE" || type == "RAY") {
        auto base = tags.point(10), direction = tags.point(11);
        if (!base || !direction || std::hypot(direction->x, direction->y) == 0.0) return;
        list_.addInfiniteLine(owner, look, {xy(*base), {direction->x, direction->y}, type == "RAY"});
    } else if (type == "3DFACE") {
        std::vector<ge::Point2d> corners;
        for (int code : {10, 11, 12, 13})
            if (auto p = tags.point(code)) corners.push_back(xy(*p));
        if (corners.size() != 4) return;
        // Flag bits 1, 2, 4 and 8 hide the edges that start at corners 1 to 4.
        const int hidden = static_cast<int>(tags.number(70).value_or(0.0));
        scratch_.clear();
        for (int edge = 0; edge < 4; ++edge) {
            if (hidden & (1 << edge)) continue;
            scratch_.push_back(corners[static_cast<std::size_t>(edge)]);
            scratch_.push_back(corners[static_cast<std::size_t>((edge + 1) % 4)]);
        }
        if (!scratch_.empty()) list_.addSegments(owner, look, scratch_.data(), scratch_.size());
    } else if (type == "TRACE") {
        std::vector<ge::Point3d> corners;
        const ge::Vector3d normal(tags.number(210).value_or(0.0), tags.number(220).value_or(0.0),
                                  tags.number(230).value_or(1.0));
        const ge::Matrix3d toWorld = ge::Matrix3d::planeToWorld(normal);
        for (int code : {10, 11, 12, 13})
            if (auto p = tags.point(code)) corners.push_back(toWorld * *p);
        if (corners.size() == 4) addSolid(corners, look, owner);
    } else if (type == "LEADER") {
        std::vector<ge::Point3d> vertices;
        for (std::size_t i = 0, n = tags.count(10); i < n; ++i)
            if (auto p = tags.point(10, i)) vertices.push_back(*p);
        if (vertices.size() < 2) return;
        addPoints3d(vertices, false, look, owner);
        if (tags.number(71).value_or(1.0) == 0.0 || entity.database() == nullptr) return;
        // A closed filled arrow at the first vertex, the size the drawing's dimensions use.
        const double size = headerNumber(*entity.database(), "$DIMASZ", 0.18) *
                            std::max(headerNumber(*entity.database(), "$DIMSCALE", 1.0), 1e-9);
        const ge::Point2d tip = xy(vertices[0]), next = xy(vertices[1]);
        const double dx = next.x - tip.x, dy = next.y - tip.y, length = std::hypot(dx, dy);
        if (!(length > 0.0) || !(size > 0.0) || !std::isfinite(size)) return;
        const double ux = dx / length, uy = dy / length;
        const ge::Point2d back{tip.x + ux * size, tip.y + uy * size};
        list_.addFill(owner, look,
                      {{tip, {back.x - uy * size / 6, back.y + ux * size / 6},
                        {back.x + uy * size / 6, back.y - ux * size / 6}}},
                      false);
    } else if (type == "WIPEOUT" || type == "IMAGE") {
        auto insertion = tags.point(10), u = tags.point(11), v = tags.point(12);
        if (!insertion || !u || !v) return;
        const double height = tags.number(23).value_or(1.0);
        const double width = tags.number(13).value_or(1.0);
        // Clip vertices count pixels from the image's top left corner, at pixel centres.
        auto place = [&](double px, double py) {
            return ge::Point2d{insertion->x + u->x * (px + 0.5) + v->x * (height - py - 0.5),
                               insertion->y + u->y * (px + 0.5) + v->y * (height - py - 0.5)};
        };
        std::vector<ge::Point2d> clip;
        for (std::size_t i = 0, n = tags.count(14); i < n; ++i)
            if (auto p = tags.point(14, i)) clip.push_back({p->x, p->y});
        std::vector<ge::Point2d> ring;
        if (clip.size() == 2) {
            ring = {place(clip[0].x, clip[0].y), place(clip[1].x, clip[0].y),
                    place(clip[1].x, clip[1].y), place(clip[0].x, clip[1].y)};
        } else if (clip.size() > 2) {
            for (const ge::Point2d& p : clip) ring.push_back(place(p.x, p.y));
        } else {
            ring = {place(-0.5, -0.5), place(width - 0.5, -0.5), place(width - 0.5, height - 0.5),
                    place(-0.5, height - 0.5)};
        }
        if (type == "WIPEOUT")
            list_.addBackground(owner, look, {ring});
        else
            list_.addPolyline(owner, look, ring.data(), ring.size(), true);
    }
}

void DisplayListBuilder::addViewport(const std::vector<db::RawTag>& raw, std::uint32_t look, db::ObjectId owner) {
    const TagValues tags(raw);
    // Viewport 1 is the paper itself, and a viewport that is off (status 0 or less) shows
    // nothing, not even its border.
    const auto id = tags.number(69), status = tags.number(68);
    auto centre = tags.point(10);
    const auto width = tags.number(40), height = tags.number(41), viewHeight = tags.number(45);
    if (!centre || !width || !height || !viewHeight || id.value_or(0.0) == 1.0 || status.value_or(1.0) <= 0.0) return;
    if (!(*width > 0.0 && *height > 0.0 && *viewHeight > 0.0)) return;
    const Box2d paper{centre->x - *width / 2, centre->y - *height / 2, centre->x + *width / 2, centre->y + *height / 2};
    const ge::Point2d corners[4] = {{paper.minX, paper.minY}, {paper.maxX, paper.minY}, {paper.maxX, paper.maxY},
                                    {paper.minX, paper.maxY}};
    list_.addPolyline(owner, look, corners, 4, true);
    // The view's centre is kept relative to its target; seen from above, both add up to the
    // model point at the middle of the viewport. The view turns by its twist.
    const ge::Point3d viewCentre = tags.point(12).value_or(ge::Point3d{});
    const ge::Point3d target = tags.point(17).value_or(ge::Point3d{});
    const double scale = *height / *viewHeight;
    const double twist = tags.number(51).value_or(0.0) * std::numbers::pi / 180.0;
    const double c = std::cos(twist) * scale, s = std::sin(twist) * scale;
    const double mx = target.x + viewCentre.x, my = target.y + viewCentre.y;
    ViewportRef viewport;
    viewport.paper = paper;
    viewport.modelToPaper = {c, s, -s, c, centre->x - (c * mx - s * my), centre->y - (s * mx + c * my)};
    if (std::isfinite(viewport.modelToPaper.e + viewport.modelToPaper.f + c + s))
        list_.addViewport(owner, look, viewport);
}

void DisplayListBuilder::addSubdivisionMesh(const std::vector<db::RawTag>& tags, std::uint32_t look,
                                            db::ObjectId owner) {
    // The vertices (10, after their count 92), then the face list (93: how many 90 values
    // follow): per face its corner count, then that many vertex indices from 0. Drawn as the
    // edges of its faces, unsmoothed.
    std::vector<ge::Point2d> vertices;
    std::vector<long> faceList;
    bool inFaces = false;
    for (const db::RawTag& tag : tags) {
        char* end = nullptr;
        const double value = std::strtod(tag.value.c_str(), &end);
        if (end == tag.value.c_str() || !std::isfinite(value)) continue;
        if (tag.code == 93) inFaces = true;
        else if (tag.code == 94 || tag.code == 95) inFaces = false;  // edges, creases follow
        else if (tag.code == 10 && !inFaces) vertices.push_back({value, 0.0});
        else if (tag.code == 20 && !inFaces && !vertices.empty()) vertices.back().y = value;
        else if (tag.code == 90 && inFaces) faceList.push_back(static_cast<long>(value));
    }
    scratch_.clear();
    for (std::size_t i = 0; i < faceList.size();) {
        const long corners = faceList[i++];
        if (corners < 2 || i + static_cast<std::size_t>(corners) > faceList.size()) break;
        for (long c = 0; c < corners; ++c) {
            const long from = faceList[i + static_cast<std::size_t>(c)];
            const long to = faceList[i + static_cast<std::size_t>((c + 1) % corners)];
            if (from < 0 || to < 0 || static_cast<std::size_t>(from) >= vertices.size() ||
                static_cast<std::size_t>(to) >= vertices.size())
                continue;
            scratch_.push_back(vertices[static_cast<std::size_t>(from)]);
            scratch_.push_back(vertices[static_cast<std::size_t>(to)]);
        }
        i += static_cast<std::size_t>(corners);
    }
    if (!scratch_.empty()) list_.addSegments(owner, look, scratch_.data(), scratch_.size());
}

void DisplayListBuilder::addMultiline(const std::vector<db::RawTag>& tags, std::uint32_t look, db::ObjectId owner) {
    // Per vertex: its position (11), its miter direction (13), then per element a parameter
    // list (74 and as many 41) whose first value is the element's offset along the miter.
    struct Vertex {
        ge::Point2d position, miter;
        std::vector<double> offsets;
    };
    std::vector<Vertex> vertices;
    bool firstParameter = false;
    bool closed = false;
    for (const db::RawTag& tag : tags) {
        char* end = nullptr;
        const double value = std::strtod(tag.value.c_str(), &end);
        if (end == tag.value.c_str() || !std::isfinite(value)) continue;
        switch (tag.code) {
        case 71: closed = (static_cast<int>(value) & 2) != 0; break;
        case 11: vertices.push_back({{value, 0.0}, {0.0, 0.0}, {}}); break;
        case 21: if (!vertices.empty()) vertices.back().position.y = value; break;
        case 13: if (!vertices.empty()) vertices.back().miter.x = value; break;
        case 23: if (!vertices.empty()) vertices.back().miter.y = value; break;
        case 74: firstParameter = true; break;
        case 41:
            if (firstParameter && !vertices.empty()) vertices.back().offsets.push_back(value);
            firstParameter = false;
            break;
        default: break;
        }
    }
    if (vertices.size() < 2) return;
    const std::size_t elements = vertices.front().offsets.size();
    for (std::size_t e = 0; e < elements; ++e) {
        scratch_.clear();
        for (const Vertex& v : vertices) {
            if (e >= v.offsets.size()) return;
            scratch_.push_back({v.position.x + v.miter.x * v.offsets[e], v.position.y + v.miter.y * v.offsets[e]});
        }
        list_.addPolyline(owner, look, scratch_.data(), scratch_.size(), closed);
    }
}

}  // namespace cad::gs
