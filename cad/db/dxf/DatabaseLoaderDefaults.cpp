// Making what a drawing must have and the file lacks: tables, standard records, block ends,
// the named-objects dictionary's standard entries, layouts.
#include "cad/db/Dictionary.h"
#include "cad/db/Layout.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/RawObject.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/dxf/DatabaseLoader.h"
#include "cad/sys/AsciiCase.h"

namespace cad::db::dxf {
namespace {

struct WellKnownTable {
    SymbolTableKind kind;
    ObjectId Database::WellKnownIds::*id;
};

constexpr std::array<WellKnownTable, 9> kTables{{
    {SymbolTableKind::Viewport, &Database::WellKnownIds::viewportTable},
    {SymbolTableKind::Linetype, &Database::WellKnownIds::linetypeTable},
    {SymbolTableKind::Layer, &Database::WellKnownIds::layerTable},
    {SymbolTableKind::TextStyle, &Database::WellKnownIds::textStyleTable},
    {SymbolTableKind::View, &Database::WellKnownIds::viewTable},
    {SymbolTableKind::Ucs, &Database::WellKnownIds::ucsTable},
    {SymbolTableKind::RegApp, &Database::WellKnownIds::regAppTable},
    {SymbolTableKind::DimStyle, &Database::WellKnownIds::dimStyleTable},
    {SymbolTableKind::BlockRecord, &Database::WellKnownIds::blockTable},
}};

}  // namespace

// A structure the reader makes up, stored under a new handle.
ObjectId DatabaseLoader::make(const MadeTags& tags, ObjectId owner) {
    ReadingFiler filer(db_, version_, MadeTags::kCodePage, place_, *this);
    auto object = ObjectFactory::create(typeOf(tags.span()), {}, Placement::Object, tags.span());
    if (!filer.read(*object, tags.span())) return ObjectId::kNull;
    ObjectId id;
    db_.addObject(std::move(object), id, owner);
    return id;
}

ObjectId& DatabaseLoader::tableId(SymbolTableKind kind) {
    for (const WellKnownTable& table : kTables) {
        if (table.kind == kind) return ids_.*table.id;
    }
    return ids_.layerTable;
}

void DatabaseLoader::ensureTables() {
    for (const WellKnownTable& table : kTables) {
        ObjectId& id = ids_.*table.id;
        if (!id.isNull()) continue;
        id = make(MadeTags("TABLE", {{2, std::string(tableName(table.kind))}}), ObjectId::kNull);
        // Its standard records and blocks are made too; this report says it for them.
        madeTables_.insert(table.kind);
        if (hasHandles()) {
            issue(kIssueMissingStandardObject,
                  "the " + std::string(tableName(table.kind)) + " table is missing; it was made",
                  id.handle());
        }
    }
}

bool DatabaseLoader::tableIsEmpty(SymbolTableKind kind) {
    auto table = open<SymbolTable>(tableId(kind), OpenMode::ForRead);
    return !table || table->recordIds().empty();
}

ObjectId DatabaseLoader::recordNamed(SymbolTableKind kind, std::string_view name) {
    ObjectId id;
    if (auto table = open<SymbolTable>(tableId(kind), OpenMode::ForRead)) table->getAt(name, id);
    return id;
}

// Adds a made record to its table; the table accepts any name a file could hold.
ObjectId DatabaseLoader::makeRecord(SymbolTableKind kind, const MadeTags& tags) {
    const ObjectId table = tableId(kind);
    const ObjectId id = make(tags, table);
    if (id.isNull()) return id;
    if (auto t = open<SymbolTable>(table, OpenMode::ForWrite)) t->add(id);
    return id;
}

ObjectId DatabaseLoader::ensureRecord(SymbolTableKind kind, std::string_view name,
                                      const MadeTags& tags, bool implicitInR12) {
    if (const ObjectId id = recordNamed(kind, name); !id.isNull()) return id;
    const ObjectId id = makeRecord(kind, tags);
    if (reportMissing_ && (hasHandles() || !implicitInR12) && madeTables_.count(kind) == 0) {
        issue(kIssueMissingStandardObject,
              "the standard " + std::string(tableName(kind)) + " record " + inQuotes(name) +
                  " is missing; it was made",
              id.handle());
    }
    return id;
}

void DatabaseLoader::ensureStandardRecords() {
    using K = SymbolTableKind;
    ids_.byBlock = ensureRecord(
        K::Linetype, "ByBlock",
        MadeTags("LTYPE", {{2, "ByBlock"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"}}),
        true);
    ids_.byLayer = ensureRecord(
        K::Linetype, "ByLayer",
        MadeTags("LTYPE", {{2, "ByLayer"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"}}),
        true);
    ids_.continuous = ensureRecord(
        K::Linetype, "Continuous",
        MadeTags(
            "LTYPE",
            {{2, "Continuous"}, {70, "0"}, {3, "Solid line"}, {72, "65"}, {73, "0"}, {40, "0.0"}}),
        false);
    buildSymbolMap(SymbolKind::Linetype);
    // Layer 0 names its linetype, which the map above resolves at once.
    symbolsReady_ = true;
    ids_.layerZero =
        ensureRecord(K::Layer, "0",
                     MadeTags("LAYER", {{2, "0"}, {70, "0"}, {62, "7"}, {6, "Continuous"}}), false);
    ids_.standardStyle = ensureRecord(K::TextStyle, "Standard",
                                      MadeTags("STYLE", {{2, "Standard"},
                                                         {70, "0"},
                                                         {40, "0.0"},
                                                         {41, "1.0"},
                                                         {50, "0.0"},
                                                         {71, "0"},
                                                         {42, "2.5"},
                                                         {3, "txt"},
                                                         {4, ""}}),
                                      false);
    symbolsReady_ = false;
    // These three the host makes whenever they are missing, without a word.
    const bool reported = reportMissing_;
    reportMissing_ = false;
    ensureRecord(K::RegApp, "ACAD", MadeTags("APPID", {{2, "ACAD"}, {70, "0"}}), true);
    if (tableIsEmpty(K::DimStyle)) {
        ensureRecord(K::DimStyle, "Standard", MadeTags("DIMSTYLE", {{2, "Standard"}, {70, "0"}}),
                     true);
    }
    if (tableIsEmpty(K::Viewport)) {
        ensureRecord(K::Viewport, "*Active", MadeTags("VPORT", {{2, "*Active"}, {70, "0"}}), true);
    }
    reportMissing_ = reported;
    buildSymbolMap(SymbolKind::Layer);
    buildSymbolMap(SymbolKind::TextStyle);
    buildSymbolMap(SymbolKind::DimStyle);
}

ObjectId DatabaseLoader::makeBlockRecord(const std::string& name) {
    const ObjectId id =
        makeRecord(SymbolTableKind::BlockRecord, MadeTags("BLOCK_RECORD", {{2, name}}));
    names_[static_cast<std::size_t>(SymbolKind::Block)].emplace(cad::sys::asciiUpper(name), id);
    made_.insert(id.slot());
    return id;
}

void DatabaseLoader::makeBlockEnds(ObjectId recordId) {
    auto record = open<BlockTableRecord>(recordId, OpenMode::ForWrite);
    if (!record) return;
    const std::string name = record->name();
    const bool paper = equalNames(name.substr(0, 12), BlockTableRecord::kPaperSpace);
    const std::string paperFlag = paper ? "1" : "0";
    if (!record->blockBeginId().isValid()) {
        const ObjectId begin = make(MadeTags("BLOCK", {{67, paperFlag},
                                                       {8, "0"},
                                                       {2, name},
                                                       {70, "0"},
                                                       {10, "0.0"},
                                                       {20, "0.0"},
                                                       {30, "0.0"},
                                                       {3, name},
                                                       {1, ""}}),
                                    recordId);
        if (!begin.isNull()) record->setBlockBegin(begin);
    }
    if (!record->blockEndId().isValid()) {
        const ObjectId end = make(MadeTags("ENDBLK", {{67, paperFlag}, {8, "0"}}), recordId);
        if (!end.isNull()) record->setBlockEnd(end);
    }
}

ObjectId DatabaseLoader::makeBlock(const std::string& name) {
    const ObjectId id = makeBlockRecord(name);
    makeBlockEnds(id);
    return id;
}

void DatabaseLoader::ensureLayoutBlocks() {
    auto& blocks = names_[static_cast<std::size_t>(SymbolKind::Block)];
    if (blocks.empty()) buildSymbolMap(SymbolKind::Block);
    for (const std::string_view name :
         {BlockTableRecord::kModelSpace, BlockTableRecord::kPaperSpace}) {
        const auto it = blocks.find(cad::sys::asciiUpper(name));
        ObjectId id = it != blocks.end() ? it->second : ObjectId::kNull;
        if (id.isNull()) {
            id = makeBlockRecord(std::string(name));
            if (hasHandles() && madeTables_.count(SymbolTableKind::BlockRecord) == 0) {
                issue(kIssueMissingStandardObject,
                      "block " + inQuotes(name) + " is missing; it was made", id.handle());
            }
        }
        (name == BlockTableRecord::kModelSpace ? ids_.modelSpace : ids_.paperSpace) = id;
    }
}

// Records listed in BLOCK_RECORD without a BLOCK in the blocks section, and records the
// reader made, get their BLOCK and ENDBLK.
void DatabaseLoader::completeBlocks() {
    std::vector<ObjectId> records;
    if (auto table = open<SymbolTable>(ids_.blockTable, OpenMode::ForRead))
        records = table->recordIds();
    for (const ObjectId id : records) {
        bool complete = false;
        if (auto record = open<BlockTableRecord>(id, OpenMode::ForRead)) {
            complete = record->blockBeginId().isValid() && record->blockEndId().isValid();
        }
        if (complete) continue;
        makeBlockEnds(id);
        if (hasHandles() && made_.count(id.slot()) == 0 && id != ids_.paperSpace &&
            id != ids_.modelSpace) {
            issue(kIssueMissingStandardObject,
                  "block record " + id.handle().toHex() +
                      " has no BLOCK and ENDBLK in the blocks section; they were made",
                  id.handle());
        }
    }
}

ObjectId DatabaseLoader::ensureEntry(ObjectId dictionaryId, std::string_view key, bool report,
                                     std::unique_ptr<DbObject> made) {
    auto dictionary = open<Dictionary>(dictionaryId, OpenMode::ForWrite);
    if (!dictionary) return ObjectId::kNull;
    ObjectId id;
    if (dictionary->getAt(key, id) == ErrorStatus::eOk) return id;
    dictionary->setAt(key, std::move(made), id);
    if (report) {
        issue(kIssueMissingStandardObject,
              "the named-objects dictionary has no " + std::string(key) + "; it was made",
              id.handle());
    }
    return id;
}

void DatabaseLoader::ensureNamedObjects() {
    if (!ids_.namedObjects.isValid() || ids_.namedObjects.isErased()) {
        db_.addObject(std::make_unique<Dictionary>(), ids_.namedObjects, ObjectId::kNull);
        if (hasHandles()) {
            issue(kIssueMissingStandardObject,
                  "the named-objects dictionary is missing; it was made",
                  ids_.namedObjects.handle());
        }
    }
    ids_.groupDictionary =
        ensureEntry(ids_.namedObjects, "ACAD_GROUP", hasHandles(), std::make_unique<Dictionary>());
    ids_.layoutDictionary =
        ensureEntry(ids_.namedObjects, "ACAD_LAYOUT", version_ >= DxfVersion::R2000,
                    std::make_unique<Dictionary>());
    ensurePlotStyles();
}

// Layers from R2000 on name a plot style; drawings older than that get the dictionary
// with its "Normal" placeholder that the host makes for every new drawing.
void DatabaseLoader::ensurePlotStyles() {
    ObjectId existing;
    if (auto root = open<Dictionary>(ids_.namedObjects, OpenMode::ForRead))
        root->getAt("ACAD_PLOTSTYLENAME", existing);
    if (!existing.isNull()) return;
    ObjectId placeholder;
    db_.addObject(std::make_unique<RawObject>("ACDBPLACEHOLDER", "AcDbPlaceHolder"), placeholder,
                  ObjectId::kNull);
    const std::string normal = placeholder.handle().toHex();
    const ObjectId styles = ensureEntry(
        ids_.namedObjects, "ACAD_PLOTSTYLENAME", false,
        std::make_unique<RawObject>("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault",
                                    std::vector<RawTag>{{100, "AcDbDictionary"},
                                                        {281, "1"},
                                                        {3, "Normal"},
                                                        {350, normal},
                                                        {100, "AcDbDictionaryWithDefault"},
                                                        {340, normal}}));
    if (auto object = open<DbObject>(placeholder, OpenMode::ForWrite)) object->setOwnerId(styles);
}

// Layout blocks and layouts name each other; a file may give only one side of the link
// (or, before R2000, neither), and the missing side is made.
void DatabaseLoader::ensureLayouts() {
    std::vector<Dictionary::Entry> layouts;
    if (auto dictionary = open<Dictionary>(ids_.layoutDictionary, OpenMode::ForRead))
        layouts = dictionary->entries();
    for (const Dictionary::Entry& entry : layouts) {
        ObjectId recordId;
        if (auto layout = open<Layout>(entry.id, OpenMode::ForRead))
            recordId = layout->blockTableRecordId();
        auto record = open<BlockTableRecord>(recordId, OpenMode::ForWrite);
        if (record && !record->layoutId().isLive()) record->setLayoutId(entry.id);
    }
    std::vector<ObjectId> records;
    if (auto table = open<SymbolTable>(ids_.blockTable, OpenMode::ForRead))
        records = table->recordIds();
    int sheet = 0;
    for (const ObjectId id : records) {
        std::string name;
        bool linked = false;
        if (auto record = open<BlockTableRecord>(id, OpenMode::ForRead)) {
            name = record->name();
            linked = record->layoutId().isLive();
        }
        const bool model = equalNames(name, BlockTableRecord::kModelSpace);
        const bool paper = equalNames(name.substr(0, BlockTableRecord::kPaperSpace.size()),
                                      BlockTableRecord::kPaperSpace);
        if (paper) ++sheet;
        if (linked || !(model || paper)) continue;
        makeLayout(id, model, sheet);
    }
}

void DatabaseLoader::makeLayout(ObjectId recordId, bool model, int sheet) {
    std::string name(model ? Layout::kModelName : "Layout" + std::to_string(sheet));
    auto dictionary = open<Dictionary>(ids_.layoutDictionary, OpenMode::ForWrite);
    if (!dictionary) return;
    while (dictionary->has(name)) name += "+";
    auto layout = std::make_unique<Layout>();
    layout->setLayoutName(name);
    layout->setTabOrder(static_cast<std::int16_t>(model ? 0 : sheet));
    layout->setBlockTableRecordId(recordId);
    if (model) {
        PlotSettings::Values values;
        values.layoutFlags = 1024;  // the model layout's "model type" flag
        layout->setPlotSettings(values);
    }
    ObjectId id;
    if (dictionary->setAt(name, std::move(layout), id) != ErrorStatus::eOk) return;
    dictionary.close();
    if (auto record = open<BlockTableRecord>(recordId, OpenMode::ForWrite)) record->setLayoutId(id);
    if (version_ >= DxfVersion::R2000) {
        issue(kIssueMissingStandardObject,
              "layout block " + recordId.handle().toHex() + " has no layout; " + inQuotes(name) +
                  " was made",
              id.handle());
    }
}

void DatabaseLoader::setWellKnownIds() {
    const auto& layers = names_[static_cast<std::size_t>(SymbolKind::Layer)];
    ids_.clayer = ids_.layerZero;
    if (const auto name = db_.header().text("$CLAYER")) {
        if (const auto it = layers.find(cad::sys::asciiUpper(*name)); it != layers.end())
            ids_.clayer = it->second;
    }
}

}  // namespace cad::db::dxf
