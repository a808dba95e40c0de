// Filling the registered-drawing dialog's rows from the list.
#include "vantor/registry/operations/DrawingListRow.h"

#include "vantor/registry/DrawingList.h"

namespace vantor {

std::vector<DrawingListRow> DrawingListRow::rowsOf(const DrawingList& list) {
    std::vector<DrawingListRow> rows;
    rows.reserve(list.size());
    for (const RegisteredDrawing& entry : list) {
        DrawingListRow& row = rows.emplace_back();
        row.name = entry.name + entry.ext;
        row.drive = entry.drive.empty() ? "Network" : entry.drive;
        row.dir = entry.dir;
        row.image = entry.active == 1 ? kActiveImage : kInactiveImage;
        row.entry = &entry;
    }
    return rows;
}

}  // namespace vantor
