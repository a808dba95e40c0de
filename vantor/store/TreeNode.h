// A node of the category tree: a library root, a category, a group or a part record of one
// library drawing, with the id of its object in that drawing and its children in order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vantor/store/LibraryKind.h"

namespace vantor {

struct TreeNode {
    enum class Kind { LibraryRoot, Category, Group, Record };

    // How a dictionary below a library root is told apart: a group is a dictionary that holds
    // no sub-dictionary, a category one that holds at least one. A new, empty category is so
    // a group at once and takes part records straight away; it becomes a category when a
    // sub-category is made in it. Both the cache loader and the editing use this one rule.
    static Kind dictionaryKind(bool isLibraryRoot, bool holdsSubDictionary);

    Kind kind = Kind::Group;
    LibraryKind library = LibraryKind::User;
    // The handle value of the node's object in the drawing; 0 for a user library root that
    // the drawing does not hold yet (it is made when the library is first edited).
    std::int64_t id = 0;
    std::string drawingPath;
    std::string name;        // the key in the parent dictionary; a root's is its library key
    std::string libraryKey;  // as the cache handed it down
    std::string recordText;  // a record's specification
    TreeNode* parent = nullptr;
    std::vector<std::unique_ptr<TreeNode>> children;  // in tree order

    bool isDictionary() const { return kind != Kind::Record; }
    bool holdsSubDictionary() const;
    bool holdsRecords() const;
    // Applies dictionaryKind after the children changed.
    void refreshKind();

    // What the tree item shows: "AD-LIBRARY" or "USR-LIBRARY" for a root, the specification
    // for a record, the name otherwise.
    std::string label() const;
    // The drawing's file name with the library's suffix: "standard-parts [AD-LIB]".
    std::string drawingLabel() const;
    // The library key and the names of the categories down to this node.
    std::vector<std::string> keyPath() const;

    TreeNode& addChild(std::unique_ptr<TreeNode> child);
    // Takes the child out of this node; nullptr when it is not one of them.
    std::unique_ptr<TreeNode> removeChild(const TreeNode* child);
};

}  // namespace vantor
