// The drawing explorer's new drawing in a folder: an empty drawing under the first free name
// "새도면<n>.dxf", so that no file of the folder is ever written over.
#pragma once

#include <string>

#include "cad/sys/ErrorStatus.h"

namespace vantor {

struct NewDrawing {
    // The first "새도면<n>.dxf" (n from 1) of `folder` for which neither that file nor a
    // drawing "새도면<n>.dwg" exists: two drawings of one name would read as one in the lists.
    static std::string freeName(const std::string& folder);

    // Writes an empty drawing (the default layers, styles and layout) under the first free
    // name; the name is claimed with an exclusive create first, so a file another program
    // makes meanwhile is not overwritten either. `made` holds the new file's path on success.
    static cad::ErrorStatus create(const std::string& folder, std::string& made);
};

}  // namespace vantor
