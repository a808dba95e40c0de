// The information text shown while a part is dragged: what the part is and where it stands.
#pragma once

#include <string>

#include "cad/ge/Point3d.h"

namespace vantor {

struct PartRecord;

struct InsertionInfo {
    const PartRecord* record = nullptr;  // null, or not loaded, for an ordinary block
    std::string libraryName;             // the library drawing's file name
    std::string blockName;
    std::string comments;  // the block's description
    int optionBits = 0;    // the settings' option word

    // A catalogue part: "\n  품명: <name>" (the English name with the option's bit) and
    // "\n  사양: <spec>"; an ordinary block: "\n일반블록[<library>]", "\n  이름: <block>" and
    // "\n  설명: <description>"; then "\n  위치: X(...), Y(...), Z(...)". The specification
    // (or description) line and the position line each show only with their option bit.
    std::string text(const cad::ge::Point3d& point) const;
};

}  // namespace vantor
