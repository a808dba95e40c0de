// A drawing's view state and its navigation.
#include "cad/gs/DrawingView.h"

#include <algorithm>
#include <cmath>

#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Layout.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/ViewportTableRecord.h"

namespace cad::gs {

namespace {

// ZOOM Previous goes back this many views, as far as users ever go.
constexpr std::size_t kHistory = 10;

struct LayoutEntry {
    std::string name;
    int tabOrder = 0;
    db::ObjectId block;
};

std::vector<LayoutEntry> paperLayouts(db::Database& database) {
    std::vector<LayoutEntry> out;
    db::ObjectPtr<db::Dictionary> layouts(database.layoutDictionaryId(), db::OpenMode::ForRead);
    if (!layouts) return out;
    std::vector<db::ObjectId> ids;
    for (const auto& entry : layouts->entries()) ids.push_back(entry.id);
    layouts.close();
    for (db::ObjectId id : ids) {
        db::ObjectPtr<db::Layout> layout(id, db::OpenMode::ForRead);
        if (!layout || layout->isModelLayout() || layout->blockTableRecordId() == database.modelSpaceId())
            continue;
        out.push_back({layout->layoutName(), layout->tabOrder(), layout->blockTableRecordId()});
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const LayoutEntry& a, const LayoutEntry& b) { return a.tabOrder < b.tabOrder; });
    return out;
}

}  // namespace

DrawingView::DrawingView(db::Database& database)
    : scene_(database), image_(scene_, database.modelSpaceId()) {}

std::vector<std::string> DrawingView::layoutNames() const {
    std::vector<std::string> names{kModel};
    for (const LayoutEntry& entry : paperLayouts(scene_.database())) names.push_back(entry.name);
    return names;
}

bool DrawingView::showLayout(const std::string& name) {
    db::ObjectId block;
    if (name == kModel) {
        block = scene_.database().modelSpaceId();
    } else {
        for (const LayoutEntry& entry : paperLayouts(scene_.database()))
            if (entry.name == name) block = entry.block;
    }
    if (block.isNull()) return false;
    layout_ = name;
    image_.setBlock(block);
    previous_.clear();
    view_.fit(extents());
    return true;
}

void DrawingView::setDeviceSize(int width, int height) {
    view_.setDeviceSize(width, height);
    if (!sized_) {
        sized_ = true;
        if (!showSavedView()) view_.fit(extents());
    }
}

bool DrawingView::showSavedView() {
    // Model space opens where the drawing was last looked at (its active viewport), as long
    // as that looks like a view someone chose: a plan view that shows some of the drawing,
    // the drawing neither lost in a corner of it nor seen through a keyhole. Programs that
    // never set it leave a default that may show nothing, the drawing as a speck, or a
    // paper-sized window onto a drawing a thousand times larger.
    if (layout_ != kModel) return false;
    db::ObjectPtr<db::SymbolTable> table(database().viewportTableId(), db::OpenMode::ForRead);
    db::ObjectId id;
    if (!table || table->getAt("*Active", id) != ErrorStatus::eOk) return false;
    table.close();
    db::ObjectPtr<db::ViewportTableRecord> active(id, db::OpenMode::ForRead);
    if (!active) return false;
    const ge::Vector3d& direction = active->viewDirection();
    const double height = active->height();
    if (!(std::abs(direction.x) < 1e-9 && std::abs(direction.y) < 1e-9 && direction.z > 0.0)) return false;
    if (!(height > 0.0) || !std::isfinite(height)) return false;
    const ge::Point2d centre{active->target().x + active->centerPoint().x, active->target().y + active->centerPoint().y};
    if (!std::isfinite(centre.x) || !std::isfinite(centre.y)) return false;
    ViewTransform saved = view_;
    saved.setCentre(centre);
    saved.setHeight(height);
    const Box2d drawing = extents();
    if (drawing.isEmpty() || !saved.visibleBox().intersects(drawing)) return false;
    const double drawingSize = std::max(drawing.width(), drawing.height());
    const double viewSize = std::max(saved.width(), saved.height());
    if (drawingSize < 0.1 * viewSize || viewSize < 0.01 * drawingSize) return false;
    view_ = saved;
    return true;
}

void DrawingView::setTransform(const ViewTransform& view) {
    remember();
    const double width = view_.deviceWidth(), height = view_.deviceHeight();
    view_ = view;
    view_.setDeviceSize(width, height);
}

Box2d DrawingView::extents() { return scene_.blockList(image_.block()).bounds(); }

void DrawingView::zoomExtents() {
    remember();
    view_.fit(extents());
}

void DrawingView::zoomWindow(const Box2d& window) {
    if (window.isEmpty() || !(window.width() > 0.0) || !(window.height() > 0.0)) return;
    remember();
    view_.fit(window, 0.0);
}

bool DrawingView::zoomPrevious() {
    if (previous_.empty()) return false;
    const double width = view_.deviceWidth(), height = view_.deviceHeight();
    view_ = previous_.back();
    previous_.pop_back();
    view_.setDeviceSize(width, height);
    return true;
}

void DrawingView::zoomAbout(double deviceX, double deviceY, double factor) {
    remember();
    view_.zoomAbout(deviceX, deviceY, factor);
}

void DrawingView::beginPan() { remember(); }

void DrawingView::panBy(int dx, int dy) { view_.panBy(dx, dy); }

void DrawingView::panDrawing(double dx, double dy) {
    if (!std::isfinite(dx) || !std::isfinite(dy)) return;
    remember();
    view_.setCentre({view_.centre().x - dx, view_.centre().y - dy});
}

void DrawingView::drawingChanged() {
    scene_.invalidateAll();
    image_.invalidate();
}

void DrawingView::remember() {
    // Asking twice without a change between (a pan that never moved) is one step.
    if (!previous_.empty() && previous_.back().height() == view_.height() &&
        previous_.back().centre().x == view_.centre().x && previous_.back().centre().y == view_.centre().y)
        return;
    previous_.push_back(view_);
    if (previous_.size() > kHistory) previous_.erase(previous_.begin());
}

}  // namespace cad::gs
