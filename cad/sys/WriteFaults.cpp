// The injected write failures: a step counter and the one step to fail.
#include "cad/sys/WriteFaults.h"

#include <atomic>

namespace cad::sys {

namespace {

std::atomic<int> seen{0};
std::atomic<int> failing{-1};
std::atomic<int> failWith{0};

}  // namespace

void WriteFaults::failStep(int step, int osError) {
    failWith.store(osError);
    failing.store(step);
    seen.store(0);
}

void WriteFaults::reset() {
    failing.store(-1);
    seen.store(0);
}

int WriteFaults::stepsSeen() {
    return seen.load();
}

int WriteFaults::check() {
    const int step = seen.fetch_add(1);
    return step == failing.load() ? failWith.load() : 0;
}

}  // namespace cad::sys
