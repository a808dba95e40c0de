// Paints display lists with a QPainter onto any paint device: culls by the spatial index,
// resolves BYLAYER and BYBLOCK looks through nested references, applies linetypes and
// lineweights, and cuts detail that cannot be seen (tiny texts as boxes, tiny curves and
// blocks as dots, curves flattened to a quarter pixel). What cannot be drawn is skipped.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRgb>
#include <QPointF>
#include <QLineF>
#include <functional>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/Affine2d.h"
#include "cad/gs/Box2d.h"
#include "cad/gs/EntityLook.h"

class QPainter;
class QPen;

namespace cad::gs {

class DisplayList;
class DrawingScene;
struct DisplayItem;

struct RenderOptions {
    QColor background{33, 40, 48};
    // Attribute definitions' tags are shown when a block is looked at on its own.
    bool showAttributeDefinitions = false;
    // When set, only the items of top-level entities it accepts are drawn, in `override`
    // colour when that is valid (selection highlight, drag images).
    std::function<bool(db::ObjectId)> filter;
    QColor override;
    // Device pixels per millimetre of lineweight (96 dpi screens: ~3.78).
    double pixelsPerMillimetre = 96.0 / 25.4;
};

class SceneRenderer {
public:
    SceneRenderer(DrawingScene& scene, QPainter& painter, RenderOptions options = {});
    // Lines still batched are painted: a renderer is done with the painter when it goes.
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    // Draws a block's list through `toDevice` into `deviceClip` (device coordinates).
    void drawBlock(db::ObjectId block, const Affine2d& toDevice, const Box2d& deviceClip);
    // Draws a list that no block owns (a dragged entity, a highlight, one entity of a
    // drawing streamed onto a picture) the same way; calls may follow each other.
    void drawEntities(const DisplayList& list, const Affine2d& toDevice, const Box2d& deviceClip);

    // What the look of an item resolves to once layers and references have spoken.
    struct Resolved {
        QColor color;
        std::int32_t layer = 0;
        std::int32_t linetype = 0;
        std::int16_t lineWeight = 25;
        float linetypeScale = 1.0f;
        bool visible = true;
    };

private:
    // What a reference passes down to the BYBLOCK and layer-0 looks inside it.
    struct Inherited {
        QColor color;
        std::int32_t layer = -1;  // -1 at the top level: layer 0 is itself
        std::int32_t linetype = 0;
        std::int16_t lineWeight = 25;
    };

    void drawList(const DisplayList& list, const Affine2d& toDevice, const Inherited& inherited,
                  int depth);
    void drawItem(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                  const Affine2d& toDevice, const Box2d& visible, int depth);
    Resolved resolve(const EntityLook& look, const Inherited& inherited) const;
    void setPen(const Resolved& look, double unitsToDevice);
    void addLine(const QLineF& line);
    void flushLines();
    void drawDot(const ge::Point2d& devicePoint);
    void drawPointEntity(const ge::Point2d& devicePoint, double unitsToDevice);
    void drawConic(const DisplayList& list, const DisplayItem& item, const Affine2d& toDevice);
    void drawText(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                  const Affine2d& toDevice, const Inherited& forPieces);
    void drawFill(const DisplayList& list, const DisplayItem& item, const QColor& color,
                  const Affine2d& toDevice);
    void drawInsert(const DisplayList& list, const DisplayItem& item, const Resolved& look,
                    const Affine2d& toDevice, int depth);
    void drawViewport(const DisplayList& list, const DisplayItem& item, const Affine2d& toDevice, int depth);
    void drawInfiniteLine(const DisplayList& list, const DisplayItem& item,
                          const Affine2d& toDevice, const Box2d& visible);

    DrawingScene& scene_;
    QPainter& painter_;
    RenderOptions options_;
    QColor foreground_;
    Box2d deviceClip_;
    std::vector<QLineF> lines_;  // a batch of lines drawn with the current pen
    struct PenKey {
        QRgb color = 0;
        std::int32_t linetype = -1;
        float width = -1.0f;
        double dashScale = 0.0;
        friend bool operator==(const PenKey&, const PenKey&) = default;
    };
    PenKey pen_;
    std::vector<QPointF> points_;
    QPainterPath textPath_;  // a text's glyphs in device coordinates, made anew for each
    std::vector<std::vector<std::uint32_t>> hits_;  // one per nesting depth, never resized
};

}  // namespace cad::gs
