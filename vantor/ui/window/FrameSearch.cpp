#include "vantor/ui/window/FrameSearch.h"

#include "vantor/search/CachedParts.h"
#include "vantor/search/SearchScope.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/ui/window/PartSearchPane.h"
#include "vantor/ui/window/UblMainFrame.h"

namespace vantor {

namespace {

constexpr int kInsertCommand = 1501;

}  // namespace

FrameSearch::FrameSearch(CUblMainFrame& frame, PartSearchPane& pane, ModuleSettings& settings)
    : QObject(&pane), frame_(frame), pane_(pane), settings_(settings) {
    connect(&pane_, &PartSearchPane::queryChanged, this, [this] { search(); });
    connect(&pane_, &PartSearchPane::partChosen, this,
            [this](const PartShortcut& part) { choose(part); });
    connect(&pane_, &PartSearchPane::insertRequested, this,
            [this](const PartShortcut& part) { insert(part); });
    connect(&pane_, &PartSearchPane::dragRequested, this, [this](const PartShortcut& part) {
        if (frame_.showPart(part)) frame_.partList()->dragCurrentRecord();
    });
}

void FrameSearch::windowListChanged() {
    indexDrawings(window_, frame_.drawingList().paths());
    everyCurrent_ = false;
    search();
}

void FrameSearch::drawingChanged(const std::string& path) {
    for (PartSearchIndex* index : {&window_, &every_}) {
        if (!index->holds(path)) continue;
        if (std::optional<std::vector<PartSearchEntry>> parts = cachedParts(path))
            index->setDrawing(path, std::move(*parts));
    }
    search();
}

void FrameSearch::partInserted(const PartShortcut& part) {
    settings_.shortcuts.notePlaced(part);
    pane_.shortcutsChanged();
}

const PartSearchIndex& FrameSearch::indexSearched() {
    if (!pane_.everyWindow()) return window_;
    if (!everyCurrent_) {
        indexDrawings(every_, drawingsOfEveryWindow(frame_.managementWindows()));
        everyCurrent_ = true;
    }
    return every_;
}

void FrameSearch::search() {
    const std::string query = pane_.query().toStdString();
    pane_.showResult(indexSearched().find(query));
}

void FrameSearch::choose(const PartShortcut& part) { frame_.showPart(part); }

void FrameSearch::insert(const PartShortcut& part) {
    if (frame_.showPart(part)) frame_.runCommand(kInsertCommand);
}

}  // namespace vantor
