// Keeping the library drawings being browsed.
#include "vantor/store/LibraryDrawingCache.h"

#include <filesystem>

#include "cad/db/Database.h"
#include "vantor/store/LibraryDrawing.h"

namespace vantor {

LibraryDrawingCache::LibraryDrawingCache(std::size_t capacity)
    : capacity_(capacity == 0 ? 1 : capacity) {}

LibraryDrawingCache::~LibraryDrawingCache() = default;

LibraryDrawingCache::Stamp LibraryDrawingCache::stampOf(const std::string& path) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(path, error);
    if (error) return {};
    const auto size = std::filesystem::file_size(path, error);
    if (error) return {};
    return {std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count(),
            static_cast<std::int64_t>(size)};
}

cad::db::Database* LibraryDrawingCache::open(const std::string& path, cad::ErrorStatus* status) {
    const Stamp stamp = stampOf(path);
    for (auto it = entries_.begin(); it != entries_.end(); ++it) {
        if (it->path != path) continue;
        if (it->stamp == stamp && stamp.size >= 0) {
            entries_.splice(entries_.begin(), entries_, it);
            if (status) *status = cad::ErrorStatus::eOk;
            return entries_.front().database.get();
        }
        entries_.erase(it);
        break;
    }
    std::unique_ptr<cad::db::Database> database = openLibraryDrawing(path, status);
    if (!database) return nullptr;
    entries_.push_front({path, stamp, std::move(database)});
    while (entries_.size() > capacity_) entries_.pop_back();
    return entries_.front().database.get();
}

bool LibraryDrawingCache::holdsCurrent(const std::string& path) const {
    for (const Entry& entry : entries_)
        if (entry.path == path) return entry.stamp == stampOf(path) && entry.stamp.size >= 0;
    return false;
}

void LibraryDrawingCache::clear() {
    entries_.clear();
}

void LibraryDrawingCache::forget(const std::string& path) {
    entries_.remove_if([&](const Entry& entry) { return entry.path == path; });
}

}  // namespace vantor
