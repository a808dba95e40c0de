// Resolving: names of layers, linetypes, text styles, dimension styles and blocks to their
// records, with every block known before an entity is read.
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/NameCompare.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/dxf/DatabaseLoader.h"
#include "cad/sys/AsciiCase.h"

namespace cad::db::dxf {
namespace {

SymbolTableKind tableKindOf(DxfFiler::SymbolTable kind) {
    switch (kind) {
        case DxfFiler::SymbolTable::Layer:
            return SymbolTableKind::Layer;
        case DxfFiler::SymbolTable::Linetype:
            return SymbolTableKind::Linetype;
        case DxfFiler::SymbolTable::TextStyle:
            return SymbolTableKind::TextStyle;
        case DxfFiler::SymbolTable::Block:
            return SymbolTableKind::BlockRecord;
        case DxfFiler::SymbolTable::DimStyle:
            return SymbolTableKind::DimStyle;
    }
    return SymbolTableKind::Layer;
}

}  // namespace

void DatabaseLoader::buildSymbolMap(SymbolKind kind) {
    auto& map = names_[static_cast<std::size_t>(kind)];
    map.clear();
    std::vector<ObjectId> records;
    if (auto table = open<SymbolTable>(tableId(tableKindOf(kind)), OpenMode::ForRead))
        records = table->recordIds();
    for (const ObjectId id : records) {
        if (auto record = open<SymbolTableRecord>(id, OpenMode::ForRead))
            map.emplace(cad::sys::asciiUpper(record->name()), id);
    }
}

void DatabaseLoader::resolve(ObjectId& record, std::string_view name, SymbolKind kind) {
    if (!symbolsReady_) {
        pending_.push_back(Pending{&record, std::string(name), kind});
        return;
    }
    record = lookUp(kind, name);
}

ObjectId DatabaseLoader::lookUp(SymbolKind kind, std::string_view name) {
    if (trimBlanks(name).empty()) return ObjectId::kNull;
    // Entities come in runs on one layer: the last name of each kind is answered at once.
    LastName& last = lastNames_[static_cast<std::size_t>(kind)];
    if (!last.id.isNull() && last.name == name) return last.id;
    auto& map = names_[static_cast<std::size_t>(kind)];
    const std::string key = cad::sys::asciiUpper(name);
    ObjectId id;
    if (const auto it = map.find(key); it != map.end()) {
        id = it->second;
    } else {
        id = makeMissing(kind, std::string(name));
        map.emplace(key, id);
    }
    last = LastName{std::string(name), id};
    return id;
}

ObjectId DatabaseLoader::makeMissing(SymbolKind kind, const std::string& name) {
    ObjectId id;
    switch (kind) {
        case SymbolKind::Layer:
            id =
                makeRecord(SymbolTableKind::Layer,
                           MadeTags("LAYER", {{2, name}, {70, "0"}, {62, "7"}, {6, "Continuous"}}));
            break;
        case SymbolKind::Linetype:
            id = makeRecord(
                SymbolTableKind::Linetype,
                MadeTags("LTYPE",
                         {{2, name}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"}}));
            break;
        case SymbolKind::TextStyle:
            id = makeRecord(
                SymbolTableKind::TextStyle,
                MadeTags("STYLE", {{2, name}, {70, "0"}, {40, "0.0"}, {41, "1.0"}, {3, "txt"}}));
            break;
        case SymbolKind::DimStyle:
            id =
                makeRecord(SymbolTableKind::DimStyle, MadeTags("DIMSTYLE", {{2, name}, {70, "0"}}));
            break;
        case SymbolKind::Block:
            id = makeBlock(name);
            issue(kIssueMissingBlock,
                  "block " + inQuotes(name) +
                      " is referenced but not defined; an empty definition was made",
                  id.handle());
            return id;
    }
    issue(kIssueMissingSymbol,
          std::string(DxfFiler::recordWord(kind)) + " " + inQuotes(name) +
              " is not defined; it was made",
          id.handle());
    return id;
}

std::string_view DatabaseLoader::blockNameOf(TagSpan item) {
    std::string_view fallback;
    for (const Tag& tag : item) {
        if (tag.code == 2) return tag.value;
        if (tag.code == 3 && fallback.empty()) fallback = tag.value;
    }
    return fallback;
}

// R12 writers call the layout blocks $MODEL_SPACE and $PAPER_SPACE.
std::string DatabaseLoader::blockName(TagSpan item) const {
    std::string name = decodeText(blockNameOf(item), codePage_);
    if (equalNames(name, "$MODEL_SPACE")) return std::string(BlockTableRecord::kModelSpace);
    if (equalNames(name, "$PAPER_SPACE")) return std::string(BlockTableRecord::kPaperSpace);
    return name;
}

// Every BLOCK gets its record before any entity is read, so references to blocks defined
// further down (and R12 files, which have no BLOCK_RECORD table) resolve.
bool DatabaseLoader::defineBlocks(const Section& section) {
    buildSymbolMap(SymbolKind::Block);
    auto& blocks = names_[static_cast<std::size_t>(SymbolKind::Block)];
    return eachItem(section, [&](TagSpan item) {
        if (typeOf(item) != "BLOCK") return true;
        const std::string name = blockName(item);
        if (trimBlanks(name).empty())
            return fail(item.front().line, "expected the block's name (group code 2)");
        if (blocks.count(cad::sys::asciiUpper(name)) != 0) return true;
        const ObjectId id = makeBlockRecord(name);
        if (hasHandles() && madeTables_.count(SymbolTableKind::BlockRecord) == 0) {
            issue(kIssueMissingStandardObject,
                  placeText(place_, item.front().line) + ": block " + inQuotes(name) +
                      " has no BLOCK_RECORD; it was made",
                  id.handle());
        }
        return true;
    });
}

}  // namespace cad::db::dxf
