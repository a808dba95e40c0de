// What the editor is waiting for, handed to the input source with each request so a view can
// show the right cursor, the rubber band from the base point and the prompt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"

namespace cad::ed {

struct InputRequest {
    enum class Kind {
        Command,
        Point,
        Corner,
        Angle,
        Distance,
        String,
        Keyword,
        Integer,
        Real,
        EntitySelect,
        Selection,
        Drag
    };
    InputRequest() = default;
    InputRequest(Kind requestKind, std::string promptText,
                 std::optional<ge::Point3d> base = std::nullopt)
        : kind(requestKind), prompt(std::move(promptText)), basePoint(base) {}

    Kind kind = Kind::Command;
    std::string prompt;
    std::optional<ge::Point3d> basePoint;
    std::string keywords;      // the keyword list in force ("Undo eXit")
    int flags = 0;             // initGet flags, or the jig's user-input controls
    int cursorType = 0;        // the jig's special cursor (0 crosshair, 2 rubber band, ...)
    bool allowSpaces = false;  // only Enter ends a typed answer
    bool wait = true;          // false: answer End rather than wait for the input source
    // Entities a view shows following the cursor from the base point (MOVE, COPY) or turning
    // about it (ROTATE) while the request waits.
    enum class Motion { Move, Rotate };
    std::vector<db::ObjectId> dragged;
    Motion motion = Motion::Move;
};

}  // namespace cad::ed
