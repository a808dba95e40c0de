// One subcommand of the vantor command line, and the conventions every subcommand keeps:
// exit codes, messages on stderr, and the few argument helpers they share.
#pragma once

#include <charconv>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vantor/registry/ManagementWindows.h"

namespace vantor::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

struct CliCommand {
    std::string_view name;  // the first word after "vantor"
    std::string_view help;  // usage lines and what the command does, for --help
    // Runs with the words after the name; answers the exit code.
    int (*run)(std::vector<std::string> args);
};

// The subcommand groups; each group's file adds its commands.
void addWindowCommands(std::vector<CliCommand>& commands);
void addStoreCommands(std::vector<CliCommand>& commands);
void addRegistryCommands(std::vector<CliCommand>& commands);
void addPlaceCommands(std::vector<CliCommand>& commands);

inline int usageError(std::string_view message) {
    std::cerr << "vantor: " << message << "\nTry 'vantor --help'.\n";
    return kExitUsage;
}

inline int failure(std::string_view message) {
    std::cerr << "vantor: " << message << '\n';
    return kExitFailure;
}

// Removes `flag` from args wherever it stands; true when it was there.
inline bool takeFlag(std::vector<std::string>& args, std::string_view flag) {
    return std::erase(args, std::string(flag)) > 0;
}

// A group path as typed: the library key and the categories down to the group, joined by '/'.
inline std::vector<std::string> splitGroupPath(const std::string& text) {
    std::vector<std::string> keys;
    std::size_t start = 0;
    while (true) {
        std::size_t slash = text.find('/', start);
        keys.push_back(text.substr(start, slash - start));
        if (slash == std::string::npos) return keys;
        start = slash + 1;
    }
}

// A position as typed: decimal digits only.
// Selects an existing management window, loading its list as the drop-down does; a clear
// failure when there is none at that position.
inline bool selectWindow(ManagementWindows& windows, int position) {
    const int count = static_cast<int>(windows.names().size());
    if (position >= count) {
        failure("no management window " + std::to_string(position) + " (there are " +
                std::to_string(count) + ")");
        return false;
    }
    windows.selectionChanged(position);
    return true;
}

inline std::optional<int> parsePosition(std::string_view text) {
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || text.front() == '-' || error != std::errc() ||
        end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace vantor::cli
