// Damaged drawings never stop the view: an entity whose numbers are NaN or 1e300, a block that
// contains itself, a hatch whose pattern would need a million lines in view, a text of a
// million characters. Each still opens, draws and pans; what cannot be drawn is skipped, and
// the rest of the drawing is drawn as ever.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "cad/db/BlockReference.h"
#include "cad/db/Circle.h"
#include "cad/db/Hatch.h"
#include "cad/db/Line.h"
#include "cad/db/Text.h"
#include "cad/db/TestDrawing.h"
#include "cad/gs/DrawingView.h"
#include "cad/gs/EntityPicker.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

using db::testing_support::addBlock;
using db::testing_support::append;
using db::testing_support::tagsOf;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class BadInputTest : public db::testing_support::DrawingTest {
protected:
    // The one sound entity every drawing here has: it must still be drawn.
    void SetUp() override {
        sound = append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{100, 100, 0}));
    }
    // Opens the view, draws, pans and draws again; answers the pixels that are not background.
    int openAndPan() {
        DrawingView view(db);
        view.setDeviceSize(320, 240);
        view.image();
        view.panBy(13, -7);
        const QImage& image = view.image();
        int ink = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) ink += image.pixel(x, y) != view.image().pixel(0, 0);
        EXPECT_TRUE(view.extents().width() >= 100.0 && std::isfinite(view.extents().width()));
        const auto hit = EntityPicker(view.scene(), view.block()).entitiesAt({50, 50}, 1.0);
        EXPECT_NE(std::find(hit.begin(), hit.end(), sound), hit.end());
        return ink;
    }
    db::ObjectId sound;
};

TEST_F(BadInputTest, NumbersThatAreNotNumbers) {
    append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{kNaN, 0, 0}, ge::Point3d{1, 1, 0}));
    append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{1e300, -1e300, 0}, ge::Point3d{1, 1, 0}));
    append(db.modelSpaceId(), std::make_unique<db::Circle>(ge::Point3d{5, 5, 0}, ge::Vector3d::kZAxis, 1e300));
    append(db.modelSpaceId(), std::make_unique<db::Text>(ge::Point3d{kNaN, 5, 0}, "NaN", db::ObjectId{}, 2.5));
    append(db.modelSpaceId(), std::make_unique<db::Text>(ge::Point3d{5, 5, 0}, "huge", db::ObjectId{}, 1e300));
    EXPECT_GT(openAndPan(), 50);
}

TEST_F(BadInputTest, ABlockThatContainsItself) {
    const db::ObjectId loop = addBlock(db, "LOOP");
    append(loop, std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{1, 0, 0}));
    append(loop, std::make_unique<db::BlockReference>(ge::Point3d{1, 1, 0}, loop));
    append(db.modelSpaceId(), std::make_unique<db::BlockReference>(ge::Point3d{10, 10, 0}, loop));
    EXPECT_GT(openAndPan(), 50);
}

TEST_F(BadInputTest, AHatchOfAMillionPatternLinesInView) {
    // A 100 by 100 square hatched with lines 0.0001 apart: a million lines, drawn by its
    // boundary instead.
    auto hatch = std::make_unique<db::Hatch>();
    hatch->setPatternName("DENSE");
    hatch->setDefinitionTags(tagsOf("91 1 92 3 72 0 73 1 93 4 10 0 20 0 10 100 20 0 10 100 20 100 10 0 20 100 97 0 "
                                    "75 0 76 1 52 0 41 1 77 0 78 1 53 0 43 0 44 0 45 0 46 0.0001 79 0"));
    append(db.modelSpaceId(), std::move(hatch));
    EXPECT_GT(openAndPan(), 50);
}

TEST_F(BadInputTest, ATextOfAMillionCharacters) {
    append(db.modelSpaceId(),
           std::make_unique<db::Text>(ge::Point3d{0, 50, 0}, std::string(1'000'000, 'W'), db::ObjectId{}, 2.5));
    EXPECT_GT(openAndPan(), 50);
}

}  // namespace
}  // namespace cad::gs
