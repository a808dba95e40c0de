// Building and querying a display list.
#include "cad/gs/DisplayList.h"

#include <algorithm>
#include <cmath>

#include "cad/gs/SpatialIndex.h"

namespace cad::gs {

namespace {

// Below this many items a linear walk is as fast as an index.
constexpr std::size_t kIndexThreshold = 512;

Box2d boundsOf(const ge::Point2d* points, std::size_t count) {
    Box2d box;
    for (std::size_t i = 0; i < count; ++i) box.add(points[i]);
    return box;
}

}  // namespace

DisplayList::DisplayList() = default;
DisplayList::~DisplayList() = default;
DisplayList::DisplayList(DisplayList&&) noexcept = default;
DisplayList& DisplayList::operator=(DisplayList&&) noexcept = default;

void DisplayList::reserve(std::size_t entities) {
    // Most entities of a large drawing are lines: one item, two points.
    items_.reserve(entities);
    points_.reserve(2 * entities);
}

std::uint32_t DisplayList::addLook(const EntityLook& look) {
    // Entities share few looks; the last few cover runs of alike entities.
    const std::size_t from = looks_.size() > 8 ? looks_.size() - 8 : 0;
    for (std::size_t i = looks_.size(); i-- > from;)
        if (looks_[i] == look) return static_cast<std::uint32_t>(i);
    for (std::size_t i = 0; i < from; ++i)
        if (looks_[i] == look) return static_cast<std::uint32_t>(i);
    looks_.push_back(look);
    return static_cast<std::uint32_t>(looks_.size() - 1);
}

DisplayItem DisplayList::startItem(ItemKind kind, db::ObjectId entity, std::uint32_t look, std::size_t first) {
    DisplayItem item;
    item.kind = kind;
    item.entity = entity;
    item.look = look;
    item.first = static_cast<std::uint32_t>(first);
    item.count = 1;
    return item;
}

std::uint32_t DisplayList::addItem(DisplayItem item) {
    if (item.flags & DisplayItem::kInfiniteBounds)
        unbounded_.push_back(static_cast<std::uint32_t>(items_.size()));
    else
        bounds_.add(item.bounds);
    items_.push_back(item);
    return static_cast<std::uint32_t>(items_.size() - 1);
}

std::uint32_t DisplayList::addPolyline(db::ObjectId entity, std::uint32_t look,
                                       const ge::Point2d* points, std::size_t count, bool closed) {
    DisplayItem item = startItem(ItemKind::Polyline, entity, look, points_.size());
    item.count = static_cast<std::uint32_t>(count);
    item.flags = closed ? DisplayItem::kClosed : 0;
    item.bounds = boundsOf(points, count);
    points_.insert(points_.end(), points, points + count);
    return addItem(item);
}

std::uint32_t DisplayList::addSegments(db::ObjectId entity, std::uint32_t look,
                                       const ge::Point2d* points, std::size_t count) {
    std::uint32_t index = addPolyline(entity, look, points, count & ~std::size_t{1}, false);
    items_[index].kind = ItemKind::Segments;
    return index;
}

std::uint32_t DisplayList::addFill(db::ObjectId entity, std::uint32_t look,
                                   const std::vector<std::vector<ge::Point2d>>& rings,
                                   bool oddEven) {
    DisplayItem item = startItem(ItemKind::Fill, entity, look, rings_.size());
    item.flags = oddEven ? DisplayItem::kOddEven : 0;
    for (const auto& ring : rings) {
        if (ring.size() < 2) continue;
        rings_.push_back({static_cast<std::uint32_t>(points_.size()),
                          static_cast<std::uint32_t>(ring.size())});
        points_.insert(points_.end(), ring.begin(), ring.end());
        item.bounds.add(boundsOf(ring.data(), ring.size()));
    }
    item.count = static_cast<std::uint32_t>(rings_.size()) - item.first;
    return addItem(item);
}

std::uint32_t DisplayList::addBackground(db::ObjectId entity, std::uint32_t look,
                                         const std::vector<std::vector<ge::Point2d>>& rings) {
    std::uint32_t index = addFill(entity, look, rings, false);
    items_[index].kind = ItemKind::Background;
    return index;
}

std::uint32_t DisplayList::addConic(db::ObjectId entity, std::uint32_t look, const Conic& conic) {
    DisplayItem item = startItem(ItemKind::Conic, entity, look, conics_.size());
    // The box of the whole ellipse: a little generous for short arcs, never too small.
    const double rx = std::hypot(conic.u.x, conic.v.x), ry = std::hypot(conic.u.y, conic.v.y);
    item.bounds.add(conic.centre.x - rx, conic.centre.y - ry);
    item.bounds.add(conic.centre.x + rx, conic.centre.y + ry);
    conics_.push_back(conic);
    return addItem(item);
}

std::uint32_t DisplayList::addPoint(db::ObjectId entity, std::uint32_t look,
                                    const ge::Point2d& point) {
    std::uint32_t index = addPolyline(entity, look, &point, 1, false);
    items_[index].kind = ItemKind::Point;
    return index;
}

std::uint32_t DisplayList::addText(db::ObjectId entity, std::uint32_t look, TextGeometry text,
                                   bool attributeDefinition) {
    DisplayItem item = startItem(ItemKind::Text, entity, look, texts_.size());
    item.flags = attributeDefinition ? DisplayItem::kAttributeDefinition : 0;
    for (const QPointF& p : text.box) item.bounds.add(p.x(), p.y());
    for (const TextPiece& piece : text.pieces) {
        const QRectF r = piece.bounds();
        if (!r.isEmpty()) {
            item.bounds.add(r.left(), r.top());
            item.bounds.add(r.right(), r.bottom());
        }
    }
    texts_.push_back(std::move(text));
    return addItem(item);
}

std::uint32_t DisplayList::addInsert(db::ObjectId entity, std::uint32_t look,
                                     const InsertRef& insert, const Box2d& blockBounds) {
    DisplayItem item = startItem(ItemKind::Insert, entity, look, inserts_.size());
    const Box2d cell = blockBounds.mapped(insert.transform);
    if (!cell.isEmpty()) {
        // The array's far cells: the last column, the last row and the corner between them.
        const double cx = insert.columnStep.x * (insert.columns - 1);
        const double cy = insert.columnStep.y * (insert.columns - 1);
        const double rx = insert.rowStep.x * (insert.rows - 1);
        const double ry = insert.rowStep.y * (insert.rows - 1);
        Box2d all = cell;
        for (const auto& [ox, oy] : {std::pair{cx, cy}, std::pair{rx, ry}, std::pair{cx + rx, cy + ry}}) {
            all.add(cell.minX + ox, cell.minY + oy);
            all.add(cell.maxX + ox, cell.maxY + oy);
        }
        item.bounds = all;
    }
    inserts_.push_back(insert);
    return addItem(item);
}

std::uint32_t DisplayList::addInfiniteLine(db::ObjectId entity, std::uint32_t look,
                                           const InfiniteLine& line) {
    DisplayItem item = startItem(ItemKind::InfiniteLine, entity, look, lines_.size());
    item.flags = DisplayItem::kInfiniteBounds;
    item.bounds.add(line.base);
    lines_.push_back(line);
    return addItem(item);
}

std::uint32_t DisplayList::addViewport(db::ObjectId entity, std::uint32_t look, const ViewportRef& viewport) {
    DisplayItem item = startItem(ItemKind::Viewport, entity, look, viewports_.size());
    item.bounds = viewport.paper;
    viewports_.push_back(viewport);
    return addItem(item);
}

void DisplayList::finish() {
    index_.reset();
    items_.shrink_to_fit();
    points_.shrink_to_fit();
    if (items_.size() < kIndexThreshold) return;
    std::vector<SpatialIndex::Entry> entries;
    entries.reserve(items_.size());
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (!(items_[i].flags & DisplayItem::kInfiniteBounds))
            entries.push_back({items_[i].bounds, static_cast<std::uint32_t>(i)});
    index_ = std::make_unique<SpatialIndex>(std::move(entries));
}

void DisplayList::query(const Box2d& box, std::vector<std::uint32_t>& out) const {
    out.clear();
    if (!index_ || box.contains(bounds_)) {
        for (std::size_t i = 0; i < items_.size(); ++i)
            if ((items_[i].flags & DisplayItem::kInfiniteBounds) || items_[i].bounds.intersects(box))
                out.push_back(static_cast<std::uint32_t>(i));
        return;
    }
    index_->query(box, out);
    out.insert(out.end(), unbounded_.begin(), unbounded_.end());
    // Drawing order: a sort for few hits, a sweep over a bitmap for many.
    if (out.size() * 16 < items_.size()) {
        std::sort(out.begin(), out.end());
        return;
    }
    std::vector<bool> hit(items_.size());
    for (std::uint32_t i : out) hit[i] = true;
    out.clear();
    for (std::size_t i = 0; i < hit.size(); ++i)
        if (hit[i]) out.push_back(static_cast<std::uint32_t>(i));
}

}  // namespace cad::gs
