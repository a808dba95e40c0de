// A splitter whose panes can each hold several views, one shown at a time: the upper-left
// pane of the library window holds the drawing tree and the drawing explorer this way.
#pragma once

#include <QSplitter>

class QStackedWidget;

namespace vantor {

class CViewSplitter : public QSplitter {
    Q_OBJECT
public:
    CViewSplitter(Qt::Orientation orientation, int paneCount, QWidget* parent = nullptr);

    // Puts `view` into pane `pane`; the first view of a pane is the one shown.
    void addView(int pane, QWidget* view);
    void showView(int pane, QWidget* view);
    QWidget* shownView(int pane) const;
    // The first pane's size along the splitter, and the least the user may drag it to.
    void setFirstPane(int size, int minimum);
    int firstPaneSize() const;
    // Hides or shows a whole pane; its size comes back when it is shown again.
    void setPaneVisible(int pane, bool visible);

private:
    QStackedWidget* stack(int pane) const;
};

}  // namespace vantor
