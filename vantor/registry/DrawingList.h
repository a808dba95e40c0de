// The registered drawings of the current management window, in registration order.
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "vantor/registry/RegisteredDrawing.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class DrawingList {
public:
    using Entries = std::list<RegisteredDrawing>;  // entries keep their address while listed

    // Appends the path unless it is listed already (see contains); answers the new entry, or
    // nullptr when it was a duplicate or too long for the list file (the latter is reported
    // through `dialogs`; a duplicate is for the caller to report).
    RegisteredDrawing* addPath(std::string_view path, cad::app::UserDialogs& dialogs);
    // True when an entry has exactly the bytes of the path as given or of its stored form
    // (doubled backslashes collapsed unless the path starts with a backslash).
    bool contains(std::string_view path) const;
    // False when the entry is not in this list.
    bool remove(const RegisteredDrawing* entry);
    void clear() { entries_.clear(); }

    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    Entries::iterator begin() { return entries_.begin(); }
    Entries::iterator end() { return entries_.end(); }
    Entries::const_iterator begin() const { return entries_.begin(); }
    Entries::const_iterator end() const { return entries_.end(); }

    std::vector<std::string> paths() const;

private:
    Entries entries_;
};

}  // namespace vantor
