// The catalogue of a library drawing's part records beside its tree cache: every text field of
// every record, so that the parts can be searched without opening the drawing. The tree cache
// holds only each record's specification, and its layout is shared with other programs, so the
// other fields live in a file of their own, written and dropped together with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vantor/store/PartRecord.h"

namespace vantor {

struct CatalogueEntry {
    std::int64_t recordId = 0;  // the record's handle value, as the tree cache names it
    PartRecord record;          // its texts; the views are not kept
};

class CatalogueCache {
public:
    // "D:/Lib/bolts.vnc" beside "D:/Lib/bolts.vnf".
    static std::string pathFor(std::string_view drawingPath);
    // Current when the drawing is not newer than the file, as the tree cache is judged.
    static bool isCurrent(const std::string& drawingPath);

    // One line per record after a version line, the texts in their caret form separated by
    // tabs, and a last line with the count, so that a file cut short is told from a whole one.
    // Written atomically; false when it cannot be (the old file stays).
    static bool write(const std::string& path, const std::vector<CatalogueEntry>& entries);
    // nullopt when the file is missing, cut short or damaged: the caller then has only what
    // the tree cache holds.
    static std::optional<std::vector<CatalogueEntry>> read(const std::string& path);
    static std::optional<std::vector<CatalogueEntry>> parse(std::string_view bytes);
};

}  // namespace vantor
