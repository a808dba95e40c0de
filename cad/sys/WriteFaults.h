// A test hook: every step of the writers that changes a file on disk (making the temporary,
// each write, the sync, the close, the rename) asks here first, so that a test can make each
// step of a save fail in turn, as a full disk or a refusing server would, and look at what
// is left on disk and what the user is told.
#pragma once

#include <cerrno>

namespace cad::sys {

class WriteFaults {
public:
    // From now on, the step numbered `step` (0 is the next one asked) fails with `osError`;
    // every other step goes on.
    static void failStep(int step, int osError);
    // No step fails any more; counting starts again from 0.
    static void reset();
    // Steps asked since the last reset() or failStep(), for a test to learn how many steps
    // a save takes.
    static int stepsSeen();
    // Asked by each step: the error number the step is to fail with, 0 to go on.
    static int check();

    // Runs one step's system call, unless the step is to fail: then -1 with errno set, as
    // the call itself answers a failure.
    template <class Call>
    static auto run(Call call) -> decltype(call()) {
        if (const int error = check(); error != 0) {
            errno = error;
            return -1;
        }
        return call();
    }
};

}  // namespace cad::sys
