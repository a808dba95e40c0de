// Input-point monitors: told of every point the editor computes while it takes point input
// (drag samples, picks and typed points), with the raw and computed points and the position in
// the view. They only watch; the point is not changed.
#pragma once

#include <string>

#include "cad/ed/WindowMessage.h"
#include "cad/ge/Point3d.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::ed {

// How the point came about, the host's point-history bits.
inline constexpr int kPointHistoryLastPt = 0x0004;     // a typed relative point
inline constexpr int kPointHistoryCyclingPt = 0x0040;  // object snap cycling moved on
inline constexpr int kPointHistoryOsnapped = 0x0080;

struct InputPoint {
    bool pointComputed = true;  // false when no point could be made of the input
    int history = 0;
    ge::Point3d lastPoint;      // LASTPOINT before this input
    ge::Point3d rawPoint;       // under the cursor, or as typed
    ge::Point3d computedPoint;  // after snapping (the same as raw here)
    ge::Point3d osnappedPoint;
    int windowX = 0;
    int windowY = 0;
};

struct InputPointMonitorResult {
    std::string additionalTooltip;
    bool appendToTooltip = false;
};

class InputPointMonitor {
public:
    virtual ~InputPointMonitor() = default;
    virtual ErrorStatus monitorInputPoint(const InputPoint& input,
                                          InputPointMonitorResult& result) = 0;
};

}  // namespace cad::ed
