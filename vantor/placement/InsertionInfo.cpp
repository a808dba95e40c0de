// The drag's information text.
#include "vantor/placement/InsertionInfo.h"

#include <cstdio>

#include "vantor/placement/DrawingOptions.h"
#include "vantor/store/PartRecord.h"

namespace vantor {

std::string InsertionInfo::text(const cad::ge::Point3d& point) const {
    const bool showSpecification = (optionBits & DrawingOptions::kShowSpecification) != 0;
    std::string out;
    if (record != nullptr && record->loaded) {
        const bool english = (optionBits & DrawingOptions::kEnglishName) != 0;
        out += "\n  품명: " + (english ? record->ename : record->kname);
        if (showSpecification) out += "\n  사양: " + record->spec;
    } else {
        out += "\n일반블록[" + libraryName + "]";
        out += "\n  이름: " + blockName;
        if (showSpecification) out += "\n  설명: " + comments;
    }
    if (optionBits & DrawingOptions::kShowCoordinates) {
        char position[160];
        std::snprintf(position, sizeof position, "\n  위치: X(%0.4f), Y(%0.4f), Z(%0.4f)", point.x,
                      point.y, point.z);
        out += position;
    }
    return out;
}

}  // namespace vantor
