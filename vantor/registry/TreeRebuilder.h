// What the management windows ask of the category tree: rebuild it from the drawings of the
// list just loaded.
#pragma once

namespace vantor {

class DrawingList;

class TreeRebuilder {
public:
    virtual ~TreeRebuilder() = default;
    // Reads each drawing's library data and sets its active flag.
    virtual void rebuildFromList(DrawingList& list) = 0;
};

}  // namespace vantor
