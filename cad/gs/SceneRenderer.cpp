// Painting display lists. Points are mapped to device coordinates here, not by the painter,
// so each item can be culled and simplified by its size on screen before Qt sees it, and
// runs of alike lines go to Qt in one call.
#include "cad/gs/SceneRenderer.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "cad/gs/DisplayList.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/ColorTable.h"
#include "cad/db/Database.h"

namespace cad::gs {

namespace {

// Below these sizes on screen, detail is replaced by what the eye sees there.
constexpr double kDotSize = 1.0;         // pixels: an item this small is a dot
constexpr double kTextAsBox = 3.0;       // pixels of text height: the text is its box
constexpr double kChordError = 0.25;     // pixels: flattening error of curves
constexpr int kMaxDepth = 16;            // nested references deeper than this are not drawn
constexpr std::int64_t kMaxCells = 10'000;  // array cells drawn one by one
constexpr std::size_t kMaxConicPoints = 8192;

QColor colorOf(std::int32_t rgb) {
    return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

bool finite(const ge::Point2d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

QPointF qt(const ge::Point2d& p) { return {p.x, p.y}; }

}  // namespace

SceneRenderer::SceneRenderer(DrawingScene& scene, QPainter& painter, RenderOptions options)
    : scene_(scene), painter_(painter), options_(std::move(options)) {
    // Colour 7 and BYBLOCK at the top stand out from the background, as on paper and screen.
    foreground_ = options_.background.lightness() > 128 ? QColor(Qt::black) : QColor(Qt::white);
    // One list of hits per nesting depth, made up front: a nested draw must not move the
    // list its caller is walking.
    hits_.resize(kMaxDepth + 1);
}

void SceneRenderer::drawBlock(db::ObjectId block, const Affine2d& toDevice, const Box2d& deviceClip) {
    drawEntities(scene_.blockList(block), toDevice, deviceClip);
}

void SceneRenderer::drawEntities(const DisplayList& list, const Affine2d& toDevice,
                                 const Box2d& deviceClip) {
    if (!toDevice.isInvertible()) return;
    deviceClip_ = deviceClip;
    Inherited top;
    top.color = foreground_;
    drawList(list, toDevice, top, 0);
}

SceneRenderer::~SceneRenderer() { flushLines(); }

void SceneRenderer::addLine(const QLineF& line) {
    lines_.push_back(line);
    // Batches of this size are as fast to paint as one, and stay small.
    if (lines_.size() >= 4096) flushLines();
}

SceneRenderer::Resolved SceneRenderer::resolve(const EntityLook& look, const Inherited& inherited) const {
    const DrawingStyles& styles = scene_.styles();
    const auto& layers = styles.layers();
    Resolved out;
    // Inside a block, layer 0 takes the layer of the reference.
    out.layer = look.layer == styles.layerZero() && inherited.layer >= 0 ? inherited.layer : look.layer;
    if (out.layer < 0 || static_cast<std::size_t>(out.layer) >= layers.size()) out.layer = 0;
    const LayerStyle& layer = layers[static_cast<std::size_t>(out.layer)];
    out.visible = layer.visible;
    switch (look.color) {
    case EntityLook::kByLayer:
        out.color = layer.color == EntityLook::kForeground ? foreground_ : colorOf(layer.color);
        break;
    case EntityLook::kByBlock: out.color = inherited.color; break;
    case EntityLook::kForeground: out.color = foreground_; break;
    default: out.color = colorOf(look.color);
    }
    switch (look.linetype) {
    case EntityLook::kLinetypeByLayer: out.linetype = layer.linetype; break;
    case EntityLook::kLinetypeByBlock: out.linetype = inherited.linetype; break;
    default: out.linetype = look.linetype;
    }
    switch (look.lineWeight) {
    case -1: out.lineWeight = layer.lineWeight; break;
    case -2: out.lineWeight = inherited.lineWeight; break;
    default: out.lineWeight = look.lineWeight;
    }
    if (out.lineWeight < 0) out.lineWeight = 25;  // the default weight, 0.25 mm
    out.linetypeScale = look.linetypeScale;
    if (options_.override.isValid()) out.color = options_.override;
    return out;
}

void SceneRenderer::setPen(const Resolved& look, double unitsToDevice) {
    const DrawingStyles& styles = scene_.styles();
    float width = 0.0f;  // cosmetic: one pixel whatever the zoom
    if (styles.showLineWeights()) {
        const double pixels = look.lineWeight / 100.0 * options_.pixelsPerMillimetre;
        if (pixels >= 1.5) width = static_cast<float>(pixels);
    }
    const LinetypePattern& pattern = styles.linetype(look.linetype);
    double dashScale = 0.0;  // pixels per drawing unit of the pattern; 0 draws continuous
    if (!pattern.dashes.empty()) {
        dashScale = styles.linetypeScale() * look.linetypeScale * unitsToDevice;
        // A pattern shorter than a few pixels reads as a continuous line, and is drawn so.
        if (!(pattern.length * dashScale >= 4.0) || pattern.length * dashScale > 1e6) dashScale = 0.0;
    }
    const PenKey key{look.color.rgb(), dashScale > 0.0 ? look.linetype : -1, width, dashScale};
    if (key == pen_) return;
    flushLines();
    pen_ = key;
    QPen pen(look.color, width);
    pen.setCosmetic(width == 0.0f);
    pen.setCapStyle(Qt::FlatCap);
    if (dashScale > 0.0) {
        // Qt's pattern alternates dash and gap, in pen widths; a dot is one pixel long.
        const double unit = std::max(1.0, double(width));
        QList<qreal> dashes;
        double offset = 0.0;
        bool wantDash = true;
        for (double d : pattern.dashes) {
            const bool isDash = d >= 0.0;
            double length = std::max(std::abs(d) * dashScale, 1.0) / unit;
            if (dashes.isEmpty() && !isDash) {  // a leading gap: start the pattern in it
                offset += length;
                continue;
            }
            if (isDash == wantDash) {
                dashes.append(length);
                wantDash = !wantDash;
            } else {
                dashes.back() += length;
            }
        }
        if (!wantDash) dashes.append(0.0);
        if (offset > 0.0) {
            dashes.back() += offset;
            pen.setDashOffset(-offset);
        }
        if (dashes.size() >= 2) pen.setDashPattern(dashes);
    }
    painter_.setPen(pen);
}

void SceneRenderer::flushLines() {
    if (lines_.empty()) return;
    painter_.drawLines(lines_.data(), static_cast<int>(lines_.size()));
    lines_.clear();
}

void SceneRenderer::drawDot(const ge::Point2d& p) {
    addLine(QLineF(p.x, p.y, p.x + 0.01, p.y));
}

void SceneRenderer::drawList(const DisplayList& list, const Affine2d& toDevice,
                             const Inherited& inherited, int depth) {
    if (depth > kMaxDepth || list.items().empty()) return;
    const Affine2d toList = toDevice.inverse();
    // A little beyond the clip, so wide lines and point markers at the edge are not cut.
    const Box2d visible = deviceClip_.grown(8.0).mapped(toList);
    std::vector<std::uint32_t>& hits = hits_[static_cast<std::size_t>(depth)];
    list.query(visible, hits);

    const double unitsToDevice = toDevice.maxScale();
    std::vector<Resolved> looks(list.lookCount());
    std::vector<bool> resolved(list.lookCount());
    const auto& items = list.items();
    for (std::size_t h = 0; h < hits.size(); ++h) {
        const DisplayItem& item = items[hits[h]];
        if (depth == 0 && options_.filter && !options_.filter(item.entity)) continue;
        if ((item.flags & DisplayItem::kAttributeDefinition) &&
            (depth > 0 || !options_.showAttributeDefinitions))
            continue;
        if (!resolved[item.look]) {
            looks[item.look] = resolve(list.look(item.look), inherited);
            resolved[item.look] = true;
        }
        const Resolved& look = looks[item.look];
        if (!look.visible) continue;
        setPen(look, unitsToDevice);
        drawItem(list, item, look, toDevice, visible, depth);
    }
}

void SceneRenderer::drawItem(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                             const Affine2d& toDevice, const Box2d& visible, int depth) {
    // The item's size on screen decides how much of it is worth drawing.
    const double scale = toDevice.maxScale();
    const double size = std::max(item.bounds.width(), item.bounds.height()) * scale;
    const bool tiny = size < kDotSize && item.kind != ItemKind::InfiniteLine;
    if (tiny && item.kind != ItemKind::Point) {
        const ge::Point2d centre = toDevice.map((item.bounds.minX + item.bounds.maxX) / 2,
                                                (item.bounds.minY + item.bounds.maxY) / 2);
        if (finite(centre)) drawDot(centre);
        return;
    }
    const auto& points = list.points();
    switch (item.kind) {
    case ItemKind::Polyline: {
        if (item.count == 2) {
            const ge::Point2d a = toDevice.map(points[item.first]);
            const ge::Point2d b = toDevice.map(points[item.first + 1]);
            if (finite(a) && finite(b)) addLine(QLineF(a.x, a.y, b.x, b.y));
            return;
        }
        flushLines();
        points_.clear();
        for (std::uint32_t i = 0; i < item.count; ++i) {
            const ge::Point2d p = toDevice.map(points[item.first + i]);
            if (finite(p)) points_.push_back(qt(p));
        }
        if (item.flags & DisplayItem::kClosed)
            painter_.drawPolygon(points_.data(), static_cast<int>(points_.size()));
        else if (points_.size() == 1)
            drawDot({points_[0].x(), points_[0].y()});
        else
            painter_.drawPolyline(points_.data(), static_cast<int>(points_.size()));
        return;
    }
    case ItemKind::Segments:
        for (std::uint32_t i = 0; i + 1 < item.count; i += 2) {
            const ge::Point2d a = toDevice.map(points[item.first + i]);
            const ge::Point2d b = toDevice.map(points[item.first + i + 1]);
            if (finite(a) && finite(b)) addLine(QLineF(a.x, a.y, b.x, b.y));
        }
        return;
    case ItemKind::Point: {
        const ge::Point2d p = toDevice.map(points[item.first]);
        if (finite(p)) drawPointEntity(p, scale);
        return;
    }
    case ItemKind::Conic: drawConic(list, item, toDevice); return;
    case ItemKind::Fill: drawFill(list, item, look.color, toDevice); return;
    case ItemKind::Background: drawFill(list, item, options_.background, toDevice); return;
    case ItemKind::Text: {
        Inherited forPieces;
        forPieces.color = look.color;
        forPieces.layer = look.layer;
        drawText(list, item, look, toDevice, forPieces);
        return;
    }
    case ItemKind::Insert: drawInsert(list, item, look, toDevice, depth); return;
    case ItemKind::InfiniteLine: drawInfiniteLine(list, item, toDevice, visible); return;
    case ItemKind::Viewport: drawViewport(list, item, toDevice, depth); return;
    }
}

void SceneRenderer::drawPointEntity(const ge::Point2d& p, double unitsToDevice) {
    const DrawingStyles& styles = scene_.styles();
    const int mode = styles.pointMode();
    double size = styles.pointSize();
    // PDSIZE: positive in drawing units, negative a percentage of the view, 0 five percent.
    if (size > 0.0)
        size *= unitsToDevice;
    else
        size = (size < 0.0 ? -size : 5.0) / 100.0 * deviceClip_.height();
    size = std::clamp(size, 1.0, 4096.0);
    const double h = size / 2;
    switch (mode & 7) {
    case 0: drawDot(p); break;
    case 1: break;
    case 2:
        addLine(QLineF(p.x - h, p.y, p.x + h, p.y));
        addLine(QLineF(p.x, p.y - h, p.x, p.y + h));
        break;
    case 3:
        addLine(QLineF(p.x - h, p.y - h, p.x + h, p.y + h));
        addLine(QLineF(p.x - h, p.y + h, p.x + h, p.y - h));
        break;
    case 4: addLine(QLineF(p.x, p.y, p.x, p.y - h)); break;
    default: drawDot(p);
    }
    if (mode & 32) {
        flushLines();
        painter_.drawEllipse(QPointF(p.x, p.y), h, h);
    }
    if (mode & 64) {
        addLine(QLineF(p.x - h, p.y - h, p.x + h, p.y - h));
        addLine(QLineF(p.x + h, p.y - h, p.x + h, p.y + h));
        addLine(QLineF(p.x + h, p.y + h, p.x - h, p.y + h));
        addLine(QLineF(p.x - h, p.y + h, p.x - h, p.y - h));
    }
}

void SceneRenderer::drawConic(const DisplayList& list, const DisplayItem& item,
                              const Affine2d& toDevice) {
    const Conic& c = list.conics()[item.first];
    const ge::Point2d centre = toDevice.map(c.centre);
    // The axes as the device sees them (the map's linear part only).
    const ge::Point2d u{toDevice.a * c.u.x + toDevice.c * c.u.y, toDevice.b * c.u.x + toDevice.d * c.u.y};
    const ge::Point2d v{toDevice.a * c.v.x + toDevice.c * c.v.y, toDevice.b * c.v.x + toDevice.d * c.v.y};
    const double radius = std::max(std::hypot(u.x, u.y), std::hypot(v.x, v.y));
    if (!finite(centre) || !std::isfinite(radius)) return;
    const double sweep = std::min(c.end - c.start, 2.0 * std::numbers::pi);
    // The step whose chord strays kChordError from a circle of the larger radius.
    const double step = radius > kChordError ? 2.0 * std::acos(1.0 - kChordError / radius) : 1.0;
    const std::size_t count = std::clamp<std::size_t>(
        static_cast<std::size_t>(std::ceil(sweep / std::max(step, 1e-9))), 4, kMaxConicPoints);
    flushLines();
    points_.clear();
    for (std::size_t i = 0; i <= count; ++i) {
        const double t = c.start + sweep * double(i) / double(count);
        const double cs = std::cos(t), sn = std::sin(t);
        points_.push_back({centre.x + u.x * cs + v.x * sn, centre.y + u.y * cs + v.y * sn});
    }
    painter_.drawPolyline(points_.data(), static_cast<int>(points_.size()));
}

void SceneRenderer::drawFill(const DisplayList& list, const DisplayItem& item, const QColor& color,
                             const Affine2d& toDevice) {
    flushLines();
    QPainterPath path;
    path.setFillRule(item.flags & DisplayItem::kOddEven ? Qt::OddEvenFill : Qt::WindingFill);
    const auto& points = list.points();
    for (std::uint32_t r = item.first; r < item.first + item.count; ++r) {
        const Ring& ring = list.rings()[r];
        bool first = true;
        for (std::uint32_t i = ring.first; i < ring.first + ring.count; ++i) {
            const ge::Point2d p = toDevice.map(points[i]);
            if (!finite(p)) continue;
            if (first)
                path.moveTo(p.x, p.y);
            else
                path.lineTo(p.x, p.y);
            first = false;
        }
        path.closeSubpath();
    }
    painter_.fillPath(path, color);
}

void SceneRenderer::drawText(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                             const Affine2d& toDevice, const Inherited& forPieces) {
    const TextGeometry& text = list.texts()[item.first];
    const double height = text.height * toDevice.maxScale();
    if (!(height >= kTextAsBox) || text.pieces.empty()) {
        // Too small to read: the box shows where the text is and how long.
        flushLines();
        points_.clear();
        for (const QPointF& corner : text.box) {
            const ge::Point2d p = toDevice.map(corner.x(), corner.y());
            if (finite(p)) points_.push_back(qt(p));
        }
        if (points_.size() >= 2) painter_.drawPolygon(points_.data(), static_cast<int>(points_.size()));
        return;
    }
    flushLines();
    // Glyphs read far better smoothed; lines stay crisp and fast without.
    const bool smooth = painter_.testRenderHint(QPainter::Antialiasing);
    painter_.setRenderHint(QPainter::Antialiasing, true);
    const QTransform qtToDevice(toDevice.a, toDevice.b, toDevice.c, toDevice.d, toDevice.e, toDevice.f);
    for (const TextPiece& piece : text.pieces) {
        QColor color = look.color;
        if (!options_.override.isValid()) {
            if (piece.trueColor) {
                color = colorOf(*piece.trueColor);
            } else if (piece.colorIndex) {
                if (*piece.colorIndex == 0)
                    color = forPieces.color;
                else if (*piece.colorIndex != 256)
                    color = *piece.colorIndex == 7 ? foreground_ : colorOf(static_cast<std::int32_t>(indexColor(*piece.colorIndex)));
            }
        }
        textPath_.clear();
        piece.appendTo(textPath_, qtToDevice);
        painter_.fillPath(textPath_, color);
    }
    painter_.setRenderHint(QPainter::Antialiasing, smooth);
}

void SceneRenderer::drawInsert(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                               const Affine2d& toDevice, int depth) {
    const InsertRef& insert = list.inserts()[item.first];
    const DisplayList& block = scene_.blockList(insert.block);
    Inherited inherited;
    inherited.color = look.color;
    inherited.layer = look.layer;
    inherited.linetype = look.linetype;
    inherited.lineWeight = look.lineWeight;
    const std::int64_t cells = std::int64_t(insert.columns) * insert.rows;
    if (cells > kMaxCells) {
        // An array too large to draw cell by cell shows as the box it fills.
        flushLines();
        points_.clear();
        for (auto [x, y] : {std::pair{item.bounds.minX, item.bounds.minY}, {item.bounds.maxX, item.bounds.minY},
                            {item.bounds.maxX, item.bounds.maxY}, {item.bounds.minX, item.bounds.maxY}})
            points_.push_back(qt(toDevice.map(x, y)));
        painter_.drawPolygon(points_.data(), static_cast<int>(points_.size()));
        return;
    }
    for (std::int32_t row = 0; row < insert.rows; ++row)
        for (std::int32_t column = 0; column < insert.columns; ++column) {
            const Affine2d map = toDevice * insert.cell(row, column);
            const Box2d onScreen = block.bounds().mapped(map);
            if (onScreen.isEmpty() || !onScreen.intersects(deviceClip_.grown(8.0))) continue;
            if (std::max(onScreen.width(), onScreen.height()) < kDotSize) {
                drawDot({(onScreen.minX + onScreen.maxX) / 2, (onScreen.minY + onScreen.maxY) / 2});
                continue;
            }
            drawList(block, map, inherited, depth + 1);
        }
}

void SceneRenderer::drawViewport(const DisplayList& list, const DisplayItem& item, const Affine2d& toDevice,
                                 int depth) {
    const ViewportRef& viewport = list.viewports()[item.first];
    const Box2d onScreen = viewport.paper.mapped(toDevice);
    Box2d clip{std::max(onScreen.minX, deviceClip_.minX), std::max(onScreen.minY, deviceClip_.minY),
               std::min(onScreen.maxX, deviceClip_.maxX), std::min(onScreen.maxY, deviceClip_.maxY)};
    if (clip.isEmpty()) return;
    flushLines();
    // Model space is cut to the viewport: by the painter, and by what is visited.
    painter_.save();
    painter_.setClipRect(QRectF(clip.minX, clip.minY, clip.width(), clip.height()), Qt::IntersectClip);
    const Box2d outer = deviceClip_;
    deviceClip_ = clip;
    Inherited top;
    top.color = foreground_;
    const PenKey pen = pen_;
    pen_ = {};
    drawList(scene_.blockList(scene_.database().modelSpaceId()), toDevice * viewport.modelToPaper, top, depth + 1);
    flushLines();
    deviceClip_ = outer;
    painter_.restore();
    pen_ = pen;
}

void SceneRenderer::drawInfiniteLine(const DisplayList& list, const DisplayItem& item,
                                     const Affine2d& toDevice, const Box2d& visible) {
    const InfiniteLine& line = list.infiniteLines()[item.first];
    // Clip the line's parameter to the visible box (Liang-Barsky).
    double t0 = line.ray ? 0.0 : -1e300, t1 = 1e300;
    const double p[2] = {line.base.x, line.base.y}, d[2] = {line.direction.x, line.direction.y};
    const double lo[2] = {visible.minX, visible.minY}, hi[2] = {visible.maxX, visible.maxY};
    for (int axis = 0; axis < 2; ++axis) {
        if (d[axis] == 0.0) {
            if (p[axis] < lo[axis] || p[axis] > hi[axis]) return;
            continue;
        }
        double a = (lo[axis] - p[axis]) / d[axis], b = (hi[axis] - p[axis]) / d[axis];
        if (a > b) std::swap(a, b);
        t0 = std::max(t0, a);
        t1 = std::min(t1, b);
    }
    if (!(t0 <= t1)) return;
    const ge::Point2d a = toDevice.map(p[0] + d[0] * t0, p[1] + d[1] * t0);
    const ge::Point2d b = toDevice.map(p[0] + d[0] * t1, p[1] + d[1] * t1);
    if (finite(a) && finite(b)) addLine(QLineF(a.x, a.y, b.x, b.y));
}

}  // namespace cad::gs
