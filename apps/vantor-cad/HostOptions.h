// The host program's command-line options.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vantorcad {

struct HostOptions {
    bool headless = false;
    bool help = false;
    std::optional<std::string> script;  // headless input; standard input without it
    std::vector<std::string> modules;   // loaded at start, in order
    std::vector<std::string> drawings;  // opened at start, after the modules
    std::optional<int> sdi;             // the "SDI" system variable

    // The options of argv[1..]; nullopt with `error` saying what is wrong.
    static std::optional<HostOptions> parse(const std::vector<std::string>& arguments,
                                            std::string& error);
    static std::string usage();
};

}  // namespace vantorcad
