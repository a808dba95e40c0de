// For tests of the graphics system: its test program's QGuiApplication, registered once.
#pragma once

#include <QGuiApplication>

#include "cad/gs/TestApplicationEnvironment.h"

namespace cad::gs {

using TestGuiApplicationEnvironment = TestApplicationEnvironment<QGuiApplication>;

inline const bool testGuiApplicationRegistered =
    (testing::AddGlobalTestEnvironment(new TestGuiApplicationEnvironment), true);

}  // namespace cad::gs
