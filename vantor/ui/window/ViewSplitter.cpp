// The splitter with stacked panes.
#include "vantor/ui/window/ViewSplitter.h"

#include <QStackedWidget>

namespace vantor {

CViewSplitter::CViewSplitter(Qt::Orientation orientation, int paneCount, QWidget* parent)
    : QSplitter(orientation, parent) {
    setChildrenCollapsible(false);
    for (int pane = 0; pane < paneCount; ++pane) {
        addWidget(new QStackedWidget(this));
        // The first pane keeps the size the user gave it when the window is resized.
        setStretchFactor(pane, pane == 0 ? 0 : 1);
    }
}

QStackedWidget* CViewSplitter::stack(int pane) const {
    return qobject_cast<QStackedWidget*>(widget(pane));
}

void CViewSplitter::addView(int pane, QWidget* view) {
    stack(pane)->addWidget(view);
}

void CViewSplitter::showView(int pane, QWidget* view) {
    stack(pane)->setCurrentWidget(view);
}

QWidget* CViewSplitter::shownView(int pane) const {
    return stack(pane)->currentWidget();
}

void CViewSplitter::setFirstPane(int size, int minimum) {
    QWidget* first = widget(0);
    if (orientation() == Qt::Horizontal)
        first->setMinimumWidth(minimum);
    else
        first->setMinimumHeight(minimum);
    const int whole = orientation() == Qt::Horizontal ? width() : height();
    // Before the window is laid out the splitter has no size yet: the rest is a guess that
    // the first real layout scales, keeping the first pane's share.
    const int rest = std::max(whole - size - handleWidth(), size);
    QList<int> sizes;
    sizes << size;
    for (int pane = 1; pane < count(); ++pane) sizes << rest / (count() - 1);
    setSizes(sizes);
}

int CViewSplitter::firstPaneSize() const {
    return sizes().value(0);
}

void CViewSplitter::setPaneVisible(int pane, bool visible) {
    widget(pane)->setVisible(visible);
}

}  // namespace vantor
