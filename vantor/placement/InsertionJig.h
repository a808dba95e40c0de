// The two-stage drag of a placed part: the insertion point, then the angle. The part's
// entities already stand in the drawing, invisible; the jig draws them under its transform
// while the user drags, and on success moves them once and shows them. Every other ending
// erases them and leaves the outcome in the document's insertion state.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cad/ed/InputPointMonitor.h"
#include "cad/ed/Jig.h"
#include "cad/ge/Matrix3d.h"
#include "vantor/placement/InsertionInfo.h"
#include "vantor/placement/JigDrawable.h"
#include "vantor/placement/PartPlacement.h"

namespace vantor {

struct InsertionState;

class InsertionJig : public cad::ed::Jig, private cad::ed::InputPointMonitor {
public:
    static constexpr std::string_view kPointPrompt = "\n사양설정(S)/작도취소(X)/<삽입점>: ";
    static constexpr std::string_view kAnglePrompt = "\n명령취소(U)/작도취소(X)/각도 <0.0000>";
    static constexpr std::string_view kFilterFailure =
        "Can't register Windows Msg hook - VH - mouse\n";
    // Enter at the angle prompt turns the part by a full turn: it draws as the default 0 shown
    // in the prompt and leaves the angle the part was placed with.
    static constexpr double kFullTurn = 6.283185307179586;

    enum class Result { Placed, Erased };
    // Places the part again from the insertion state (the library window may have changed it
    // during a drag-and-drop) into `fresh`; false when it cannot.
    using Replace = std::function<bool(PlacedPart& fresh)>;

    // `optionBits` is the settings' option word (its fixed-angle bit skips the angle stage).
    InsertionJig(cad::ed::Editor& editor, PlacedPart placed, int optionBits, InsertionInfo info);
    ~InsertionJig() override;

    void setReplace(Replace replace) { replace_ = std::move(replace); }

    // The drag driver: hides the placed entities, drags, and moves and shows them on success
    // or erases them (and their group) on every other end, writing the outcome: 0 for
    // settings (S, or Enter at the point), 1 for cancel (X or Esc, unless the Shift re-sample
    // flag is set), 2 for undo (U at the angle).
    Result run(InsertionState& state);

    DragStatus sampler() override;
    bool update() override;
    cad::db::Entity* entity() const override { return &drawable_; }

    // What the drag shows and the transform the placed entities would take now.
    const std::string& infoText() const { return infoText_; }
    cad::ge::Matrix3d productTransform() const { return stage_ * placement_; }

private:
    DragStatus samplePoint();
    DragStatus sampleAngle();
    void rereadPart();
    void setShown(bool shown);
    void moveAndShow();
    void eraseAll();
    cad::ErrorStatus monitorInputPoint(const cad::ed::InputPoint& input,
                                       cad::ed::InputPointMonitorResult& result) override;

    PlacedPart placed_;
    int optionBits_;
    InsertionInfo info_;
    Replace replace_;
    mutable JigDrawable drawable_;
    int stageNumber_ = 0;  // 0 the point, 1 the angle
    cad::ge::Point3d base_;
    cad::ge::Point3d current_;
    std::optional<cad::ge::Point3d> lastPoint_;
    std::optional<double> lastAngle_;
    cad::ge::Matrix3d placement_;  // the accepted point (and the placement's own scale)
    cad::ge::Matrix3d stage_;      // the current sample's move or turn
    std::string infoText_;
    bool reread_ = false;
};

}  // namespace vantor
