// One entry of a .vnf tree cache: a dictionary node (library root, category, group) or a part
// record node of a library drawing, linked to its parent by id.
#pragma once

#include <cstdint>
#include <string>

namespace vantor {

struct TreeCacheNode {
    bool supplier = false;  // library flag: 1 for the supplier library, 0 for the user library
    bool record = false;    // record flag: 1 for a part record, 0 for a dictionary
    std::string drawingPath;
    std::string name;        // the key in the parent dictionary; a root's is its library key
    std::string libraryKey;  // "Adv data list" or "User data list"
    std::string recordText;  // a record's specification; empty for a dictionary
    // Handle values of the node's object and of the dictionary that owns it. They link the
    // entries of one file together and name the objects when the drawing is edited.
    std::int64_t id = 0;
    std::int64_t parentId = 0;

    friend bool operator==(const TreeCacheNode&, const TreeCacheNode&) = default;
};

}  // namespace vantor
