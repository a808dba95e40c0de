// The lower right pane: the management windows' drop-down with its small tool bar (add,
// rename, delete, refresh) above the chosen block's picture and the supplier panel.
#pragma once

#include <QWidget>

class QComboBox;
class QSplitter;
class QToolBar;

namespace vantor {

class ManagementWindows;
class PartPicture;
enum class FrameAction;

class CUblPreviewView : public QWidget {
    Q_OBJECT
public:
    // `controls` (the placement's scale, angle and options) stand under the picture, with the
    // insert button.
    CUblPreviewView(ManagementWindows& windows, PartPicture* canvas, QWidget* infoPanel,
                    QWidget* controls, QWidget* parent = nullptr);

    // The management windows' commands (the small tool bar's and the frame's menu items).
    void runWindowCommand(FrameAction action);
    // The drop-down shows the windows as they are listed now.
    void refreshWindows();
    // The picture and the panel below the tool bar; the tool bar stays.
    void setPictureVisible(bool visible);
    bool pictureVisible() const;

    PartPicture* canvas() const { return canvas_; }
    QComboBox* windowDropDown() const { return dropDown_; }
    QToolBar* windowToolBar() const { return toolBar_; }

signals:
    // The insert button (1807): the chosen part into the drawing.
    void insertRequested();

private:
    ManagementWindows& windows_;
    PartPicture* canvas_;
    QComboBox* dropDown_;
    QToolBar* toolBar_;
    QSplitter* picture_;
    QWidget* pictureArea_;
};

}  // namespace vantor
