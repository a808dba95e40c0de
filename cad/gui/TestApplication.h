// For tests: the one QApplication of a test program, on the offscreen platform unless the
// environment chose another, so widget tests run without a display. It is made before the
// first test and destroyed after the last, not at exit, where Qt's own globals are gone.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace cad::gui {

class TestApplicationEnvironment : public testing::Environment {
public:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        application() = std::make_unique<QApplication>(argc_, argv_);
    }
    void TearDown() override { application().reset(); }

    static std::unique_ptr<QApplication>& application() {
        static std::unique_ptr<QApplication> made;
        return made;
    }

private:
    int argc_ = 1;
    char name_[13] = "cad_gui_test";
    char* argv_[2] = {name_, nullptr};
};

inline const bool testApplicationRegistered =
    (testing::AddGlobalTestEnvironment(new TestApplicationEnvironment), true);

inline QApplication& testApplication() {
    return *TestApplicationEnvironment::application();
}

}  // namespace cad::gui
