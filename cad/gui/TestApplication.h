// For tests: the one QApplication of a widget test program, offscreen unless the environment
// chose another (the graphics system's test environment, with widgets).
#pragma once

#include <QApplication>

#include "cad/gs/TestApplicationEnvironment.h"

namespace cad::gui {

using TestApplicationEnvironment = gs::TestApplicationEnvironment<QApplication>;

inline const bool testApplicationRegistered =
    (testing::AddGlobalTestEnvironment(new TestApplicationEnvironment), true);

inline QApplication& testApplication() {
    return *TestApplicationEnvironment::application();
}

}  // namespace cad::gui
