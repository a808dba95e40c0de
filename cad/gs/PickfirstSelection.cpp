// Clicks and windows into a selection.
#include "cad/gs/PickfirstSelection.h"

#include <algorithm>

#include "cad/gs/EntityPicker.h"

namespace cad::gs {

bool PickfirstSelection::click(const EntityPicker& picker, const ge::Point2d& at, double pickRadius, bool shift) {
    if (corner_) {
        Box2d box;
        box.add(*corner_);
        box.add(at);
        const bool crossing = at.x < corner_->x;
        corner_.reset();
        const std::size_t before = ids_.size();
        take(picker.entitiesIn(box, crossing), removing_);
        return ids_.size() != before;
    }
    const std::vector<db::ObjectId> hit = picker.entitiesAt(at, pickRadius);
    if (hit.empty()) {
        corner_ = at;
        removing_ = shift;
        return false;
    }
    const std::size_t before = ids_.size();
    take({hit.front()}, shift);
    return ids_.size() != before;
}

void PickfirstSelection::take(const std::vector<db::ObjectId>& found, bool remove) {
    for (db::ObjectId id : found) {
        auto it = std::find(ids_.begin(), ids_.end(), id);
        if (remove && it != ids_.end())
            ids_.erase(it);
        else if (!remove && it == ids_.end())
            ids_.push_back(id);
    }
}

bool PickfirstSelection::clear() {
    const bool had = !ids_.empty() || corner_;
    ids_.clear();
    corner_.reset();
    return had;
}

bool PickfirstSelection::contains(db::ObjectId id) const {
    return std::find(ids_.begin(), ids_.end(), id) != ids_.end();
}

}  // namespace cad::gs
