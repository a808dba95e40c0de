// The rows of the registered-drawing dialog's list: one per entry of the list, in list order.
#pragma once

#include <string>
#include <vector>

namespace vantor {

class DrawingList;
struct RegisteredDrawing;

struct DrawingListRow {
    static constexpr int kInactiveImage = 0;
    static constexpr int kActiveImage = 1;

    std::string name;   // name and extension
    std::string drive;  // "Network" for a path without a drive; "/" for one from the root
    std::string dir;
    int image = kInactiveImage;
    const RegisteredDrawing* entry = nullptr;  // what remove and open act on

    static std::vector<DrawingListRow> rowsOf(const DrawingList& list);
};

}  // namespace vantor
