// For tests: the one Qt application of a test program (fonts, pictures and widgets need it), on
// the offscreen platform unless the environment chose another, so tests run without a display.
// Made before the first test and destroyed after the last, not at exit, where Qt's own globals
// are gone. A test program registers one: TestGuiApplication.h or cad/gui/TestApplication.h.
// What the program caches for the user (drawn icons) goes to a folder of the run's own.
#pragma once

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace cad::gs {

template <class App>
class TestApplicationEnvironment : public testing::Environment {
public:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        cache_ = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CACHE_HOME", cache_->path().toLocal8Bit());
        application() = std::make_unique<App>(argc_, argv_);
    }
    void TearDown() override {
        application().reset();
        cache_.reset();
    }

    static std::unique_ptr<App>& application() {
        static std::unique_ptr<App> made;
        return made;
    }

private:
    std::unique_ptr<QTemporaryDir> cache_;
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
};

}  // namespace cad::gs
