// The data pane: the blocks of the chosen drawing as icons (each block's stored preview, or
// one drawn for it), as a list, or with details ("Block name", "Description"), the style kept
// in the settings. Under the icons a slider sets their size, kept in the settings too.
#pragma once

#include <QStackedWidget>
#include <string>

class QLabel;
class QListView;
class QSlider;
class QTreeView;

namespace vantor {

class BlockListModel;
class ModuleSettings;

class CRecListView : public QStackedWidget {
    Q_OBJECT
public:
    // The display styles as the settings keep them (a list view's style bits).
    enum Style { Icons = 0, Details = 1, List = 3 };

    CRecListView(BlockListModel& model, ModuleSettings& settings, QWidget* parent = nullptr);

    Style style() const;
    void setStyle(Style style);
    std::string currentBlock() const;

    // The icon view's icon size in pixels (32 to 256, in steps of 16), taken by the view and
    // the model at once.
    int iconPixels() const { return pixels_; }
    void setIconPixels(int pixels);
    QSlider* iconSizeSlider() const { return sizeSlider_; }
    QListView* listView() const { return listView_; }

signals:
    void blockChosen(const std::string& name);

private:
    void applyIconStyle();

    BlockListModel& model_;
    ModuleSettings& settings_;
    QWidget* listPage_;
    QListView* listView_;
    QTreeView* detailsView_;
    QWidget* sizeBar_;
    QSlider* sizeSlider_;
    QLabel* sizeLabel_;
    int pixels_;
};

}  // namespace vantor
