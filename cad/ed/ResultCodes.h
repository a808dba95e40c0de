// The result codes every input request answers and the flags of initGet, with the host's
// numeric values, so code written against the host reads the same here.
#pragma once

namespace cad::ed {

inline constexpr int RTNORM = 5100;  // the request was answered
inline constexpr int RTNONE = 5000;  // Enter with nothing typed
inline constexpr int RTERROR = -5001;
inline constexpr int RTCAN = -5002;    // Esc, or the input ran out
inline constexpr int RTREJ = -5003;    // the request itself was invalid
inline constexpr int RTKWORD = -5005;  // a keyword (or, with RSG_OTHER, arbitrary text)

// initGet flags: they apply to the next input request only.
inline constexpr int RSG_NONULL = 1;   // Enter is refused
inline constexpr int RSG_NOZERO = 2;   // zero is refused
inline constexpr int RSG_NONEG = 4;    // negative values are refused
inline constexpr int RSG_NOLIM = 8;    // points outside the limits are accepted (always here)
inline constexpr int RSG_GETZ = 16;    // a Z value is asked for (points keep their Z here)
inline constexpr int RSG_DASH = 32;    // dashed rubber band
inline constexpr int RSG_2D = 64;      // distances and angles ignore Z
inline constexpr int RSG_OTHER = 128;  // any text is accepted and answered as RTKWORD

}  // namespace cad::ed
