// For benchmarks: the memory this process holds in RAM now, to report what an operation costs.
#pragma once

#include <unistd.h>

#include <fstream>

inline long currentRssKb() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}
