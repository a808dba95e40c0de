// Where the editor's input comes from: the GUI (keyboard and mouse), a script file, or a test.
// next() blocks until the user acts; a source that has nothing more answers Kind::End.
#pragma once

#include "cad/ed/InputEvent.h"
#include "cad/ed/InputRequest.h"

namespace cad::ed {

class InputSource {
public:
    virtual ~InputSource() = default;
    virtual InputEvent next(const InputRequest& request) = 0;
};

}  // namespace cad::ed
