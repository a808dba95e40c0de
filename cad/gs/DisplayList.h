// The drawable geometry of one block definition or space: items in drawing order, each with
// its bounds and the entity it comes from, over shared pools of points, curves, texts and
// references. Built once (DisplayListBuilder), drawn many times (SceneRenderer); coordinates
// are the block's own, in the plane (the view is a plan view).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/Affine2d.h"
#include "cad/gs/Box2d.h"
#include "cad/gs/EntityLook.h"
#include "cad/gs/text/TextGeometry.h"

namespace cad::gs {

class SpatialIndex;

enum class ItemKind : std::uint8_t {
    Polyline,      // points[first, first+count), open or closed (flag)
    Segments,      // count/2 separate segments, point pairs (hatch patterns, 3D faces)
    Fill,          // rings[first, first+count), filled with the winding rule
    Conic,         // conics[first]: an arc of a circle or an ellipse, seen from above
    Point,         // points[first]: a POINT, drawn by the drawing's point style
    Text,          // texts[first]
    Insert,        // inserts[first]: a block reference (its attributes are items of their own)
    InfiniteLine,  // lines[first]: an xline or a ray, clipped to the view when drawn
    Background,    // rings like Fill, painted in the background colour (wipeouts)
    Viewport,      // viewports[first]: model space seen through a paper-space viewport
};

// A closed or open piece of a conic: centre + u cos t + v sin t for t from start to end.
struct Conic {
    ge::Point2d centre;
    ge::Point2d u, v;
    double start = 0.0, end = 0.0;
};

struct Ring {
    std::uint32_t first = 0, count = 0;  // into points
};

struct InsertRef {
    db::ObjectId block;
    Affine2d transform;  // block coordinates to this list's
    std::int32_t columns = 1, rows = 1;
    ge::Point2d columnStep, rowStep;  // offsets between cells, in this list's coordinates

    // Block coordinates to this list's for one cell of the array.
    Affine2d cell(std::int32_t row, std::int32_t column) const {
        return Affine2d::translation(columnStep.x * column + rowStep.x * row,
                                     columnStep.y * column + rowStep.y * row) *
               transform;
    }
};

// A layout's viewport: model space mapped onto the paper and cut to the viewport's box.
struct ViewportRef {
    Box2d paper;          // the viewport's box on the paper
    Affine2d modelToPaper;
};

struct InfiniteLine {
    ge::Point2d base, direction;
    bool ray = false;  // from base along direction only
};

struct DisplayItem {
    enum Flags : std::uint8_t {
        kClosed = 1,
        // An attribute definition's tag: shown where a block is looked at on its own, never
        // through a reference (its values come as attributes).
        kAttributeDefinition = 2,
        kInfiniteBounds = 4,  // bounds mean nothing: always visited
        kOddEven = 8,         // a fill whose rings cut holes in each other (hatch islands)
    };
    Box2d bounds;
    db::ObjectId entity;  // the top-level entity of this list that the item draws
    std::uint32_t look = 0;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    ItemKind kind = ItemKind::Polyline;
    std::uint8_t flags = 0;
};

class DisplayList {
public:
    DisplayList();
    ~DisplayList();
    DisplayList(DisplayList&&) noexcept;
    DisplayList& operator=(DisplayList&&) noexcept;

    const std::vector<DisplayItem>& items() const { return items_; }
    const Box2d& bounds() const { return bounds_; }
    const EntityLook& look(std::uint32_t index) const { return looks_[index]; }
    std::size_t lookCount() const { return looks_.size(); }
    const std::vector<ge::Point2d>& points() const { return points_; }
    const std::vector<Ring>& rings() const { return rings_; }
    const std::vector<Conic>& conics() const { return conics_; }
    const std::vector<TextGeometry>& texts() const { return texts_; }
    const std::vector<InsertRef>& inserts() const { return inserts_; }
    const std::vector<InfiniteLine>& infiniteLines() const { return lines_; }
    const std::vector<ViewportRef>& viewports() const { return viewports_; }
    // The items in drawing order whose bounds meet `box` (those with infinite bounds always).
    // Answers every item, in order, when the box holds the whole list.
    void query(const Box2d& box, std::vector<std::uint32_t>& out) const;

    // ---- Building ----
    // Room for about this many entities, so a large space is not copied as it grows.
    void reserve(std::size_t entities);
    std::uint32_t addLook(const EntityLook& look);
    // Each add* appends one item for `entity` and answers its index.
    std::uint32_t addPolyline(db::ObjectId entity, std::uint32_t look, const ge::Point2d* points,
                              std::size_t count, bool closed);
    std::uint32_t addSegments(db::ObjectId entity, std::uint32_t look, const ge::Point2d* points,
                              std::size_t count);
    // Rings of points, each closed by itself: with oddEven a ring inside another is a hole,
    // otherwise overlapping rings add up (the pieces of a wide polyline).
    std::uint32_t addFill(db::ObjectId entity, std::uint32_t look,
                          const std::vector<std::vector<ge::Point2d>>& rings, bool oddEven);
    // Rings painted in the view's background colour (wipeouts).
    std::uint32_t addBackground(db::ObjectId entity, std::uint32_t look,
                                const std::vector<std::vector<ge::Point2d>>& rings);
    std::uint32_t addConic(db::ObjectId entity, std::uint32_t look, const Conic& conic);
    std::uint32_t addPoint(db::ObjectId entity, std::uint32_t look, const ge::Point2d& point);
    std::uint32_t addText(db::ObjectId entity, std::uint32_t look, TextGeometry text,
                          bool attributeDefinition);
    // `blockBounds` is the bounds of the block's own list.
    std::uint32_t addInsert(db::ObjectId entity, std::uint32_t look, const InsertRef& insert,
                            const Box2d& blockBounds);
    std::uint32_t addInfiniteLine(db::ObjectId entity, std::uint32_t look,
                                  const InfiniteLine& line);
    std::uint32_t addViewport(db::ObjectId entity, std::uint32_t look, const ViewportRef& viewport);
    // Ends building: the spatial index is made when the list is large enough to need one.
    void finish();

private:
    // An item of one element of a pool, starting at `first`.
    static DisplayItem startItem(ItemKind kind, db::ObjectId entity, std::uint32_t look, std::size_t first);
    std::uint32_t addItem(DisplayItem item);

    std::vector<DisplayItem> items_;
    std::vector<EntityLook> looks_;
    std::vector<ge::Point2d> points_;
    std::vector<Ring> rings_;
    std::vector<Conic> conics_;
    std::vector<TextGeometry> texts_;
    std::vector<InsertRef> inserts_;
    std::vector<InfiniteLine> lines_;
    std::vector<ViewportRef> viewports_;
    std::vector<std::uint32_t> unbounded_;  // items with infinite bounds
    Box2d bounds_;
    std::unique_ptr<SpatialIndex> index_;
};

}  // namespace cad::gs
