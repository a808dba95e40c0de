// The library drawings the window reads from while the user browses: each read once and kept
// while its file stays as it was read, so a group's records, a block list and a preview do not
// read the drawing again on every click.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "cad/sys/ErrorStatus.h"

namespace cad::db {
class Database;
}

namespace vantor {

class LibraryDrawingCache {
public:
    explicit LibraryDrawingCache(std::size_t capacity = 8);
    ~LibraryDrawingCache();

    // The drawing as its file is now: kept from before when the file has not changed since,
    // otherwise read again. nullptr when it cannot be read (`status` says why). The database
    // stays valid until the next call for another drawing pushes it out, forget or clear.
    cad::db::Database* open(const std::string& path, cad::ErrorStatus* status = nullptr);
    // True when open() would answer the drawing kept, without reading.
    bool holdsCurrent(const std::string& path) const;
    void forget(const std::string& path);
    void clear();
    std::size_t size() const { return entries_.size(); }

private:
    // The file's identity as far as a change shows: time to the nanosecond and size, so that a
    // save within the same second is still seen.
    struct Stamp {
        std::int64_t nanoseconds = -1;
        std::int64_t size = -1;
        bool operator==(const Stamp&) const = default;
    };
    struct Entry {
        std::string path;
        Stamp stamp;
        std::unique_ptr<cad::db::Database> database;
    };
    static Stamp stampOf(const std::string& path);

    std::size_t capacity_;
    std::list<Entry> entries_;  // the most recently used first
};

}  // namespace vantor
