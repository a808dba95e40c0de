// A layout's viewport shows model space where its view says, at its scale, and nothing of
// model space outside its box; a viewport that is off shows nothing.
#include <gtest/gtest.h>

#include <QImage>

#include "cad/db/Line.h"
#include "cad/db/RawEntity.h"
#include "cad/db/TestDrawing.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/OffscreenRender.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

using db::testing_support::append;
using db::testing_support::tagsOf;

class ViewportTest : public db::testing_support::DrawingTest {
protected:
    void SetUp() override {
        // A horizontal line through model space, far longer than the viewport sees.
        append(db.modelSpaceId(), std::make_unique<db::Line>(ge::Point3d{-1000, 500, 0}, ge::Point3d{1000, 500, 0}));
    }
    // A viewport of 100 by 50 on the paper at (100, 100), seeing 200 model units high about
    // (0, 500): a scale of 1/4, so the line crosses the viewport's middle.
    void addViewport(int status) {
        auto viewport = std::make_unique<db::RawEntity>("VIEWPORT", "AcDbViewport");
        viewport->tags() = tagsOf("100 AcDbViewport 10 100 20 100 30 0 40 100 41 50 68 " + std::to_string(status) +
                                  " 69 2 12 0 22 0 13 0 23 0 17 0 27 500 37 0 45 200");
        append(db.paperSpaceId(), std::move(viewport));
        // The paper's extents: a frame from (0, 0) to (200, 200).
        append(db.paperSpaceId(), std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{200, 200, 0}));
    }
    // Whether the pixel of the 200 by 200 picture showing the paper at paper point (x, y)
    // holds ink.
    static bool inkAt(const QImage& image, double x, double y) {
        const QRgb p = image.pixel(int(x), int(200 - y));
        return qRed(p) > 128 || qGreen(p) > 128 || qBlue(p) > 128;
    }
    QImage layoutPicture() {
        DrawingScene scene(db);
        RenderRequest request;
        request.width = request.height = 200;
        request.window = Box2d{0, 0, 200, 200};
        QImage image(200, 200, QImage::Format_RGB32);
        renderBlock(scene, db.paperSpaceId(), request, image);
        return image;
    }
};

TEST_F(ViewportTest, ShowsModelSpaceInsideItsBoxOnly) {
    addViewport(1);
    const QImage image = layoutPicture();
    EXPECT_TRUE(inkAt(image, 120, 100)) << "the line through the viewport's middle";
    EXPECT_TRUE(inkAt(image, 70, 100));
    EXPECT_FALSE(inkAt(image, 30, 100)) << "the line beyond the viewport's box";
    EXPECT_FALSE(inkAt(image, 170, 100));
    EXPECT_TRUE(inkAt(image, 100, 75)) << "the viewport's border";
}

TEST_F(ViewportTest, AViewportThatIsOffShowsNothing) {
    addViewport(0);
    const QImage image = layoutPicture();
    EXPECT_FALSE(inkAt(image, 70, 100));
    EXPECT_FALSE(inkAt(image, 100, 75));
}

}  // namespace
}  // namespace cad::gs
