// `cadtool render` end to end: every sample drawing draws, in each picture format; on a few,
// an independent renderer (ezdxf's drawing add-on with matplotlib) draws the same window and
// the two pictures must put their ink in the same places; damaged drawings still draw.
#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

using vantor::test::ezdxfAvailable;
using vantor::test::runCommand;
using vantor::test::shellQuoted;

const std::filesystem::path kCorpus = std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus";

struct Rendered {
    vantor::test::ExternalRun run;
    std::string window;  // as cadtool printed it
};

Rendered render(const std::string& drawing, const std::string& out, const std::string& options = {}) {
    Rendered r;
    r.run = runCommand(std::string(CADTOOL) + " render " + shellQuoted(drawing) + " " + shellQuoted(out) +
                       " " + options);
    std::smatch match;
    if (std::regex_search(r.run.output, match, std::regex(R"(\(window ([^)]+)\))"))) r.window = match[1];
    return r;
}

// Ink: a pixel that stands out from the view's background.
std::vector<bool> inkOf(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    std::vector<bool> ink(static_cast<std::size_t>(rgb.width() * rgb.height()));
    for (int y = 0; y < rgb.height(); ++y)
        for (int x = 0; x < rgb.width(); ++x) {
            const QRgb p = rgb.pixel(x, y);
            const int d = std::max({std::abs(qRed(p) - 33), std::abs(qGreen(p) - 40), std::abs(qBlue(p) - 48)});
            ink[static_cast<std::size_t>(y * rgb.width() + x)] = d > 48;
        }
    return ink;
}

// The share of `a`'s ink that has ink of `b` within `radius` pixels (1 when `a` has none).
double inkFound(const std::vector<bool>& a, const std::vector<bool>& b, int width, int height, int radius) {
    // `b` widened by the radius, rows then columns.
    std::vector<bool> rows(b.size()), near(b.size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            bool any = false;
            for (int dx = -radius; dx <= radius && !any; ++dx) {
                const int xx = x + dx;
                any = xx >= 0 && xx < width && b[static_cast<std::size_t>(y * width + xx)];
            }
            rows[static_cast<std::size_t>(y * width + x)] = any;
        }
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            bool any = false;
            for (int dy = -radius; dy <= radius && !any; ++dy) {
                const int yy = y + dy;
                any = yy >= 0 && yy < height && rows[static_cast<std::size_t>(yy * width + x)];
            }
            near[static_cast<std::size_t>(y * width + x)] = any;
        }
    std::size_t total = 0, found = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i]) {
            ++total;
            found += near[i];
        }
    return total == 0 ? 1.0 : double(found) / double(total);
}

TEST(Render, EverySampleDrawingDrawsInEachFormat) {
    cad::sys::TestTempFolder temp;
    int drawn = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kCorpus)) {
        if (entry.path().extension() != ".dxf") continue;
        const std::string out = temp.file("picture.png");
        const Rendered r = render(entry.path().string(), out, "--size 640x480");
        ASSERT_EQ(r.run.exitCode, 0) << entry.path() << "\n" << r.run.output;
        const QImage image(QString::fromStdString(out));
        EXPECT_EQ(image.size(), QSize(640, 480)) << entry.path();
        ++drawn;
    }
    EXPECT_GE(drawn, 15);
    const std::string drawing = (kCorpus / "netdxf__sample.dxf").string();
    for (const char* format : {"svg", "pdf"}) {
        const std::string out = temp.file(std::string("picture.") + format);
        const Rendered r = render(drawing, out, "--background white");
        ASSERT_EQ(r.run.exitCode, 0) << r.run.output;
        EXPECT_GT(std::filesystem::file_size(out), 1000u) << format;
    }
}

TEST(Render, RefusalsNameTheProblemAndLeaveNoPicture) {
    cad::sys::TestTempFolder temp;
    const std::string drawing = (kCorpus / "netdxf__sample.dxf").string();
    const std::string out = temp.file("picture.png");
    for (const char* options : {"--block NO_SUCH_BLOCK", "--layout NoSuchLayout", "--size 0x10",
                                "--window 1,1,1,1", "--background grey"}) {
        const Rendered r = render(drawing, out, options);
        EXPECT_NE(r.run.exitCode, 0) << options;
        EXPECT_FALSE(r.run.output.empty()) << options;
        EXPECT_FALSE(std::filesystem::exists(out)) << options;
    }
    EXPECT_NE(render(drawing, temp.file("picture.bmp")).run.output.find("unknown picture format"), std::string::npos);
}

// A sheet with a cell for every entity type drawn as it was when we looked at it and found it
// right (testdata/render/entity-sheet.png); fonts and smoothing of another machine may move
// ink by a pixel, nothing more. VANTOR_UPDATE_GOLDEN=1 writes the picture anew.
TEST(Render, EveryEntityTypeDrawsAsTheGoldenPicture) {
    cad::sys::TestTempFolder temp;
    const std::filesystem::path folder = std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "render";
    const std::string golden = (folder / "entity-sheet.png").string();
    const std::string out = temp.file("sheet.png");
    const Rendered r = render((folder / "entity-sheet.dxf").string(), out, "--size 1000x625");
    ASSERT_EQ(r.run.exitCode, 0) << r.run.output;
    if (std::getenv("VANTOR_UPDATE_GOLDEN") != nullptr)
        std::filesystem::copy_file(out, golden, std::filesystem::copy_options::overwrite_existing);
    const QImage a(QString::fromStdString(out)), b(QString::fromStdString(golden));
    ASSERT_EQ(a.size(), b.size());
    const std::vector<bool> inkA = inkOf(a), inkB = inkOf(b);
    EXPECT_GE(inkFound(inkA, inkB, a.width(), a.height(), 2), 0.97) << "ink where the golden picture has none";
    EXPECT_GE(inkFound(inkB, inkA, a.width(), a.height(), 2), 0.97) << "the golden picture's ink missing";
}

// Where an independent renderer puts its ink, ours puts ink too, and the other way round.
TEST(Render, InkFallsWhereEzdxfPutsIt) {
    if (!ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    cad::sys::TestTempFolder temp;
    const int width = 800, height = 600;
    // Drawings both renderers read alike. Not here: drawings with points drawn in a point style
    // (ezdxf draws every point as a dot) and texts in fonts neither machine has.
    for (const char* name : {"ezdxf__hatches_1.dxf", "ezdxf__mtext_columns_R2000.dxf", "ezdxf__bin_dxf_r2000.dxf",
                             "ezdxf__custom_blocks.dxf", "ezdxf-made__korean_catalogue_r2000_cp949.dxf",
                             "ezdxf__small_r13.dxf", "../render/entity-sheet.dxf",
                             "../render/mirrored-sheet.dxf"}) {
        const std::string drawing = (kCorpus / name).string();
        const std::string stem = std::filesystem::path(name).filename().string();
        const std::string ours = temp.file(stem + ".ours.png");
        const std::string theirs = temp.file(stem + ".ezdxf.png");
        const Rendered r = render(drawing, ours, "--size 800x600");
        ASSERT_EQ(r.run.exitCode, 0) << r.run.output;
        ASSERT_FALSE(r.window.empty()) << r.run.output;
        const auto python = runCommand("/usr/bin/python3 " + shellQuoted(std::string(VANTOR_SOURCE_DIR) + "/tests/render/ezdxf_render.py") +
                                       " " + shellQuoted(drawing) + " " + shellQuoted(theirs) + " 800 600 " + r.window);
        ASSERT_EQ(python.exitCode, 0) << python.output;
        const QImage a(QString::fromStdString(ours)), b(QString::fromStdString(theirs));
        ASSERT_EQ(a.size(), QSize(width, height));
        ASSERT_EQ(b.size(), QSize(width, height));
        const std::vector<bool> inkA = inkOf(a), inkB = inkOf(b);
        EXPECT_GE(inkFound(inkA, inkB, width, height, 3), 0.9) << name << ": ours where ezdxf has none";
        EXPECT_GE(inkFound(inkB, inkA, width, height, 3), 0.9) << name << ": ezdxf's where ours has none";
        if (const char* keep = std::getenv("VANTOR_KEEP_RENDERS")) {
            std::filesystem::copy_file(ours, std::filesystem::path(keep) / std::filesystem::path(ours).filename(),
                                       std::filesystem::copy_options::overwrite_existing);
            std::filesystem::copy_file(theirs, std::filesystem::path(keep) / std::filesystem::path(theirs).filename(),
                                       std::filesystem::copy_options::overwrite_existing);
        }
    }
}

}  // namespace
