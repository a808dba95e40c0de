// Draws a new block definition of a drawing from lines, circles, arcs and polylines, for the
// sample library's part views. Coordinates are in the block's own system, millimetres.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point2d.h"

namespace cad::db {
class Database;
class Entity;
}  // namespace cad::db

namespace vantor::sample {

class BlockSketch {
public:
    // Adds the block to the drawing's block table; its base point is the origin.
    BlockSketch(cad::db::Database& db, std::string_view name, std::string_view description);

    const std::string& name() const { return name_; }

    void line(double x1, double y1, double x2, double y2);
    void circle(double cx, double cy, double radius);
    // Counter-clockwise from `fromDegrees` to `toDegrees`.
    void arc(double cx, double cy, double radius, double fromDegrees, double toDegrees);
    // An arc through (x1, y) and (x2, y) that dips `depth` below y: the chamfer curve on a
    // hexagon's face seen from the side.
    void sag(double x1, double x2, double y, double depth);
    void rect(double x1, double y1, double x2, double y2);
    // A polyline through the points, closed or open; bulges per vertex when given.
    void polyline(const std::vector<cad::ge::Point2d>& points, bool closed,
                  const std::vector<double>& bulges = {});
    // A regular hexagon with corners left and right, seen along its axis.
    void hexagon(double cx, double cy, double acrossFlats);

private:
    void append(std::unique_ptr<cad::db::Entity> entity);

    cad::db::ObjectId id_;
    std::string name_;
};

}  // namespace vantor::sample
