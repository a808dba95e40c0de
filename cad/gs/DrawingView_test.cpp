// The view's kept picture and navigation: a pan moves the picture and draws only the strips
// it uncovers, and the result is the picture a full redraw makes; Previous undoes zooms and
// pans as gestures; layouts are listed in tab order.
#include "cad/gs/DrawingView.h"

#include <gtest/gtest.h>

#include "cad/db/Circle.h"
#include "cad/db/Line.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/ViewportTableRecord.h"
#include "cad/db/TestDrawing.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

using db::testing_support::append;

class DrawingViewTest : public db::testing_support::DrawingTest {
protected:
    void SetUp() override {
        // A fan of lines and circles that crosses every strip a pan uncovers.
        for (int i = 0; i < 60; ++i) {
            append(db.modelSpaceId(),
                   std::make_unique<db::Line>(ge::Point3d{i * 3.0, 0, 0}, ge::Point3d{90, 120 - i * 2.0, 0}));
            append(db.modelSpaceId(), std::make_unique<db::Circle>(ge::Point3d{i * 2.5, i * 1.5, 0},
                                                                 ge::Vector3d::kZAxis, 4.0 + i % 7));
        }
    }
};

// Pixels that differ between two pictures of the same size.
int differingPixels(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
    return count;
}

TEST_F(DrawingViewTest, APanMovesThePictureAndMatchesAFullRedraw) {
    DrawingView view(db);
    view.setDeviceSize(400, 300);
    view.image();
    EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Redrawn);
    view.image();
    EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Reused);

    for (auto [dx, dy] : {std::pair{17, -9}, {-40, 0}, {0, 33}, {-5, -5}}) {
        view.panBy(dx, dy);
        const QImage panned = view.image().copy();
        EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Shifted) << dx << "," << dy;
        view.redraw();
        const QImage fresh = view.image();
        EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Redrawn);
        // Lines cut at a strip's edge may round a pixel differently; nothing more.
        EXPECT_LE(differingPixels(panned, fresh), 40) << dx << "," << dy;
    }
}

TEST_F(DrawingViewTest, ZoomResizeAndChangesRedraw) {
    DrawingView view(db);
    view.setDeviceSize(400, 300);
    view.image();
    view.zoomAbout(200, 150, 1.25);
    view.image();
    EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Redrawn);
    view.setDeviceSize(500, 300);
    EXPECT_EQ(view.image().width(), 500);
    EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Redrawn);
    view.drawingChanged();
    view.image();
    EXPECT_EQ(view.lastFrame(), ViewImage::Frame::Redrawn);
}

TEST_F(DrawingViewTest, PreviousGoesBackAStepAtATime) {
    DrawingView view(db);
    view.setDeviceSize(400, 300);
    const ViewTransform opened = view.transform();

    view.zoomAbout(100, 100, 1.25);
    view.zoomAbout(100, 100, 1.25);
    view.beginPan();  // a pan that never moved is no step
    const ViewTransform zoomed = view.transform();
    view.beginPan();
    view.panBy(10, 10);
    view.panBy(10, 10);

    ASSERT_TRUE(view.zoomPrevious());
    EXPECT_DOUBLE_EQ(view.transform().height(), zoomed.height());
    EXPECT_DOUBLE_EQ(view.transform().centre().x, zoomed.centre().x);
    ASSERT_TRUE(view.zoomPrevious());
    ASSERT_TRUE(view.zoomPrevious());
    EXPECT_DOUBLE_EQ(view.transform().height(), opened.height());
    EXPECT_FALSE(view.zoomPrevious());

    view.zoomWindow({0, 0, 10, 10});
    EXPECT_NEAR(view.transform().height(), 10.0, 1e-9);
    view.zoomWindow({5, 5, 5, 5});  // no window at all: the view stays
    EXPECT_NEAR(view.transform().height(), 10.0, 1e-9);
}

TEST_F(DrawingViewTest, OpensAtTheSavedViewWhenItShowsSomethingOfTheDrawing) {
    auto activeView = [&](ge::Point2d centre, double height) {
        db::ObjectId id;
        db::open<db::SymbolTable>(db.viewportTableId(), db::OpenMode::ForRead)->getAt("*Active", id);
        auto active = db::open<db::ViewportTableRecord>(id, db::OpenMode::ForWrite);
        ASSERT_TRUE(active);
        active->setCenterPoint(centre);
        active->setHeight(height);
    };
    activeView({20, 30}, 15);
    {
        DrawingView view(db);
        view.setDeviceSize(400, 300);
        EXPECT_DOUBLE_EQ(view.transform().centre().x, 20.0);
        EXPECT_DOUBLE_EQ(view.transform().height(), 15.0);
    }
    // A view of nothing, one where the drawing is a speck, one through a keyhole: the extents
    // instead.
    for (double height : {15.0, 1e5, 0.5}) {
        activeView({height == 15.0 ? 1e6 : 50.0, 50.0}, height);
        DrawingView view(db);
        view.setDeviceSize(400, 300);
        EXPECT_TRUE(view.transform().visibleBox().contains(view.extents())) << height;
        EXPECT_LT(view.transform().height(), 1000.0);
    }
}

TEST_F(DrawingViewTest, ModelComesFirstThenTheLayouts) {
    DrawingView view(db);
    const std::vector<std::string> names = view.layoutNames();
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(names.front(), "Model");
    EXPECT_EQ(view.layout(), "Model");
    EXPECT_FALSE(view.showLayout("No such layout"));
    EXPECT_EQ(view.block(), db.modelSpaceId());
    if (names.size() > 1) {
        EXPECT_TRUE(view.showLayout(names[1]));
        EXPECT_EQ(view.block(), db.paperSpaceId());
    }
}

}  // namespace
}  // namespace cad::gs
