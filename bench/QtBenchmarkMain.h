// The main of a benchmark that paints with Qt: the application made first, offscreen, then the
// benchmarks run as Google Benchmark's own main would run them.
#pragma once

#include <QtGlobal>
#include <benchmark/benchmark.h>

template <class App>
int runQtBenchmarks(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    App application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
