// The module's commands: VNK opens the library window, UBLI inserts the part the window chose,
// UBLO opens the drawings the window queued, VNKSYNC brings placed parts in step with their
// library records.
#pragma once

namespace cad::app {
class Document;
}

namespace vantor {

class VantorApp;

class VantorCommands {
public:
    explicit VantorCommands(VantorApp& app) : app_(app) {}

    void vnk();
    void ubli();
    void ublo();
    void vnksync();

private:
    // UBLO's work, in application context; `start` is the document UBLO ran in.
    void openQueuedDrawings(cad::app::Document* start);

    VantorApp& app_;
};

}  // namespace vantor
