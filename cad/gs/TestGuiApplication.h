// For tests: the one QGuiApplication of a test program (fonts and pictures need it), on the
// offscreen platform unless the environment chose another. Made before the first test and
// destroyed after the last, not at exit, where Qt's own globals are gone.
#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <memory>

namespace cad::gs {

class TestGuiApplicationEnvironment : public testing::Environment {
public:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        application() = std::make_unique<QGuiApplication>(argc_, argv_);
    }
    void TearDown() override { application().reset(); }

    static std::unique_ptr<QGuiApplication>& application() {
        static std::unique_ptr<QGuiApplication> made;
        return made;
    }

private:
    int argc_ = 1;
    char name_[12] = "cad_gs_test";
    char* argv_[2] = {name_, nullptr};
};

inline const bool testGuiApplicationRegistered =
    (testing::AddGlobalTestEnvironment(new TestGuiApplicationEnvironment), true);

}  // namespace cad::gs
