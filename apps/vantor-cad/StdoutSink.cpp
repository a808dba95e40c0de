// Standard output as the command line.
#include "StdoutSink.h"

#include <cstdio>

namespace vantorcad {

// Flushed at once, so a reader of the pipe sees each prompt before the host waits for input.
void StdoutSink::write(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace vantorcad
