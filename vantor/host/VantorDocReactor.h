// Keeps the library window in step with the host's documents: a newly active drawing is
// announced to the frame, and the preview is repainted when the drawing under it changes.
#pragma once

#include "cad/app/DocumentManagerReactor.h"

namespace vantor {

class VantorApp;

class VantorDocReactor : public cad::app::DocumentManagerReactor {
public:
    // Adds itself to the host's document manager, and removes itself when it goes.
    explicit VantorDocReactor(VantorApp& app);
    ~VantorDocReactor() override;
    VantorDocReactor(const VantorDocReactor&) = delete;
    VantorDocReactor& operator=(const VantorDocReactor&) = delete;

    void documentActivated(cad::app::Document* document) override;
    void documentToBeDeactivated(cad::app::Document* document) override;
    void documentDestroyed(const std::string& fileName) override;

private:
    VantorApp& app_;
};

}  // namespace vantor
