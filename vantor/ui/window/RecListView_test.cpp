// The data pane's icon size: the slider's steps, the view, the model and the settings taking
// a size together, and the size a settings file brings.
#include <QListView>
#include <QSlider>
#include <gtest/gtest.h>

#include "cad/gui/TestApplication.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/window/RecListView.h"

namespace vantor {
namespace {

TEST(DataPaneIconSize, TheSliderSetsTheViewTheModelAndTheSettings) {
    ModuleSettings settings;
    settings.iconSize = 0;  // a settings file from before the key
    BlockListModel model;
    CRecListView pane(model, settings);
    EXPECT_EQ(pane.iconPixels(), 48);
    EXPECT_EQ(pane.listView()->iconSize(), QSize(48, 48));
    QSlider* slider = pane.iconSizeSlider();
    EXPECT_EQ(slider->accessibleName(), QStringLiteral("아이콘 크기"));
    EXPECT_EQ(slider->minimum(), 32);
    EXPECT_EQ(slider->maximum(), 256);

    slider->setValue(100);  // between steps: the nearest step is taken
    EXPECT_EQ(slider->value(), 96);
    EXPECT_EQ(pane.listView()->iconSize(), QSize(96, 96));
    EXPECT_GE(pane.listView()->gridSize().width(), 96);
    EXPECT_EQ(settings.iconSize, 96);
    EXPECT_EQ(model.iconPixels(), 96);
    slider->setValue(128);
    EXPECT_EQ(model.iconPixels(), 128);

    // The list style keeps its small icons, whatever the icon view's size.
    pane.setStyle(CRecListView::List);
    EXPECT_EQ(pane.listView()->iconSize(), QSize(16, 16));
    pane.setStyle(CRecListView::Icons);
    EXPECT_EQ(pane.listView()->iconSize(), QSize(128, 128));

    settings.iconSize = 999;
    CRecListView again(model, settings);
    EXPECT_EQ(again.iconPixels(), 256);
}

}  // namespace
}  // namespace vantor
