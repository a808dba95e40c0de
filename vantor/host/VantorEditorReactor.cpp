// Registration of the module's editor reactor.
#include "vantor/host/VantorEditorReactor.h"

#include "cad/ed/Editor.h"

namespace vantor {

VantorEditorReactor::VantorEditorReactor(cad::ed::Editor& editor) : editor_(editor) {
    editor_.addReactor(this);
}

VantorEditorReactor::~VantorEditorReactor() {
    editor_.removeReactor(this);
}

}  // namespace vantor
