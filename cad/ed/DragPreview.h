// The view's side of a drag: the jig's entity is redrawn after every accepted sample and taken
// away when the drag ends. The GUI draws it; headless there is none, or a counting one in tests.
#pragma once

namespace cad::db {
class Entity;
}

namespace cad::ed {

class DragPreview {
public:
    virtual ~DragPreview() = default;
    virtual void dragImageChanged(const db::Entity* entity) = 0;
    virtual void dragEnded() = 0;
};

}  // namespace cad::ed
