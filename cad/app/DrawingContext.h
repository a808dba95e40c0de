// What a drawing command works on: the editor it asks, the current document's drawing, the
// space new entities go into and the layer they take. It also asks for distances (a number,
// or a point measured from a base point), which the editor offers no request for.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::db {
class Database;
class Entity;
}  // namespace cad::db

namespace cad::ed {
class Editor;
}

namespace cad::app {

class DrawingContext {
public:
    explicit DrawingContext(ed::Editor& editor);

    ed::Editor& editor() const { return editor_; }
    // nullptr when no drawing is current: the commands then do nothing.
    db::Database* database() const { return database_; }

    // The layer new entities take: CLAYER when the editor knows the variable and the drawing
    // has that layer, otherwise the drawing's own current layer (layer 0 unless it says).
    db::ObjectId currentLayer() const;
    // Adds the entity to model space on the current layer and closes it; the null id when the
    // drawing refused it (a message says why).
    db::ObjectId append(std::unique_ptr<db::Entity> entity) const;
    // False when the entity could not be opened for write (it is then left as it was).
    bool erase(db::ObjectId id) const;

    struct DistanceRequest {
        std::optional<ge::Point3d> basePoint;  // a picked point gives its distance from here
        std::optional<double> defaultValue;    // what Enter answers
        int flags = 0;                         // RSG_NOZERO, RSG_NONEG
        std::string keywords;                  // as initGet takes them
    };
    // RTNORM with `result`, RTNONE on Enter without a default, RTKWORD for a keyword (read it
    // with Editor::getInput), RTCAN on Esc. Without a base point a picked point becomes one
    // and a second point is asked for. Refused answers are named and asked for again.
    int getDistance(std::string_view prompt, const DistanceRequest& request, double& result) const;

private:
    ed::Editor& editor_;
    db::Database* database_;
};

// "%.4f", the way the commands show lengths in their prompts' defaults.
std::string formatLength(double value);

}  // namespace cad::app
