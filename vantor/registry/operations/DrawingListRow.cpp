// Filling the registered-drawing dialog's rows from the list.
#include "vantor/registry/operations/DrawingListRow.h"

#include "vantor/registry/DrawingList.h"

namespace vantor {

namespace {

// Without a drive a path is a network one ("\\srv\lib\a.dwg", "//srv/lib/a.dwg"), except
// on a system without drives, where a path from the root is a local file: calling every such
// drawing "Network" would tell the user they all lie on other machines.
std::string driveColumn(const RegisteredDrawing& entry) {
    if (!entry.drive.empty()) return entry.drive;
    const std::string& path = entry.path;
    const bool fromRoot = !path.empty() && path[0] == '/';
    const bool twoSeparators = path.size() > 1 && (path[1] == '/' || path[1] == '\\');
    return fromRoot && !twoSeparators ? "/" : "Network";
}

}  // namespace

std::vector<DrawingListRow> DrawingListRow::rowsOf(const DrawingList& list) {
    std::vector<DrawingListRow> rows;
    rows.reserve(list.size());
    for (const RegisteredDrawing& entry : list) {
        DrawingListRow& row = rows.emplace_back();
        row.name = entry.name + entry.ext;
        row.drive = driveColumn(entry);
        row.dir = entry.dir;
        row.image = entry.active == 1 ? kActiveImage : kInactiveImage;
        row.entry = &entry;
    }
    return rows;
}

}  // namespace vantor
