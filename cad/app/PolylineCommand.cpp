// PLINE.
#include "cad/app/PolylineCommand.h"

#include <cmath>
#include <memory>

#include "cad/app/ArcGeometry.h"
#include "cad/app/DrawingContext.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Polyline.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"

namespace cad::app {

void PolylineCommand::run() {
    ed::Editor& editor = context_.editor();
    ge::Point3d start;
    if (editor.getPoint("\nSpecify start point: ", start) != ed::RTNORM) return;
    vertices_.push_back({start, 0.0, width_, width_});
    startWidth_ = endWidth_ = width_;
    editor.printf("\nCurrent line-width is %s", formatLength(width_).c_str());
    while (step()) {
    }
}

bool PolylineCommand::step() {
    ed::Editor& editor = context_.editor();
    const ge::Point3d last = vertices_.back().point;
    // A straight segment closes a figure of two segments at least; an arc closes one.
    const bool canClose = vertices_.size() >= (arcMode_ ? 2u : 3u);
    std::string keywords, prompt;
    if (arcMode_) {
        keywords = canClose ? "Close Line Undo Width" : "Line Undo Width";
        prompt = canClose ? "\nSpecify endpoint of arc or [Close/Line/Undo/Width]: "
                          : "\nSpecify endpoint of arc or [Line/Undo/Width]: ";
    } else {
        keywords = canClose ? "Arc Close Undo Width" : "Arc Undo Width";
        prompt = canClose ? "\nSpecify next point or [Arc/Close/Undo/Width]: "
                          : "\nSpecify next point or [Arc/Undo/Width]: ";
    }
    editor.initGet(0, keywords);
    ge::Point3d end;
    const int code = editor.getPoint(prompt, end, last);
    if (code == ed::RTNORM) {
        if (ge::Point2d(end.x, end.y).isEqualTo(ge::Point2d(last.x, last.y))) return true;
        double bulge = 0.0;
        if (arcMode_) {
            std::optional<double> tangent = tangentBulge(last, direction(), end);
            if (!tangent) {
                editor.print(
                    "\nThe end point lies straight behind the arc's start: no arc reaches it.");
                return true;
            }
            bulge = *tangent;
        }
        addSegment(end, bulge);
        return true;
    }
    if (code != ed::RTKWORD) return false;
    std::string word;
    editor.getInput(word);
    if (word == "Arc" || word == "Line") {
        arcMode_ = word == "Arc";
    } else if (word == "Close") {
        if (close()) return false;
    } else if (word == "Undo") {
        undo();
    } else if (word == "Width") {
        return askWidths();
    }
    return true;
}

void PolylineCommand::addSegment(const ge::Point3d& end, double bulge) {
    Vertex& from = vertices_.back();
    from.bulge = bulge;
    from.startWidth = startWidth_;
    from.endWidth = endWidth_;
    // A tapered segment sets the width the following ones keep.
    startWidth_ = endWidth_;
    vertices_.push_back({end, 0.0, startWidth_, endWidth_});
    update();
}

void PolylineCommand::undo() {
    ed::Editor& editor = context_.editor();
    if (vertices_.size() < 2) {
        editor.print("\nAll segments already undone.");
        return;
    }
    vertices_.pop_back();
    // The segment's widths come back, so the next one is drawn as the undone one was.
    Vertex& last = vertices_.back();
    startWidth_ = last.startWidth;
    endWidth_ = last.endWidth;
    last.bulge = 0.0;
    editor.setLastPoint(last.point);
    update();
}

bool PolylineCommand::close() {
    Vertex& last = vertices_.back();
    double bulge = 0.0;
    if (arcMode_) {
        std::optional<double> tangent =
            tangentBulge(last.point, direction(), vertices_.front().point);
        if (!tangent) {
            context_.editor().print(
                "\nThe start point lies straight behind the arc's start: no arc closes.");
            return false;
        }
        bulge = *tangent;
    }
    last.bulge = bulge;
    last.startWidth = startWidth_;
    last.endWidth = endWidth_;
    update(true);
    context_.editor().setLastPoint(vertices_.front().point);
    return true;
}

bool PolylineCommand::askWidths() {
    const ge::Point3d base = vertices_.back().point;
    const int nonNegative = ed::RSG_NONEG;
    double start = 0.0, end = 0.0;
    if (context_.getDistance("\nSpecify starting width <" + formatLength(endWidth_) + ">: ",
                             {base, endWidth_, nonNegative, {}}, start) != ed::RTNORM)
        return false;
    if (context_.getDistance("\nSpecify ending width <" + formatLength(start) + ">: ",
                             {base, start, nonNegative, {}}, end) != ed::RTNORM)
        return false;
    startWidth_ = start;
    endWidth_ = end;
    width_ = end;
    return true;
}

double PolylineCommand::direction() const {
    if (vertices_.size() < 2) return 0.0;
    const Vertex& from = vertices_[vertices_.size() - 2];
    return segmentEndDirection(from.point, vertices_.back().point, from.bulge);
}

void PolylineCommand::update(bool closed) {
    if (vertices_.size() < 2) {
        if (!id_.isNull()) context_.erase(id_);
        id_ = db::ObjectId::kNull;
        return;
    }
    auto fill = [&](db::Polyline& polyline) {
        while (polyline.numVerts() > 0) polyline.removeVertexAt(polyline.numVerts() - 1);
        for (const Vertex& v : vertices_)
            polyline.addVertexAt(polyline.numVerts(), {v.point.x, v.point.y}, v.bulge, v.startWidth,
                                 v.endWidth);
        polyline.setElevation(vertices_.front().point.z);
        polyline.setClosed(closed);
    };
    if (id_.isNull()) {
        auto polyline = std::make_unique<db::Polyline>();
        fill(*polyline);
        id_ = context_.append(std::move(polyline));
        return;
    }
    if (auto polyline = db::open<db::Polyline>(id_, db::OpenMode::ForWrite)) fill(*polyline);
}

}  // namespace cad::app
