#include "vantor/search/CachedParts.h"

#include <unordered_map>

#include "vantor/store/TreeCache.h"

namespace vantor {

namespace {

void takeCatalogueTexts(const PartRecord& record, PartSearchEntry& entry) {
    entry.kname = record.kname;
    entry.ename = record.ename;
    entry.spec = record.spec;
    entry.material = record.material;
    for (const std::string* text : {&record.remark, &record.group})
        if (!text->empty()) entry.otherTexts.push_back(*text);
    for (const std::string& text : record.user)
        if (!text.empty()) entry.otherTexts.push_back(text);
}

}  // namespace

std::vector<PartSearchEntry> partsOfNodes(const std::vector<TreeCacheNode>& nodes,
                                          const std::vector<CatalogueEntry>& catalogue) {
    std::unordered_map<std::int64_t, const TreeCacheNode*> byId;
    byId.reserve(nodes.size());
    for (const TreeCacheNode& node : nodes) byId.emplace(node.id, &node);
    std::unordered_map<std::int64_t, const CatalogueEntry*> texts;
    texts.reserve(catalogue.size());
    for (const CatalogueEntry& entry : catalogue) texts.emplace(entry.recordId, &entry);

    std::vector<PartSearchEntry> parts;
    for (const TreeCacheNode& node : nodes) {
        if (!node.record) continue;
        PartSearchEntry& part = parts.emplace_back();
        part.recordId = node.id;
        part.recordKey = node.name;
        // Up the parents to the library's root; a damaged cache's loop ends at its length.
        for (auto parent = byId.find(node.parentId);
             parent != byId.end() && part.keys.size() < nodes.size();
             parent = byId.find(parent->second->parentId)) {
            part.keys.insert(part.keys.begin(), parent->second->name);
            if (parent->second->name == parent->second->libraryKey) break;
        }
        if (auto found = texts.find(node.id); found != texts.end())
            takeCatalogueTexts(found->second->record, part);
        else
            part.spec = node.recordText;
    }
    return parts;
}

std::optional<std::vector<PartSearchEntry>> cachedParts(const std::string& drawingPath) {
    std::vector<TreeCacheNode> nodes;
    if (!TreeCache::readFile(TreeCache::pathFor(drawingPath), nodes)) return std::nullopt;
    std::vector<CatalogueEntry> catalogue;
    if (CatalogueCache::isCurrent(drawingPath)) {
        if (auto read = CatalogueCache::read(CatalogueCache::pathFor(drawingPath)))
            catalogue = std::move(*read);
    }
    return partsOfNodes(nodes, catalogue);
}

void indexDrawings(PartSearchIndex& index, const std::vector<std::string>& drawingPaths) {
    for (const std::string& path : drawingPaths) {
        if (std::optional<std::vector<PartSearchEntry>> parts = cachedParts(path))
            index.setDrawing(path, std::move(*parts));
        else
            index.removeDrawing(path);
    }
    index.keepOnly(drawingPaths);
}

}  // namespace vantor
