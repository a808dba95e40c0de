// Category tree nodes.
#include "vantor/store/TreeNode.h"

#include <algorithm>

#include "cad/sys/SplitPath.h"

namespace vantor {

TreeNode::Kind TreeNode::dictionaryKind(bool isLibraryRoot, bool holdsSubDictionary) {
    if (isLibraryRoot) return Kind::LibraryRoot;
    return holdsSubDictionary ? Kind::Category : Kind::Group;
}

bool TreeNode::holdsSubDictionary() const {
    return std::any_of(children.begin(), children.end(),
                       [](const auto& child) { return child->isDictionary(); });
}

bool TreeNode::holdsRecords() const {
    return std::any_of(children.begin(), children.end(),
                       [](const auto& child) { return !child->isDictionary(); });
}

void TreeNode::refreshKind() {
    if (isDictionary()) kind = dictionaryKind(kind == Kind::LibraryRoot, holdsSubDictionary());
}

std::string TreeNode::label() const {
    switch (kind) {
        case Kind::LibraryRoot:
            return std::string(libraryRootName(library));
        case Kind::Record:
            return recordText;
        default:
            return name;
    }
}

std::string TreeNode::drawingLabel() const {
    return cad::sys::splitPath(drawingPath).fname + std::string(librarySuffix(library));
}

std::vector<std::string> TreeNode::keyPath() const {
    std::vector<std::string> keys;
    for (const TreeNode* node = this; node != nullptr; node = node->parent)
        keys.push_back(node->kind == Kind::LibraryRoot
                           ? std::string(vantor::libraryKey(node->library))
                           : node->name);
    std::reverse(keys.begin(), keys.end());
    return keys;
}

TreeNode& TreeNode::addChild(std::unique_ptr<TreeNode> child) {
    child->parent = this;
    children.push_back(std::move(child));
    return *children.back();
}

std::unique_ptr<TreeNode> TreeNode::removeChild(const TreeNode* child) {
    auto found = std::find_if(children.begin(), children.end(),
                              [child](const auto& c) { return c.get() == child; });
    if (found == children.end()) return nullptr;
    std::unique_ptr<TreeNode> removed = std::move(*found);
    children.erase(found);
    removed->parent = nullptr;
    return removed;
}

}  // namespace vantor
