// The drag loop and the acquire functions of the jig.
#include "cad/ed/Jig.h"

#include <algorithm>

#include "cad/ed/DragPreview.h"
#include "cad/ed/TypedInput.h"

namespace cad::ed {

Jig::DragStatus Jig::drag() {
    editor_.print(prompt_);
    DragPreview* preview = editor_.dragPreview();
    for (;;) {
        InputRequest request(InputRequest::Kind::Drag, prompt_, displayBase_);
        request.keywords = keywords_.text();
        request.flags = controls_;
        request.cursorType = cursor_;
        current_ = editor_.nextInput(request);
        bool sample = current_.kind == InputEvent::Kind::Move;
        if (sample || current_.kind == InputEvent::Kind::Pick)
            editor_.reportInputPoint(current_.message.point, &current_.message);

        acquired_ = false;
        refused_ = false;
        acquiredPoint_.reset();
        DragStatus status = sampler();
        if (sample) {
            if (status == kNormal && update() && preview) preview->dragImageChanged(entity());
            continue;
        }
        if (refused_) {
            editor_.print(refusal_);
            editor_.print(prompt_);
            continue;
        }
        // The final input settles the drag even when it changed nothing since the last sample.
        DragStatus result = acquired_ ? acquiredStatus_ : status;
        if (result == kNoChange) result = kNormal;
        if (result == kNormal && status == kNormal && update() && preview)
            preview->dragImageChanged(entity());
        if (result == kNormal && acquiredPoint_ && (controls_ & kDontUpdateLastPoint) == 0)
            editor_.setLastPoint(*acquiredPoint_);
        if (result == kCancel && (controls_ & kDontEchoCancelForCtrlC) == 0)
            editor_.print("*Cancel*");
        if (preview) preview->dragEnded();
        return result;
    }
}

void Jig::refuse(std::string message) {
    refused_ = true;
    refusal_ = std::move(message);
}

Jig::DragStatus Jig::acquire(InputRequest::Kind kind, const ge::Point3d* basePoint, double* number,
                             ge::Point3d* point) {
    acquired_ = true;
    displayBase_ = basePoint ? std::optional<ge::Point3d>(*basePoint) : std::nullopt;
    auto answer = [this](DragStatus status) { return acquiredStatus_ = status; };
    const char* invalid = kind == InputRequest::Kind::Point ? "\nInvalid point."
                          : kind == InputRequest::Kind::Angle
                              ? "\nRequires numeric angle or second point."
                              : "\nRequires numeric distance or second point.";
    bool final = current_.kind != InputEvent::Kind::Move;

    std::optional<ge::Point3d> at;
    std::optional<double> value;
    switch (current_.kind) {
        case InputEvent::Kind::Cancel:
        case InputEvent::Kind::End:
            return answer(kCancel);
        case InputEvent::Kind::Key:
            return answer(kNoChange);
        case InputEvent::Kind::Move:
        case InputEvent::Kind::Pick:
            at = current_.message.point;
            break;
        case InputEvent::Kind::Text: {
            const std::string& text = current_.text;
            if (text.empty()) {
                if (controls_ & kNullResponseAccepted) return answer(kNull);
                refuse({});
                return answer(kNoChange);
            }
            if (auto index = keywords_.match(text); index && *index < 9)
                return answer(static_cast<DragStatus>(kKW1 + static_cast<int>(*index)));
            if (kind != InputRequest::Kind::Point) value = parseReal(text);
            if (!value) at = parsePoint(text, editor_.lastPoint());
            bool typed3d = std::count(text.begin(), text.end(), ',') == 2;
            if (at && kind == InputRequest::Kind::Point && typed3d &&
                (controls_ & kAccept3dCoordinates) == 0)
                at.reset();
            if (!value && !at) {
                if (controls_ & kAcceptOtherInputString) return answer(kOther);
                refuse(invalid);
                return answer(kNoChange);
            }
            break;
        }
    }

    if (kind == InputRequest::Kind::Point) {
        *point = *at;
        acquiredPoint_ = *at;
        return answer(kNormal);
    }
    ge::Point3d from = basePoint ? *basePoint : editor_.lastPoint();
    if (kind == InputRequest::Kind::Angle)
        *number = value ? normalizeAngle(degreesToRadians(*value)) : angleBetween(from, *at);
    else
        *number = value ? *value : from.distanceTo(*at);
    if (final && (controls_ & kNoZeroResponseAccepted) && *number == 0.0) {
        refuse("\nValue must be nonzero.");
        return answer(kNoChange);
    }
    if (final && (controls_ & kNoNegativeResponseAccepted) && *number < 0.0) {
        refuse("\nValue must be positive.");
        return answer(kNoChange);
    }
    return answer(kNormal);
}

Jig::DragStatus Jig::acquirePoint(ge::Point3d& point) {
    return acquire(InputRequest::Kind::Point, nullptr, nullptr, &point);
}

Jig::DragStatus Jig::acquirePoint(ge::Point3d& point, const ge::Point3d& basePoint) {
    return acquire(InputRequest::Kind::Point, &basePoint, nullptr, &point);
}

Jig::DragStatus Jig::acquireAngle(double& angle) {
    return acquire(InputRequest::Kind::Angle, nullptr, &angle, nullptr);
}

Jig::DragStatus Jig::acquireAngle(double& angle, const ge::Point3d& basePoint) {
    return acquire(InputRequest::Kind::Angle, &basePoint, &angle, nullptr);
}

Jig::DragStatus Jig::acquireDist(double& distance) {
    return acquire(InputRequest::Kind::Distance, nullptr, &distance, nullptr);
}

Jig::DragStatus Jig::acquireDist(double& distance, const ge::Point3d& basePoint) {
    return acquire(InputRequest::Kind::Distance, &basePoint, &distance, nullptr);
}

}  // namespace cad::ed
