// The viewing commands, in the host's group: ZOOM (a window by two corners, a scale factor
// "2" or "2X", Extents, Previous, Window), PAN (base point and second point, or a typed
// displacement), REGEN and REDRAW. Transparent, so they run in the middle of another command's
// point request, as users expect of a zoom.
#pragma once

namespace cad::app {

class Application;
class ViewPort;

class ViewCommands {
public:
    explicit ViewCommands(Application& application) : app_(application) {}
    void registerCommands();

    // The view the commands act on; nullptr headless.
    void setViewPort(ViewPort* view) { view_ = view; }
    ViewPort* viewPort() const { return view_; }

private:
    void zoom();
    void pan();

    Application& app_;
    ViewPort* view_ = nullptr;
};

}  // namespace cad::app
