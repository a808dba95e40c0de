// The parts of a library drawing as the search indexes them, read from the caches beside it:
// the tree cache for the categories, groups and keys, the catalogue cache for the texts. The
// drawing itself is never opened.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "vantor/search/PartSearchIndex.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/TreeCacheNode.h"

namespace vantor {

// nullopt when the tree cache cannot be read. Without a current catalogue cache the records
// carry only the specification the tree cache holds.
std::optional<std::vector<PartSearchEntry>> cachedParts(const std::string& drawingPath);

// The entries of a tree cache's records, in file order, with the texts of `catalogue` where it
// has the record.
std::vector<PartSearchEntry> partsOfNodes(const std::vector<TreeCacheNode>& nodes,
                                          const std::vector<CatalogueEntry>& catalogue);

// The drawings' parts into the index, each in place of what it held of it; a drawing whose
// caches cannot be read is left out. The index then holds exactly these drawings, in order.
void indexDrawings(PartSearchIndex& index, const std::vector<std::string>& drawingPaths);

}  // namespace vantor
