// Searching a folder tree for files by wildcard patterns, in the order the folder scan of the
// drawing registry relies on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cad::sys {

// Wildcard match of a file name: '*' stands for any run of characters, '?' for exactly one
// character (a whole UTF-8 sequence). ASCII letters match without regard to case, so "*.dwg"
// matches "A.DWG", as file names match on the system the patterns come from.
bool matchesPattern(std::string_view name, std::string_view pattern);

// The full paths of the files below `folder` whose names match any of `patterns`.
// Each folder is searched depth first: first each of its subfolders, recursively, then its own
// matching files. Entries are taken in case-insensitive name order (ASCII letters folded to
// upper case, other bytes by value, names equal but for case by their bytes), which is the
// order the original file system lists them in and makes the result the same on every run.
// A folder that cannot be read (or `folder` itself when missing) is skipped and its path is
// added to `unreadable` when given. Symbolic links to folders are followed, except into a
// folder that is already being searched further up, so a link loop ends the descent.
std::vector<std::string> findFiles(const std::string& folder,
                                   const std::vector<std::string>& patterns,
                                   std::vector<std::string>* unreadable = nullptr);

}  // namespace cad::sys
