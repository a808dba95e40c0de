// View maths: what stays put while zooming, what a fit shows, and that maps invert.
#include "cad/gs/ViewTransform.h"

#include <gtest/gtest.h>

namespace cad::gs {
namespace {

void expectNear(const ge::Point2d& a, const ge::Point2d& b, double tolerance = 1e-9) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

TEST(ViewTransform, ZoomKeepsThePointUnderTheCursorStill) {
    ViewTransform view({100, 50}, 200, 800, 600);
    const ge::Point2d before = view.toWorld(123, 456);
    view.zoomAbout(123, 456, 3.0);
    expectNear(view.toWorld(123, 456), before);
    EXPECT_NEAR(view.height(), 200.0 / 3.0, 1e-12);
    view.zoomAbout(10, 10, 0.5);
    EXPECT_NEAR(view.height(), 400.0 / 3.0, 1e-12);
}

TEST(ViewTransform, FitShowsTheWholeBoxWhicheverSideIsTight) {
    for (const Box2d& box : {Box2d{0, 0, 1000, 10}, Box2d{0, 0, 10, 1000}, Box2d{-5, -5, 5, 5}}) {
        ViewTransform view({0, 0}, 1, 1920, 1080);
        view.fit(box, 0.0);
        EXPECT_TRUE(view.visibleBox().grown(1e-9).contains(box));
        // Tight on one side: the box fills the device's width or its height.
        const Box2d shown = view.visibleBox();
        EXPECT_TRUE(std::abs(shown.width() - box.width()) < 1e-9 ||
                    std::abs(shown.height() - box.height()) < 1e-9);
    }
}

TEST(ViewTransform, DegenerateInputKeepsAUsableView) {
    ViewTransform view({0, 0}, 100, 400, 300);
    view.fit(Box2d{});
    EXPECT_EQ(view.height(), 100.0);
    view.fit({5, 5, 5, 5});  // one point
    EXPECT_GT(view.height(), 0.0);
    view.zoomAbout(0, 0, std::numeric_limits<double>::quiet_NaN());
    view.zoomAbout(0, 0, 1e-300);
    EXPECT_TRUE(std::isfinite(view.height()));
    view.setDeviceSize(0, -4);
    EXPECT_GE(view.deviceWidth(), 1.0);
}

TEST(ViewTransform, DeviceYGrowsDownAndPanFollowsTheMouse) {
    ViewTransform view({0, 0}, 100, 200, 100);
    expectNear(view.toDevice({0, 0}), {100, 50});
    expectNear(view.toDevice({0, 10}), {100, 40});
    const ge::Point2d grabbed = view.toWorld(30, 30);
    view.panBy(15, -5);
    expectNear(view.toWorld(45, 25), grabbed);
    const ge::Point2d device = view.toDevice({7, -3});
    expectNear(view.toWorld(device.x, device.y), {7, -3});
}

}  // namespace
}  // namespace cad::gs
