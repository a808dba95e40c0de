// The insertion jig and its drag driver.
#include "vantor/placement/InsertionJig.h"

#include "cad/db/Entity.h"
#include "cad/db/Group.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ge/Tolerance.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/InsertionFilter.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::ge::Matrix3d;

InsertionJig::InsertionJig(cad::ed::Editor& editor, PlacedPart placed, int optionBits,
                           InsertionInfo info)
    : Jig(editor),
      placed_(std::move(placed)),
      optionBits_(optionBits),
      info_(std::move(info)),
      base_(placed_.basePoint),
      current_(placed_.basePoint) {
    drawable_.setEntities(placed_.entities);
}

InsertionJig::~InsertionJig() = default;

InsertionJig::Result InsertionJig::run(InsertionState& state) {
    cad::ed::Editor& editor = editorOf();
    setShown(false);
    if (!InsertionFilter::begin(editor)) editor.print(kFilterFailure);
    editor.addInputPointMonitor(this);

    Result result = Result::Erased;
    for (bool going = true; going;) {
        setDispPrompt(stageNumber_ == 0 ? kPointPrompt : kAnglePrompt);
        const DragStatus status = drag();
        going = false;
        switch (status) {
            case kKW1:
                state.outcome = stageNumber_ == 0 ? InsertionState::kOutcomeSetting
                                                  : InsertionState::kOutcomeUndo;
                break;
            case kKW2:
            case kCancel:
                // A drag-and-drop drag the user re-sampled with Shift ends without a word for
                // the window: the drop is still under way there.
                if (!InsertionFilter::shiftResample())
                    state.outcome = InsertionState::kOutcomeCancelled;
                break;
            case kNull:
                if (stageNumber_ == 1)
                    result = Result::Placed;
                else
                    state.outcome = InsertionState::kOutcomeSetting;
                break;
            default:
                if (stageNumber_ == 1 || (optionBits_ & DrawingOptions::kFixedAngle) != 0) {
                    result = Result::Placed;
                    break;
                }
                placement_ = productTransform();
                stage_ = Matrix3d::kIdentity;
                stageNumber_ = 1;
                going = true;
                break;
        }
    }

    InsertionFilter::end(editor);
    editor.removeInputPointMonitor(this);
    if (result == Result::Placed) {
        moveAndShow();
        editor.print(infoText_);
    } else {
        eraseAll();
    }
    return result;
}

cad::ed::Jig::DragStatus InsertionJig::sampler() {
    setSpecialCursorType(kCrosshair);
    setUserInputControls(kNullResponseAccepted | kAccept3dCoordinates);
    const DragStatus status = stageNumber_ == 0 ? samplePoint() : sampleAngle();
    infoText_ = info_.text(current_);
    return status;
}

cad::ed::Jig::DragStatus InsertionJig::samplePoint() {
    if (InsertionFilter::shiftResample() && !reread_) rereadPart();
    setKeywordList("Setting eXit");
    cad::ge::Point3d point;
    const DragStatus status = acquirePoint(point);
    if (status != kNormal) return status;
    if (lastPoint_ && !cad::ge::differs(point, *lastPoint_)) return kNoChange;
    lastPoint_ = point;
    current_ = point;
    stage_ = Matrix3d::translation(point - base_);
    return kNormal;
}

cad::ed::Jig::DragStatus InsertionJig::sampleAngle() {
    setKeywordList("Undo eXit");
    InsertionFilter::clearShiftResample();
    setSpecialCursorType(kRubberBand);
    const cad::ge::Point3d anchor = placement_ * base_;
    double angle = 0.0;
    DragStatus status = acquireAngle(angle, anchor);
    if (status == kNull)
        angle = kFullTurn;
    else if (status != kNormal)
        return status;
    else if (lastAngle_ &&
             !cad::ge::differs(angle, *lastAngle_, cad::ge::Tolerance::global().equalVector))
        return kNoChange;
    lastAngle_ = angle;
    stage_ = Matrix3d::rotation(angle, cad::ge::Vector3d::kZAxis, anchor);
    // Enter ends the drag without an update: the turn is composed here.
    if (status == kNull) update();
    return status;
}

// The part is placed anew, in place of the one dragged so far, and drawn at once.
void InsertionJig::rereadPart() {
    reread_ = true;
    if (!replace_) return;
    PlacedPart fresh;
    if (!replace_(fresh)) return;
    eraseAll();
    placed_ = std::move(fresh);
    base_ = placed_.basePoint;
    drawable_.setEntities(placed_.entities);
    setShown(false);
    lastPoint_.reset();
}

bool InsertionJig::update() {
    drawable_.setTransform(productTransform());
    return true;
}

void InsertionJig::setShown(bool shown) {
    for (ObjectId id : placed_.entities)
        if (auto entity = cad::db::open<cad::db::Entity>(id, OpenMode::ForWrite))
            entity->setVisibility(shown);
}

void InsertionJig::moveAndShow() {
    const Matrix3d transform = productTransform();
    for (ObjectId id : placed_.entities) {
        auto entity = cad::db::open<cad::db::Entity>(id, OpenMode::ForWrite);
        if (!entity) continue;
        entity->transformBy(transform);
        entity->setVisibility(true);
    }
}

void InsertionJig::eraseAll() {
    for (ObjectId id : placed_.entities)
        if (auto entity = cad::db::open<cad::db::Entity>(id, OpenMode::ForWrite)) entity->erase();
    if (auto group = cad::db::open<cad::db::Group>(placed_.group, OpenMode::ForWrite))
        group->erase();
}

ErrorStatus InsertionJig::monitorInputPoint(const cad::ed::InputPoint& input,
                                            cad::ed::InputPointMonitorResult& result) {
    if (!input.pointComputed && (input.history & cad::ed::kPointHistoryCyclingPt) != 0) {
        const cad::ge::Point3d& p = input.osnappedPoint;
        editorOf().printf("\nNo point computed, but new cycling osnap: %.2f, %.2f, %.2f\n", p.x,
                          p.y, p.z);
    }
    // The information text floats beside the cursor as the tooltip; the command line gets it
    // once, when the part is placed, rather than at every mouse move.
    result.additionalTooltip = infoText_;
    return ErrorStatus::eOk;
}

}  // namespace vantor
