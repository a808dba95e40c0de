// The window that started a capture or a pick: hidden while the user works in the drawing
// view, shown again whatever the outcome.
#pragma once

#include <functional>

namespace vantor {

struct CallerWindow {
    std::function<void()> hide;  // the dialog and its parent; the host's window gets the focus
    std::function<void()> show;

    // Hides the caller for as long as it lives, so that every way out of a flow shows it again.
    class Hidden {
    public:
        explicit Hidden(const CallerWindow& caller) : caller_(caller) {
            if (caller_.hide) caller_.hide();
        }
        ~Hidden() {
            if (caller_.show) caller_.show();
        }
        Hidden(const Hidden&) = delete;
        Hidden& operator=(const Hidden&) = delete;

    private:
        const CallerWindow& caller_;
    };
};

}  // namespace vantor
