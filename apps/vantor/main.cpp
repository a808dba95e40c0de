// The vantor command line: the module's files handled without the host, one subcommand group
// per file. Dispatches on the first word; --help lists every command.
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "apps/vantor/CliCommand.h"
#include "cad/sys/FileLock.h"

namespace {

using vantor::cli::CliCommand;

std::vector<CliCommand> allCommands() {
    std::vector<CliCommand> commands;
    vantor::cli::addWindowCommands(commands);
    vantor::cli::addStoreCommands(commands);
    vantor::cli::addRegistryCommands(commands);
    vantor::cli::addPlaceCommands(commands);
    return commands;
}

void printHelp(const std::vector<CliCommand>& commands) {
    std::cout << "Usage: vantor COMMAND [ARGS]\n"
                 "\n"
                 "Works on the settings and data files beside the module (the folder of this\n"
                 "program, or VANTOR_MODULE_DIR when set), the same files the library window\n"
                 "uses. Confirmations are answered yes; every message is printed as\n"
                 "\"[title] text\", errors on stderr.\n"
                 "A file another program is changing (a list, a drawing) is waited for a\n"
                 "few seconds (VANTOR_LOCK_WAIT_MS milliseconds when set), then the command\n"
                 "fails naming who holds it.\n"
                 "Exit codes: 0 success, 1 failure, 2 bad usage.\n"
                 "\n"
                 "Commands:\n";
    for (const CliCommand& command : commands) std::cout << command.help << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    // Batch scripts beside a busy library window may want to wait longer than a user would.
    if (const char* wait = std::getenv("VANTOR_LOCK_WAIT_MS"); wait && *wait)
        cad::sys::FileLock::setDefaultWait(std::chrono::milliseconds(std::atol(wait)));
    const std::vector<CliCommand> commands = allCommands();
    if (argc < 2) return vantor::cli::usageError("no command given");
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        printHelp(commands);
        return vantor::cli::kExitOk;
    }
    for (const CliCommand& command : commands) {
        if (command.name == name)
            return command.run(std::vector<std::string>(argv + 2, argv + argc));
    }
    return vantor::cli::usageError("unknown command '" + name + "'");
}
