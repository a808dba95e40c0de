// LINE, CIRCLE, ARC, RECTANG and TEXT, and the registration of PLINE beside them.
#include "cad/app/DrawingCommands.h"

#include <cmath>
#include <cstdio>
#include <numbers>

#include "cad/app/Application.h"
#include "cad/app/ArcGeometry.h"
#include "cad/app/DrawingContext.h"
#include "cad/app/HostCommands.h"
#include "cad/app/PolylineCommand.h"
#include "cad/db/Arc.h"
#include "cad/db/Circle.h"
#include "cad/db/Database.h"
#include "cad/db/Line.h"
#include "cad/db/Polyline.h"
#include "cad/db/Text.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/TypedInput.h"

namespace cad::app {

namespace {

// Degrees as a prompt shows a default: "0", "45", "22.5".
std::string formatDegrees(double radians) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.4f", radians * 180.0 / std::numbers::pi);
    std::string text = buffer;
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

double directionOf(const ge::Point3d& from, const ge::Point3d& to) {
    return std::atan2(to.y - from.y, to.x - from.x);
}

bool samePlanPoint(const ge::Point3d& a, const ge::Point3d& b) {
    return ge::Point2d(a.x, a.y).isEqualTo(ge::Point2d(b.x, b.y));
}

}  // namespace

void DrawingCommands::registerCommands() {
    CommandStack& stack = app_.commandStack();
    struct Entry {
        const char* name;
        void (DrawingCommands::*run)();
    };
    const Entry entries[] = {
        {"LINE", &DrawingCommands::line},         {"CIRCLE", &DrawingCommands::circle},
        {"ARC", &DrawingCommands::arc},           {"PLINE", &DrawingCommands::polyline},
        {"RECTANG", &DrawingCommands::rectangle}, {"TEXT", &DrawingCommands::text},
    };
    for (const Entry& entry : entries)
        stack.addCommand(HostCommands::kGroupName, entry.name, entry.name, ACRX_CMD_MODAL,
                         [this, run = entry.run] { (this->*run)(); });
}

void DrawingCommands::line() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    ge::Point3d first;
    if (editor.getPoint("\nSpecify first point: ", first) != ed::RTNORM) return;
    // Each segment is a line of its own, added as soon as its end is given: Esc or Enter end
    // the command and what was drawn stays.
    std::vector<ge::Point3d> points{first};
    std::vector<db::ObjectId> segments;
    for (;;) {
        const bool canClose = segments.size() >= 2;
        editor.initGet(0, canClose ? "Close Undo" : "Undo");
        ge::Point3d next;
        const int code = editor.getPoint(canClose ? "\nSpecify next point or [Close/Undo]: "
                                                  : "\nSpecify next point or [Undo]: ",
                                         next, points.back());
        if (code == ed::RTNORM) {
            if (next.isEqualTo(points.back())) continue;  // no segment of zero length
            db::ObjectId id = context.append(std::make_unique<db::Line>(points.back(), next));
            if (id.isNull()) return;
            segments.push_back(id);
            points.push_back(next);
            continue;
        }
        if (code != ed::RTKWORD) return;
        std::string word;
        editor.getInput(word);
        if (word == "Close") {
            context.append(std::make_unique<db::Line>(points.back(), first));
            editor.setLastPoint(first);
            return;
        }
        if (segments.empty()) {
            editor.print("\nAll segments already undone.");
            continue;
        }
        context.erase(segments.back());
        segments.pop_back();
        points.pop_back();
        editor.setLastPoint(points.back());
    }
}

void DrawingCommands::circle() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    editor.initGet(0, "3P 2P");
    ge::Point3d center;
    int code = editor.getPoint("\nSpecify center point for circle or [3P/2P]: ", center);
    if (code == ed::RTKWORD) {
        std::string word;
        editor.getInput(word);
        if (word == "3P")
            circleByThreePoints(context);
        else
            circleByDiameterEnds(context);
        return;
    }
    if (code != ed::RTNORM) return;

    const int positive = ed::RSG_NOZERO | ed::RSG_NONEG;
    std::string prompt = "\nSpecify radius of circle or [Diameter]";
    if (circleRadius_) prompt += " <" + formatLength(*circleRadius_) + ">";
    double radius = 0.0;
    code =
        context.getDistance(prompt + ": ", {center, circleRadius_, positive, "Diameter"}, radius);
    if (code == ed::RTKWORD) {
        std::optional<double> diameter;
        if (circleRadius_) diameter = 2.0 * *circleRadius_;
        prompt = "\nSpecify diameter of circle";
        if (diameter) prompt += " <" + formatLength(*diameter) + ">";
        code = context.getDistance(prompt + ": ", {center, diameter, positive, {}}, radius);
        radius /= 2.0;
    }
    if (code != ed::RTNORM) return;
    if (!context.append(std::make_unique<db::Circle>(center, ge::Vector3d::kZAxis, radius))
             .isNull())
        circleRadius_ = radius;
}

void DrawingCommands::circleByThreePoints(DrawingContext& context) {
    ed::Editor& editor = context.editor();
    ge::Point3d a, b, c;
    if (editor.getPoint("\nSpecify first point on circle: ", a) != ed::RTNORM) return;
    if (editor.getPoint("\nSpecify second point on circle: ", b, a) != ed::RTNORM) return;
    for (;;) {
        if (editor.getPoint("\nSpecify third point on circle: ", c, b) != ed::RTNORM) return;
        if (auto circle = circleThrough(a, b, c)) {
            context.append(
                std::make_unique<db::Circle>(circle->center, ge::Vector3d::kZAxis, circle->radius));
            circleRadius_ = circle->radius;
            return;
        }
        editor.print("\nThe three points lie on one line: no circle passes through them.");
    }
}

void DrawingCommands::circleByDiameterEnds(DrawingContext& context) {
    ed::Editor& editor = context.editor();
    ge::Point3d a, b;
    if (editor.getPoint("\nSpecify first end point of circle's diameter: ", a) != ed::RTNORM)
        return;
    for (;;) {
        if (editor.getPoint("\nSpecify second end point of circle's diameter: ", b, a) !=
            ed::RTNORM)
            return;
        if (!samePlanPoint(a, b)) break;
        editor.print("\nThe two points coincide: they span no circle.");
    }
    const ge::Point3d center(0.5 * (a.x + b.x), 0.5 * (a.y + b.y), a.z);
    const double radius = 0.5 * std::hypot(b.x - a.x, b.y - a.y);
    context.append(std::make_unique<db::Circle>(center, ge::Vector3d::kZAxis, radius));
    circleRadius_ = radius;
}

void DrawingCommands::arc() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    ge::Point3d start, center;
    editor.initGet(0, "Center");
    int code = editor.getPoint("\nSpecify start point of arc or [Center]: ", start);
    if (code == ed::RTKWORD) {
        if (editor.getPoint("\nSpecify center point of arc: ", center) != ed::RTNORM) return;
        for (;;) {
            if (editor.getPoint("\nSpecify start point of arc: ", start, center) != ed::RTNORM)
                return;
            if (!samePlanPoint(start, center)) break;
            editor.print("\nThe start point is the center: the arc has no radius.");
        }
        arcFromCenter(context, center, start);
        return;
    }
    if (code != ed::RTNORM) return;

    ge::Point3d second;
    editor.initGet(0, "Center");
    code = editor.getPoint("\nSpecify second point of arc or [Center]: ", second, start);
    if (code == ed::RTKWORD) {
        for (;;) {
            if (editor.getPoint("\nSpecify center point of arc: ", center, start) != ed::RTNORM)
                return;
            if (!samePlanPoint(start, center)) break;
            editor.print("\nThe center is the start point: the arc has no radius.");
        }
        arcFromCenter(context, center, start);
        return;
    }
    if (code != ed::RTNORM) return;
    for (;;) {
        ge::Point3d end;
        if (editor.getPoint("\nSpecify end point of arc: ", end, second) != ed::RTNORM) return;
        auto circle = circleThrough(start, second, end);
        if (!circle) {
            editor.print("\nThe three points lie on one line: no arc passes through them.");
            continue;
        }
        // The arc entity always runs counter-clockwise: a clockwise pick swaps its ends.
        double from = directionOf(circle->center, start), to = directionOf(circle->center, end);
        if (!circle->counterClockwise) std::swap(from, to);
        context.append(std::make_unique<db::Arc>(circle->center, ge::Vector3d::kZAxis,
                                                 circle->radius, from, to));
        return;
    }
}

void DrawingCommands::arcFromCenter(DrawingContext& context, const ge::Point3d& center,
                                    const ge::Point3d& start) {
    ed::Editor& editor = context.editor();
    const double from = directionOf(center, start);
    double to = 0.0;
    for (;;) {
        editor.initGet(0, "Angle");
        ge::Point3d end;
        const int code = editor.getPoint("\nSpecify end point of arc or [Angle]: ", end, center);
        if (code == ed::RTKWORD) {
            double included = 0.0;
            editor.initGet(ed::RSG_NOZERO);
            if (editor.getAngle("\nSpecify included angle: ", included, center) != ed::RTNORM)
                return;
            to = from + included;
            break;
        }
        if (code != ed::RTNORM) return;
        // Only the end point's direction counts: the arc keeps the start point's radius.
        if (!samePlanPoint(end, center)) {
            to = directionOf(center, end);
            break;
        }
        editor.print("\nThe end point is the center: it gives the arc no direction.");
    }
    const double radius = std::hypot(start.x - center.x, start.y - center.y);
    context.append(std::make_unique<db::Arc>(center, ge::Vector3d::kZAxis, radius, from, to));
}

void DrawingCommands::polyline() {
    DrawingContext context(app_.editor());
    if (context.database() == nullptr) return;
    PolylineCommand(context, polylineWidth_).run();
}

void DrawingCommands::rectangle() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    ge::Point3d first, other;
    if (editor.getPoint("\nSpecify first corner point: ", first) != ed::RTNORM) return;
    for (;;) {
        if (editor.getCorner("\nSpecify other corner point: ", first, other) != ed::RTNORM) return;
        if (std::abs(other.x - first.x) > 0.0 && std::abs(other.y - first.y) > 0.0) break;
        editor.print("\nThe corners must differ in both X and Y.");
    }
    auto outline = std::make_unique<db::Polyline>();
    const ge::Point2d corners[] = {
        {first.x, first.y}, {other.x, first.y}, {other.x, other.y}, {first.x, other.y}};
    for (const ge::Point2d& corner : corners) outline->addVertexAt(outline->numVerts(), corner);
    outline->setClosed(true);
    outline->setElevation(first.z);
    context.append(std::move(outline));
}

void DrawingCommands::text() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    db::Database* database = context.database();
    if (database == nullptr) return;
    editor.printf("\nCurrent text style:  \"Standard\"  Text height:  %s",
                  formatLength(textHeight_).c_str());
    ge::Point3d position;
    if (editor.getPoint("\nSpecify start point of text: ", position) != ed::RTNORM) return;
    double height = 0.0;
    if (context.getDistance("\nSpecify height <" + formatLength(textHeight_) + ">: ",
                            {position, textHeight_, ed::RSG_NOZERO | ed::RSG_NONEG, {}},
                            height) != ed::RTNORM)
        return;
    textHeight_ = height;
    double rotation = textRotation_;
    const int code = editor.getAngle(
        "\nSpecify rotation angle of text <" + formatDegrees(textRotation_) + ">: ", rotation,
        position);
    if (code != ed::RTNORM && code != ed::RTNONE) return;
    textRotation_ = rotation;
    // Every line entered goes a line and a half below the one before; an empty one ends.
    const ge::Vector3d down(1.5 * height * std::sin(rotation), -1.5 * height * std::cos(rotation),
                            0.0);
    for (;;) {
        std::string line;
        if (editor.getString("\nEnter text: ", line, true) != ed::RTNORM || line.empty()) return;
        if (context
                .append(std::make_unique<db::Text>(position, line, database->textStyleStandard(),
                                                   height, rotation))
                .isNull())
            return;
        position += down;
    }
}

}  // namespace cad::app
