// The selection a user makes at the command prompt, before choosing a command: a click adds
// the entity under the pick box (Shift+click takes it away again), a click on nothing opens
// a window that the next click closes (to the right it takes what lies inside, to the left
// what it crosses as well). Commands that work on a selection take it as they start.
#pragma once

#include <optional>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point2d.h"

namespace cad::gs {

class EntityPicker;

class PickfirstSelection {
public:
    // Answers true when the selection changed.
    bool click(const EntityPicker& picker, const ge::Point2d& at, double pickRadius, bool shift);
    // Where the window being opened started; nullopt when none is.
    const std::optional<ge::Point2d>& windowCorner() const { return corner_; }
    void cancelWindow() { corner_.reset(); }
    // Answers true when there was something to clear.
    bool clear();
    const std::vector<db::ObjectId>& ids() const { return ids_; }
    bool contains(db::ObjectId id) const;

private:
    void take(const std::vector<db::ObjectId>& found, bool remove);

    std::vector<db::ObjectId> ids_;
    std::optional<ge::Point2d> corner_;
    bool removing_ = false;
};

}  // namespace cad::gs
