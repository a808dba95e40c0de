// Any bytes as a .vnc catalogue cache, and then as the words of a search over what it held:
// the parser refuses or takes the file whole, what it takes is written and read back the same,
// and the search's folding of any text neither crashes nor finds more than there is.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FuzzInputFile.h"
#include "vantor/search/PartSearchIndex.h"
#include "vantor/store/CatalogueCache.h"

namespace {

std::vector<std::string> textsOf(const vantor::PartRecord& record) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < vantor::PartRecord::kTextCount; ++i) texts.push_back(record.text(i));
    return texts;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::optional<std::vector<vantor::CatalogueEntry>> entries = vantor::CatalogueCache::parse(bytes);
    if (entries) {
        const std::string& path = fuzzInputPath("input.vnc");
        if (!vantor::CatalogueCache::write(path, *entries)) __builtin_trap();
        const auto again = vantor::CatalogueCache::read(path);
        if (!again || again->size() != entries->size()) __builtin_trap();
        for (std::size_t i = 0; i < entries->size(); ++i) {
            if ((*again)[i].recordId != (*entries)[i].recordId ||
                textsOf((*again)[i].record) != textsOf((*entries)[i].record))
                __builtin_trap();
        }
    }

    // The input's first line stands as the query, so the search meets any bytes too.
    const std::string_view query = bytes.substr(0, bytes.find('\n'));
    vantor::PartSearchIndex index;
    std::vector<vantor::PartSearchEntry> parts;
    if (entries) {
        for (const vantor::CatalogueEntry& entry : *entries) {
            vantor::PartSearchEntry& part = parts.emplace_back();
            part.recordId = entry.recordId;
            part.kname = entry.record.kname;
            part.spec = entry.record.spec;
            part.otherTexts = textsOf(entry.record);
        }
    } else {
        vantor::PartSearchEntry& part = parts.emplace_back();
        part.kname = std::string(bytes.substr(0, 64));
    }
    const std::size_t count = parts.size();
    index.setDrawing("/fuzz.dxf", std::move(parts));
    const vantor::PartSearchResult found = index.find(query);
    if (found.size() > count) __builtin_trap();
    for (std::size_t i = 0; i < found.size(); ++i) (void)found.entry(i).kname;
    return 0;
}
