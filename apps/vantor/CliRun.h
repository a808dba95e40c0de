// For the command line's tests: runs the built vantor program with arguments and answers its
// exit code and what it wrote to standard output and standard error.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "cad/sys/TestTempFolder.h"

namespace vantor::cli::testing_support {

struct CliOutcome {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string shellQuoted(const std::string& arg) {
    std::string text = "'";
    for (char c : arg) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// `environment` goes in front of the program ("NAME=value ..."); the output is caught in
// files of `scratch`.
inline CliOutcome runVantor(const std::vector<std::string>& args,
                            const cad::sys::TestTempFolder& scratch,
                            const std::string& environment = {}) {
    std::string command = environment + " " + shellQuoted(VANTOR_CLI);
    for (const std::string& arg : args) command += " " + shellQuoted(arg);
    command += " >" + shellQuoted(scratch.file("out")) + " 2>" + shellQuoted(scratch.file("err"));
    const int status = std::system(command.c_str());
    CliOutcome result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = scratch.readBytes("out");
    result.err = scratch.readBytes("err");
    return result;
}

}  // namespace vantor::cli::testing_support
