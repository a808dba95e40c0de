// Part views drawn into block definitions.
#include "apps/make-sample-library/BlockSketch.h"

#include <cmath>
#include <numbers>

#include "cad/db/Arc.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Polyline.h"
#include "cad/db/SymbolTable.h"

namespace vantor::sample {

using cad::db::OpenMode;
using cad::ge::Point2d;
using cad::ge::Point3d;
using cad::ge::Vector3d;

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
const Vector3d kUp(0, 0, 1);

}  // namespace

BlockSketch::BlockSketch(cad::db::Database& db, std::string_view name, std::string_view description)
    : name_(name) {
    auto block = std::make_unique<cad::db::BlockTableRecord>();
    block->setName(name);
    block->setComments(std::string(description));
    block->setInsertUnits(4);  // millimetres
    cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForWrite)
        ->add(std::move(block), id_);
}

void BlockSketch::append(std::unique_ptr<cad::db::Entity> entity) {
    cad::db::ObjectId id;
    cad::db::open<cad::db::BlockTableRecord>(id_, OpenMode::ForWrite)
        ->appendEntity(std::move(entity), id);
}

void BlockSketch::line(double x1, double y1, double x2, double y2) {
    append(std::make_unique<cad::db::Line>(Point3d(x1, y1, 0), Point3d(x2, y2, 0)));
}

void BlockSketch::circle(double cx, double cy, double radius) {
    append(std::make_unique<cad::db::Circle>(Point3d(cx, cy, 0), kUp, radius));
}

void BlockSketch::arc(double cx, double cy, double radius, double fromDegrees, double toDegrees) {
    append(std::make_unique<cad::db::Arc>(Point3d(cx, cy, 0), kUp, radius, fromDegrees * kDegree,
                                          toDegrees * kDegree));
}

void BlockSketch::sag(double x1, double x2, double y, double depth) {
    const double half = (x2 - x1) / 2;
    const double radius = (half * half + depth * depth) / (2 * depth);
    const double spread = std::asin(half / radius) / kDegree;
    arc((x1 + x2) / 2, y - depth + radius, radius, 270 - spread, 270 + spread);
}

void BlockSketch::rect(double x1, double y1, double x2, double y2) {
    polyline({{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}}, true);
}

void BlockSketch::polyline(const std::vector<Point2d>& points, bool closed,
                           const std::vector<double>& bulges) {
    auto polyline = std::make_unique<cad::db::Polyline>();
    for (unsigned i = 0; i < points.size(); ++i)
        polyline->addVertexAt(i, points[i], i < bulges.size() ? bulges[i] : 0.0);
    polyline->setClosed(closed);
    append(std::move(polyline));
}

void BlockSketch::hexagon(double cx, double cy, double acrossFlats) {
    const double corner = acrossFlats / std::sqrt(3.0);
    std::vector<Point2d> points;
    for (int i = 0; i < 6; ++i)
        points.emplace_back(cx + corner * std::cos(60 * i * kDegree),
                            cy + corner * std::sin(60 * i * kDegree));
    polyline(points, true);
}

}  // namespace vantor::sample
