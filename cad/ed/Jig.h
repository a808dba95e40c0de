// The drag driver: a jig shows an entity following the mouse while it asks for a point, an
// angle or a distance. drag() takes samples from the input until a final answer (a pick or
// typed point, Enter, Esc or a keyword); for each, the derived class's sampler() acquires the
// value and answers whether anything changed, and update() brings the entity in step. The
// view redraws entity() after every update through the editor's DragPreview.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cad/ed/Editor.h"
#include "cad/ed/InputEvent.h"
#include "cad/ed/KeywordList.h"
#include "cad/ge/Point3d.h"

namespace cad::db {
class Entity;
}

namespace cad::ed {

class Jig {
public:
    enum DragStatus {
        kModeless = -17,
        kNoChange = -6,  // the sample changed nothing: no update, no redraw
        kCancel = -4,
        kOther = -3,  // other text, with kAcceptOtherInputString
        kNull = -1,   // Enter, with kNullResponseAccepted
        kNormal = 0,
        kKW1 = 1,  // keyword 1 is the first keyword of the list
        kKW2,
        kKW3,
        kKW4,
        kKW5,
        kKW6,
        kKW7,
        kKW8,
        kKW9,
    };
    enum UserInputControls {
        kGovernedByOrthoMode = 0x0001,
        kNullResponseAccepted = 0x0002,
        kDontEchoCancelForCtrlC = 0x0004,
        kDontUpdateLastPoint = 0x0008,
        kNoDwgLimitsChecking = 0x0010,
        kNoZeroResponseAccepted = 0x0020,
        kNoNegativeResponseAccepted = 0x0040,
        kAccept3dCoordinates = 0x0080,
        kAcceptMouseUpAsPoint = 0x0100,
        kAnyBlankTerminatesInput = 0x0200,
        kInitialBlankTerminatesInput = 0x0400,
        kAcceptOtherInputString = 0x0800,
    };
    enum CursorType {
        kNoSpecialCursor = -1,
        kCrosshair = 0,
        kRectCursor = 1,
        kRubberBand = 2,
        kNotRotated = 3,
        kTargetBox = 4,
        kRotatedCrosshair = 5,
        kCrosshairNoRotate = 6,
        kInvisible = 7,
        kEntitySelect = 8,
        kParallelogram = 9,
        kEntitySelectNoPersp = 10,
        kPkfirstOrGrips = 11,
        kCrosshairDashed = 12,
    };

    explicit Jig(Editor& editor = ed::editor()) : editor_(editor) {}
    virtual ~Jig() = default;
    Jig(const Jig&) = delete;
    Jig& operator=(const Jig&) = delete;

    // Runs the drag; see the class comment. Prints the prompt first, "*Cancel*" on Esc.
    DragStatus drag();

    virtual DragStatus sampler() = 0;
    // Answers whether the entity changed and must be redrawn.
    virtual bool update() = 0;
    virtual db::Entity* entity() const = 0;

    void setDispPrompt(std::string_view prompt) { prompt_ = prompt; }
    const std::string& dispPrompt() const { return prompt_; }
    void setKeywordList(std::string_view keywords) { keywords_ = KeywordList(keywords); }
    const KeywordList& keywordList() const { return keywords_; }
    void setSpecialCursorType(CursorType type) { cursor_ = type; }
    CursorType specialCursorType() const { return cursor_; }
    void setUserInputControls(int controls) { controls_ = controls; }
    int userInputControls() const { return controls_; }

    // For sampler(): the value of the current input. kNormal with the value, kNull on Enter
    // (when accepted), kKWn for a keyword, kCancel on Esc, kOther for other accepted text.
    // Input that does not read as the value is refused: the prompt is shown again.
    DragStatus acquirePoint(ge::Point3d& point);
    DragStatus acquirePoint(ge::Point3d& point, const ge::Point3d& basePoint);
    // Radians in [0, 2π); samples and typed points give the angle from the base point (the
    // last point when there is none), typed numbers are degrees.
    DragStatus acquireAngle(double& angle);
    DragStatus acquireAngle(double& angle, const ge::Point3d& basePoint);
    DragStatus acquireDist(double& distance);
    DragStatus acquireDist(double& distance, const ge::Point3d& basePoint);

    Editor& editorOf() const { return editor_; }

private:
    // What the current input is, read for an acquire: the status, or a refusal.
    DragStatus acquire(InputRequest::Kind kind, const ge::Point3d* basePoint, double* number,
                       ge::Point3d* point);
    void refuse(std::string message);

    Editor& editor_;
    std::string prompt_;
    KeywordList keywords_;
    CursorType cursor_ = kCrosshair;
    int controls_ = 0;

    std::optional<ge::Point3d> displayBase_;  // the rubber band's anchor for the view
    std::optional<ge::Point3d> acquiredPoint_;
    InputEvent current_;
    bool acquired_ = false;
    DragStatus acquiredStatus_ = kNormal;
    bool refused_ = false;
    std::string refusal_;
};

}  // namespace cad::ed
