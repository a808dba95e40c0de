// Every sample drawing from other programs, as the view draws it (display lists, the spatial
// index, the kept picture, a pan) and as an offscreen picture draws it (entity by entity, no
// index): the two must be the same picture, in model space and in every layout.
#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>

#include "cad/db/Database.h"
#include "cad/gs/DrawingScene.h"
#include "cad/gs/DrawingView.h"
#include "cad/gs/OffscreenRender.h"
#include "cad/gs/TestGuiApplication.h"

namespace cad::gs {
namespace {

int differingPixels(const QImage& a, const QImage& b) {
    const QImage x = a.convertToFormat(QImage::Format_RGB32), y = b.convertToFormat(QImage::Format_RGB32);
    int count = 0;
    for (int row = 0; row < x.height(); ++row)
        for (int column = 0; column < x.width(); ++column) count += x.pixel(column, row) != y.pixel(column, row);
    return count;
}

TEST(CorpusViews, TheViewAndTheOffscreenPictureDrawTheSame) {
    const std::filesystem::path corpus = std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus";
    int drawn = 0;
    for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
        if (entry.path().extension() != ".dxf") continue;
        db::Database db(false, true);
        if (db.readDwgFile(entry.path().string()) != ErrorStatus::eOk) continue;
        DrawingView view(db);
        view.setDeviceSize(320, 240);
        for (const std::string& layout : view.layoutNames()) {
            ASSERT_TRUE(view.showLayout(layout)) << entry.path() << " " << layout;
            view.image();
            view.panBy(9, -4);  // the kept picture moved, its strips drawn
            const QImage shown = view.image().copy();

            RenderRequest request;
            request.width = 320;
            request.height = 240;
            request.window = view.transform().visibleBox();
            QImage offscreen(320, 240, QImage::Format_RGB32);
            DrawingScene scene(db);
            renderBlock(scene, view.block(), request, offscreen);
            // A line cut at a strip's edge may round a pixel differently, nothing more.
            EXPECT_LE(differingPixels(shown, offscreen), 320 * 240 / 200) << entry.path() << " " << layout;
            ++drawn;
        }
    }
    EXPECT_GE(drawn, 15);
}

}  // namespace
}  // namespace cad::gs
