// The library window's part search: answers the search pane's queries from an index of the
// current management window's drawings (or of every window's, built when first asked for),
// keeps the index in step as drawings and lists change, and finds a chosen part in the window.
#pragma once

#include <QObject>
#include <string>

#include "vantor/search/PartSearchIndex.h"
#include "vantor/ui/PartShortcuts.h"

namespace vantor {

class CUblMainFrame;
class ModuleSettings;
class PartSearchPane;

class FrameSearch : public QObject {
    Q_OBJECT
public:
    FrameSearch(CUblMainFrame& frame, PartSearchPane& pane, ModuleSettings& settings);

    // The current window's drawings were loaded again (another window chosen, drawings
    // registered or taken off): the index follows, and the shown hits with it.
    void windowListChanged();
    // One drawing was changed and its tree read again.
    void drawingChanged(const std::string& path);
    // A part was handed to the drawing: it heads the parts inserted last.
    void partInserted(const PartShortcut& part);

    const PartSearchIndex& windowIndex() const { return window_; }

private:
    void search();
    void choose(const PartShortcut& part);
    void insert(const PartShortcut& part);
    const PartSearchIndex& indexSearched();

    CUblMainFrame& frame_;
    PartSearchPane& pane_;
    ModuleSettings& settings_;
    PartSearchIndex window_;
    PartSearchIndex every_;     // every window's drawings, once the pane asked for them
    bool everyCurrent_ = false;  // every_ holds the lists as they are
};

}  // namespace vantor
