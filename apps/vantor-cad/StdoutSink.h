// The headless command line: everything printed goes to standard output as it comes.
#pragma once

#include "cad/ed/CommandLineSink.h"

namespace vantorcad {

class StdoutSink : public cad::ed::CommandLineSink {
public:
    void write(std::string_view text) override;
};

}  // namespace vantorcad
