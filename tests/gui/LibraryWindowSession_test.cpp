// The GUI host with the shipped module, offscreen: VNK opens the library window on the
// registered sample library, a second VNK only raises it, and a part chosen in the window is
// placed into the drawing by mouse (point, then angle), saved, read by ezdxf, and undone.
#include <QAbstractItemView>
#include <QApplication>
#include <QTest>
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

}  // namespace
