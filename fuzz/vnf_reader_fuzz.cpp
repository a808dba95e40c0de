// Any bytes as a .vnf tree cache: read through the text-mode stream, then turned into the
// category tree as a library drawing's load does. Nothing may crash, hang or take memory the
// file does not hold; a refused cache is a normal outcome (the drawing is read instead).
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "FuzzInputFile.h"
#include "cad/app/ScriptedDialogs.h"
#include "vantor/store/TreeCache.h"
#include "vantor/store/VNTreeBase.h"


extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = fuzzInputPath("input.vnf");
    writeFuzzInput(path, data, size);

    std::vector<vantor::TreeCacheNode> nodes;
    if (!vantor::TreeCache::readFile(path, nodes) || nodes.empty()) return 0;

    cad::app::ScriptedDialogs dialogs;
    vantor::CVNTreeBase tree(dialogs);
    if (!tree.insertCachedNodes(nodes.front().drawingPath, nodes)) return 0;

    // The tree's promises: every node is linked to the parent that holds it and reaches a
    // root of its drawing.
    std::size_t seen = 0;
    std::function<void(const vantor::TreeNode&)> walk = [&](const vantor::TreeNode& node) {
        ++seen;
        (void)node.label();
        (void)node.keyPath();
        for (const auto& child : node.children) {
            if (child->parent != &node || child->drawingPath != node.drawingPath) __builtin_trap();
            walk(*child);
        }
    };
    for (const auto& root : tree.roots()) {
        if (root->parent != nullptr) __builtin_trap();
        walk(*root);
    }
    if (seen != nodes.size()) __builtin_trap();
    return 0;
}
