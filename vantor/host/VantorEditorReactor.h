// The module's editor reactor. It follows no notification yet; it lives from load to unload
// so the library window and the placement have their place to follow the editor from.
#pragma once

#include "cad/ed/EditorReactor.h"

namespace cad::ed {
class Editor;
}

namespace vantor {

class VantorEditorReactor : public cad::ed::EditorReactor {
public:
    // Adds itself to the editor, and removes itself when it goes.
    explicit VantorEditorReactor(cad::ed::Editor& editor);
    ~VantorEditorReactor() override;
    VantorEditorReactor(const VantorEditorReactor&) = delete;
    VantorEditorReactor& operator=(const VantorEditorReactor&) = delete;

private:
    cad::ed::Editor& editor_;
};

}  // namespace vantor
