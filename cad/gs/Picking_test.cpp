// Picking, windows, snaps and the pick-first selection measured against drawn geometry: a
// circle is hit on its rim and not in its middle, a window takes what lies inside and a
// crossing window what it meets, snaps find the exact point of interest, and entities on
// a layer that is off cannot be picked.
#include <gtest/gtest.h>

#include "cad/db/Arc.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/Point.h"
#include "cad/db/TestDrawing.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/EntityPicker.h"
#include "cad/gs/ObjectSnap.h"
#include "cad/gs/PickfirstSelection.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

using db::testing_support::addBlock;
using db::testing_support::addLayer;
using db::testing_support::append;

class PickingTest : public db::testing_support::DrawingTest {
protected:
    void SetUp() override {
        horizontal = append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{100, 0, 0}));
        vertical = append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{50, -50, 0}, ge::Point3d{50, 50, 0}));
        circle = append(db.modelSpaceId(),
                        std::make_unique<db::Circle>(ge::Point3d{200, 0, 0}, ge::Vector3d::kZAxis, 20.0));
        const db::ObjectId part = addBlock(db, "PART");
        append(part, std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{10, 0, 0}));
        reference = append(db.modelSpaceId(), std::make_unique<db::BlockReference>(ge::Point3d{300, 100, 0}, part));
        const db::ObjectId off = addLayer(db, "HIDDEN", 3);
        db::open<db::LayerTableRecord>(off, db::OpenMode::ForWrite)->setIsOff(true);
        hidden = append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{0, 10, 0}, ge::Point3d{40, 10, 0}), off);
        scene = std::make_unique<DrawingScene>(db);
    }
    void TearDown() override {
        scene.reset();
        DrawingTest::TearDown();
    }

    db::ObjectId horizontal, vertical, circle, reference, hidden;
    std::unique_ptr<DrawingScene> scene;
};

TEST_F(PickingTest, PicksByDrawnGeometryNearestFirst) {
    const EntityPicker picker(*scene, db.modelSpaceId());
    EXPECT_EQ(picker.entitiesAt({20, 0.5}, 1.0), std::vector<db::ObjectId>{horizontal});
    // At the crossing both are hit; the one nearer the cursor comes first.
    EXPECT_EQ(picker.entitiesAt({50.2, 0.4}, 1.0), (std::vector<db::ObjectId>{vertical, horizontal}));
    EXPECT_EQ(picker.entitiesAt({220.5, 0}, 1.0), std::vector<db::ObjectId>{circle});
    EXPECT_TRUE(picker.entitiesAt({200, 0}, 1.0).empty()) << "the middle of a circle is empty";
    // A reference is hit on its block's geometry, placed where it is inserted.
    EXPECT_EQ(picker.entitiesAt({305, 100.2}, 1.0), std::vector<db::ObjectId>{reference});
    EXPECT_TRUE(picker.entitiesAt({20, 10}, 0.5).empty()) << "a layer that is off is not picked";
    EXPECT_TRUE(picker.entitiesIn({-1, 5, 41, 15}, false).empty());
}

TEST_F(PickingTest, WindowsTakeWhatIsInsideCrossingWindowsWhatTheyMeet) {
    const EntityPicker picker(*scene, db.modelSpaceId());
    EXPECT_EQ(picker.entitiesIn({-1, -1, 101, 1}, false), std::vector<db::ObjectId>{horizontal});
    EXPECT_EQ(picker.entitiesIn({-1, -1, 101, 1}, true), (std::vector<db::ObjectId>{horizontal, vertical}));
    // A crossing window inside the circle, touching nothing drawn, takes nothing.
    EXPECT_TRUE(picker.entitiesIn({195, -5, 205, 5}, true).empty());
    EXPECT_EQ(picker.entitiesIn({215, -5, 225, 5}, true), std::vector<db::ObjectId>{circle});
}

TEST_F(PickingTest, SnapsFindExactPointsByTheRunningModes) {
    const db::ObjectId space = db.modelSpaceId();
    auto snap = [&](double x, double y, int modes) { return findSnap(*scene, space, {x, y}, 3.0, modes); };
    auto end = snap(99, 1, kSnapEndpoint);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->mode, kSnapEndpoint);
    EXPECT_DOUBLE_EQ(end->point.x, 100.0);
    auto middle = snap(49, 1, kSnapMidpoint | kSnapEndpoint);
    ASSERT_TRUE(middle);
    EXPECT_EQ(middle->mode, kSnapMidpoint);
    EXPECT_DOUBLE_EQ(middle->point.x, 50.0);
    auto crossing = snap(51, 1, kSnapIntersection);
    ASSERT_TRUE(crossing);
    EXPECT_EQ(crossing->mode, kSnapIntersection);
    EXPECT_NEAR(crossing->point.x, 50.0, 1e-9);
    EXPECT_NEAR(crossing->point.y, 0.0, 1e-9);
    auto quadrant = snap(201, 19, kSnapQuadrant | kSnapCenter);
    ASSERT_TRUE(quadrant);
    EXPECT_EQ(quadrant->mode, kSnapQuadrant);
    EXPECT_NEAR(quadrant->point.y, 20.0, 1e-9);
    auto insertion = snap(301, 101, kSnapInsertion);
    ASSERT_TRUE(insertion);
    EXPECT_DOUBLE_EQ(insertion->point.x, 300.0);
    // Inside a reference, by what its block draws there.
    auto inBlock = snap(309, 101, kSnapEndpoint);
    ASSERT_TRUE(inBlock);
    EXPECT_NEAR(inBlock->point.x, 310.0, 1e-9);
    EXPECT_EQ(inBlock->entity, reference);
    // Nearest only where nothing else is; none at all when the snaps are off.
    auto nearest = snap(30, 1, kSnapNearest | kSnapEndpoint);
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->mode, kSnapNearest);
    EXPECT_NEAR(nearest->point.y, 0.0, 1e-9);
    EXPECT_FALSE(snap(99, 1, kSnapEndpoint | kSnapOff));
    EXPECT_FALSE(snap(30, 30, kSnapEndpoint | kSnapNearest));
}

TEST_F(PickingTest, PickfirstSelectionByClicksAndWindows) {
    const EntityPicker picker(*scene, db.modelSpaceId());
    PickfirstSelection selection;
    EXPECT_TRUE(selection.click(picker, {20, 0}, 1.0, false));
    EXPECT_FALSE(selection.click(picker, {20, 0}, 1.0, false)) << "a second click adds nothing";
    // A click on nothing opens a window; the next click closes it, here crossing to the left.
    EXPECT_FALSE(selection.click(picker, {60, 60}, 1.0, false));
    ASSERT_TRUE(selection.windowCorner());
    EXPECT_TRUE(selection.click(picker, {45, 40}, 1.0, false));
    EXPECT_EQ(selection.ids(), (std::vector<db::ObjectId>{horizontal, vertical}));
    EXPECT_TRUE(selection.click(picker, {20, 0}, 1.0, true)) << "Shift takes away";
    EXPECT_EQ(selection.ids(), std::vector<db::ObjectId>{vertical});
    EXPECT_TRUE(selection.clear());
    EXPECT_FALSE(selection.clear());
}

}  // namespace
}  // namespace cad::gs
