// One registered library drawing of a management window, with its path already split for the
// list views.
#pragma once

#include <string>

namespace vantor {

struct RegisteredDrawing {
    std::string path;
    std::string drive;  // "C:", or empty for a network path
    std::string dir;    // ends in a separator
    std::string name;   // without the extension
    std::string ext;    // with its dot
    // 1 when added; the tree build sets it to whether the drawing's library data could be
    // read, and the list optimisation removes what is not 1.
    int active = 1;
};

}  // namespace vantor
