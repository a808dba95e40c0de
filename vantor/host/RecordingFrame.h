// The frame's stand-in where no window is shown (a headless host, tests): it keeps every
// message and request in order, so the module's behaviour towards its window can be followed.
#pragma once

#include <string>
#include <vector>

#include "vantor/host/FrameMessages.h"

namespace vantor {

class RecordingFrame : public FrameMessages {
public:
    struct Entry {
        enum class Kind { Create, Post, RedrawPreview, RefreshBlockList, BringToFront };
        Kind kind = Kind::Post;
        unsigned message = 0;
        std::intptr_t wParam = 0;
        std::intptr_t lParam = 0;

        // "post 1051 2 1", "redraw preview", ...: one line of a log.
        std::string text() const;
        bool operator==(const Entry&) const = default;
    };

    void create(const std::string& title) override;
    void postMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) override;
    void redrawPreview() override;
    void refreshBlockList() override;
    void bringToFront() override;

    const std::vector<Entry>& entries() const { return entries_; }
    void clear() { entries_.clear(); }

private:
    std::vector<Entry> entries_;
};

}  // namespace vantor
