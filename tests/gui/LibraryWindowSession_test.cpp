// The GUI host with the shipped module, offscreen: VNK opens the library window on the
// registered sample library, a second VNK only raises it, and a part chosen in the window is
// placed into the drawing by mouse (point, then angle), saved, read by ezdxf, and undone.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostOptions.h"
#include "HostSession.h"
#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/DrawingViewWidget.h"
#include "cad/gui/MainWindow.h"
#include "cad/gui/QtInputSource.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

namespace fs = std::filesystem;

// Processes events until `done` holds or two seconds pass.
template <class Done>
bool waitFor(Done done) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!done()) {
        if (std::chrono::steady_clock::now() > until) return false;
        QTest::qWait(10);
    }
    return true;
}

QWidget* libraryWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits("vantor::CUblMainFrame") && widget->isVisible()) return widget;
    return nullptr;
}

// A view of the library window by its accessible name.
QAbstractItemView* viewNamed(QWidget* window, const QString& name) {
    for (auto* view : window->findChildren<QAbstractItemView*>())
        if (view->accessibleName() == name) return view;
    return nullptr;
}

class LibraryWindowSession : public ::testing::Test {
protected:
    void SetUp() override {
        ::setenv("VANTOR_MODULE_DIR", moduleFolder_.path().c_str(), 1);
        fs::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/acadiso.lin",
                      moduleFolder_.file("acadiso.lin"));
        library_ = drawings_.file("standard-parts.dxf");
        fs::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf", library_);
        registerLibrary();
        cad::app::setUserDialogs(&dialogs_);
        app().setShowsWindows(true);
        window_.attachInput(input_);
        window_.show();
        vantorcad::HostOptions options;
        options.modules = {VANTOR_MODULE};
        ASSERT_TRUE(session_.start(options));
    }

    void TearDown() override {
        cad::app::setUserDialogs(nullptr);
        ::unsetenv("VANTOR_MODULE_DIR");
    }

    // The main window lists the sample library, as the registration would leave it.
    void registerLibrary() {
        const auto run = vantor::test::runCommand(
            "VANTOR_MODULE_DIR=" + vantor::test::shellQuoted(moduleFolder_.path().string()) + " " +
            vantor::test::shellQuoted(VANTOR_CLI) + " register 0 " +
            vantor::test::shellQuoted(library_));
        ASSERT_EQ(run.exitCode, 0) << run.output;
    }

    void type(const std::string& text) { input_.typeText(text); }
    cad::app::Application& app() { return session_.application(); }

    QApplication& qt_ = cad::gui::testApplication();
    cad::sys::TestTempFolder moduleFolder_;
    cad::sys::TestTempFolder drawings_;
    std::string library_;
    cad::app::ScriptedDialogs dialogs_;
    vantorcad::HostSession session_{false};
    cad::gui::QtInputSource input_{app()};
    cad::gui::MainWindow window_{app(), [this](const std::string& text) { type(text); }};
};

TEST_F(LibraryWindowSession, VnkOpensTheWindowOnTheRegisteredLibraryAndASecondOnlyRaisesIt) {
    type("VNK\n");
    ASSERT_TRUE(waitFor([] { return libraryWindow() != nullptr; }));
    QWidget* window = libraryWindow();
    EXPECT_EQ(window->windowTitle().toStdString().rfind("Vantor Ver.", 0), 0u);
    QAbstractItemView* parts = viewNamed(window, "부품 목록");
    ASSERT_NE(parts, nullptr);
    EXPECT_TRUE(waitFor([&] { return parts->model()->rowCount() == 5; }));

    type("VNK\n");
    QTest::qWait(50);
    int windows = 0;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits("vantor::CUblMainFrame")) ++windows;
    EXPECT_EQ(windows, 1);
}

// What ezdxf reads from a saved drawing: each model-space reference with its attribute count
// and texts, one per line ("QRBBM2 14 ..."), then the block definitions ("block NAME").
std::string ezdxfSummary(const std::string& path) {
    const auto run = vantor::test::runEzdxf(
        "import ezdxf,sys\n"
        "doc=ezdxf.readfile(sys.argv[1])\n"
        "for e in doc.modelspace().query('INSERT'):\n"
        "    print(e.dxf.name, len(e.attribs), ' '.join(a.dxf.text for a in e.attribs))\n"
        "for b in doc.blocks: print('block', b.name)\n",
        path);
    return run.exitCode == 0 ? run.output : "ezdxf failed: " + run.output;
}

TEST_F(LibraryWindowSession, APartChosenInTheWindowIsPlacedByMouseSavedAndUndone) {
    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    type("VNK\n");
    ASSERT_TRUE(waitFor([] { return libraryWindow() != nullptr; }));
    QWidget* window = libraryWindow();
    QAbstractItemView* parts = viewNamed(window, "부품 목록");
    ASSERT_TRUE(waitFor([&] { return parts->model()->rowCount() == 5; }));
    parts->setCurrentIndex(parts->model()->index(2, 0));  // JIS 10K 80A

    // The drag waits in a loop of its own: the clicks answer its requests from there, the
    // insertion point first, then the angle.
    cad::gui::DrawingViewWidget* view = window_.drawingView();
    std::vector<QPoint> clicks{{200, 150}, {260, 150}};
    int requests = 0;
    QObject::connect(&input_, &cad::gui::QtInputSource::requestStarted, view, [&] {
        if (requests >= static_cast<int>(clicks.size())) return;
        const QPoint at = clicks[requests++];
        QTimer::singleShot(20, view, [view, at] {
            QTest::mouseMove(view, at);
            QTest::mouseClick(view, Qt::LeftButton, {}, at);
        });
    });
    auto* insert = window->findChild<QAbstractButton*>("id1807");
    ASSERT_NE(insert, nullptr);
    insert->click();
    ASSERT_TRUE(waitFor([&] { return requests == 2 && !input_.isWaiting(); }))
        << "the drag asked " << requests << " times";
    // The part heads the window's parts inserted last.
    QAbstractItemView* recent = viewNamed(window, "최근 삽입");
    ASSERT_EQ(recent->model()->rowCount(), 1);
    EXPECT_THAT(recent->model()->index(0, 0).data().toString().toStdString(),
                ::testing::HasSubstr("JIS 10K 80A"));
    const std::string placed = drawings_.file("placed.dxf");
    type("_SAVEAS\n" + placed + "\n");
    ASSERT_TRUE(waitFor([&] { return fs::exists(placed); }));
    // The part's reference, its block copied from the library, and the BOM mark carrying
    // the record's 14 fields.
    const std::string summary = ezdxfSummary(placed);
    EXPECT_THAT(summary, ::testing::HasSubstr("FL-10K-80A-F 0 \n"));
    EXPECT_THAT(summary, ::testing::ContainsRegex("QRBBM2 14 .*JIS 10K 80A"));
    EXPECT_THAT(summary, ::testing::HasSubstr("block FL-10K-80A-F\n"));
    EXPECT_THAT(summary, ::testing::HasSubstr("block QRBBM2\n"));

    type("_U\n");
    const std::string undone = drawings_.file("undone.dxf");
    type("_SAVEAS\n" + undone + "\n");
    ASSERT_TRUE(waitFor([&] { return fs::exists(undone); }));
    // One undo takes the whole placement back: nothing is left in model space.
    const std::string after = ezdxfSummary(undone);
    EXPECT_THAT(after, ::testing::Not(::testing::HasSubstr("FL-10K-80A-F 0")));
    EXPECT_THAT(after, ::testing::Not(::testing::HasSubstr("QRBBM2 14")));
}

}  // namespace
