// The order names are listed in: runs of digits compare by their value ("부품2" before
// "부품10"), everything else by character with letter case folded.
#pragma once

#include <QStringView>

namespace vantor {

// Negative, zero or positive as `a` sorts before, with or after `b`. Names that differ only
// in letter case or leading zeros still get a fixed order, so a listing never shuffles.
int naturalCompare(QStringView a, QStringView b);

inline bool naturalLess(QStringView a, QStringView b) { return naturalCompare(a, b) < 0; }

}  // namespace vantor
