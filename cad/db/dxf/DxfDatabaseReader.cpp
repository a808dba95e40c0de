// Reading a drawing's structures into a database. Objects are read in file order and stored
// under their handles; references go to slots by handle, so they resolve whatever the order.
// Symbol names are resolved once the tables are known, and the links are checked at the end.
#include "cad/db/dxf/DxfDatabaseReader.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/ComplexEntity.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Layout.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/RawObject.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/dxf/ItemReader.h"
#include "cad/db/dxf/ObjectFactory.h"
#include "cad/db/dxf/ReadingFiler.h"
#include "cad/db/dxf/TextCodec.h"
#include "cad/sys/AsciiCase.h"

namespace cad::db::dxf {
namespace {

using Placement = ObjectFactory::Placement;
using SymbolKind = DxfFiler::SymbolTable;

constexpr std::size_t kSymbolKinds = 5;

std::string_view typeOf(TagSpan item) {
    return trimBlanks(item.front().value);
}

std::string inQuotes(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 2);
    out += '"';
    out += text;
    out += '"';
    return out;
}

// A structure made up by the reader (standard records a file lacks), read through the same
// filer as the file's own, so it gets exactly the defaults a file would give it.
class MadeTags {
public:
    MadeTags(std::string_view type, std::initializer_list<std::pair<int, std::string>> tags) {
        values_.emplace_back(type);
        codes_.push_back(0);
        for (const auto& [code, value] : tags) {
            codes_.push_back(code);
            values_.push_back(encodeText(value, kCodePage));
        }
        for (std::size_t i = 0; i < codes_.size(); ++i) {
            tags_.push_back(Tag{codes_[i], values_[i], 0});
        }
    }
    MadeTags(const MadeTags&) = delete;
    MadeTags& operator=(const MadeTags&) = delete;

    // The values are text (names come already decoded from the file), so they are read
    // in UTF-8 whatever the file's code page; carets still need their written form.
    static constexpr sys::CodePage kCodePage = sys::CodePage::Utf8;

    TagSpan span() const { return tags_; }

private:
    std::vector<int> codes_;
    std::vector<std::string> values_;
    std::vector<Tag> tags_;
};

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

SymbolTableKind tableKindOf(SymbolKind kind) {
    switch (kind) {
        case SymbolKind::Layer:
            return SymbolTableKind::Layer;
        case SymbolKind::Linetype:
            return SymbolTableKind::Linetype;
        case SymbolKind::TextStyle:
            return SymbolTableKind::TextStyle;
        case SymbolKind::Block:
            return SymbolTableKind::BlockRecord;
        case SymbolKind::DimStyle:
            return SymbolTableKind::DimStyle;
    }
    return SymbolTableKind::Layer;
}

class Loader final : private ReadingFiler::SymbolResolver {
public:
    Loader(const DxfStructure& structure, DxfFile& file, Database& db)
        : structure_(structure),
          file_(file),
          place_(file.place()),
          db_(db),
          ids_(db.wellKnownIds()),
          version_(fileVersion()),
          codePage_(textCodePage()),
          filer_(db, version_, codePage_, place_, *this) {}

    std::optional<DxfError> load() {
        db_.setOriginalFileVersion(version_);
        db_.setCodePage(
            sys::codePageFromDxfName(structure_.codePageName).value_or(sys::CodePage::Ansi1252));
        if (!readHeader() || !readClasses()) return error_;
        reserveHandles();
        for (const Section& section : structure_.sections) {
            if (section.name == "TABLES" && !readTables(section)) return error_;
        }
        ensureTables();
        ensureStandardRecords();
        for (const Section& section : structure_.sections) {
            if (section.name == "BLOCKS" && !defineBlocks(section)) return error_;
        }
        ensureLayoutBlocks();
        symbolsReady_ = true;
        for (Pending& pending : pending_) *pending.record = lookUp(pending.kind, pending.name);
        pending_.clear();
        for (const Section& section : structure_.sections) {
            if (section.name == "BLOCKS" && !readBlocks(section)) return error_;
        }
        for (const Section& section : structure_.sections) {
            if (section.name == "ENTITIES" && !readEntities(section)) return error_;
        }
        for (const Section& section : structure_.sections) {
            if (section.name == "OBJECTS" && !readObjects(section)) return error_;
        }
        completeBlocks();
        repairOwners();
        repairDictionaries();
        ensureNamedObjects();
        ensureLayouts();
        setWellKnownIds();
        return error_;
    }

private:
    struct Pending {
        ObjectId* record;
        std::string name;
        SymbolKind kind;
    };
    // The open run of sub-entities: the INSERT or POLYLINE they belong to.
    struct Sequence {
        ObjectId parent;
        std::string_view childType;  // "ATTRIB" or "VERTEX"
    };
    // The block record entities are being listed in, kept open while they come.
    struct OpenRecord {
        ObjectPtr<BlockTableRecord> record;
        BlockTableRecord* get(ObjectId id) {
            if (!record || record->objectId() != id) {
                record.close();
                record.open(id, OpenMode::ForWrite);
            }
            return record.get();
        }
    };

    // Called while constructing, as is fileVersion. Programs that ignore code pages write
    // UTF-8 and declare ANSI_1252 (or nothing); bytes beyond ASCII that all read as UTF-8 are
    // next to never Western text, so such a file's text is read as UTF-8.
    sys::CodePage textCodePage() {
        const sys::CodePage declared =
            fileCodePage(structure_.acadVersion, structure_.codePageName);
        if (declared == sys::CodePage::Ansi1252 && file_.hasUtf8Text()) return sys::CodePage::Utf8;
        return declared;
    }

    // Called while constructing, so it reads only what is set before version_.
    DxfVersion fileVersion() {
        if (structure_.variable("$ACADVER") != nullptr) {
            return dxfVersionFromAcadVer(structure_.acadVersion).value_or(DxfVersion::R12);
        }
        // A file without a header (a fragment) says its age by its subclass markers.
        for (const Section& section : structure_.sections) {
            for (const TagRun& run : section.items) {
                const std::optional<TagSpan> item = file_.tagsOf(run);
                if (item && std::any_of(item->begin(), item->end(),
                                        [](const Tag& tag) { return tag.code == 100; }))
                    return DxfVersion::R2000;
            }
        }
        return DxfVersion::R12;
    }

    // Calls `visit` with the tags of each of the section's items in turn, read again from the
    // file, until it answers false. False when it did, or when the file no longer reads as it
    // did when its structure was taken (another program wrote over it meanwhile).
    template <class Visit>
    bool eachItem(const Section& section, Visit visit) {
        ItemReader items(file_, section.items);
        for (const TagRun& run : section.items) {
            const std::optional<TagSpan> item = items.next();
            if (!item) return fail(run.line, "the file changed on disk while it was being read");
            if (!visit(*item)) return false;
        }
        return true;
    }

    bool hasHandles() const { return version_ >= DxfVersion::R13; }

    // Every problem found on loading is repaired, so every issue is listed as fixed.
    void issue(int code, std::string message, Handle handle) {
        db_.mutableLoadIssues().push_back(AuditIssue{code, std::move(message), handle, true});
    }

    bool fail(std::uint32_t where, std::string what) {
        if (!error_) error_ = dxfError(place_, where, what);
        return false;
    }

    // ---- Header and classes ----

    bool readHeader() {
        auto& variables = db_.header().variables();
        variables.reserve(structure_.header.size());
        for (const HeaderVariable& variable : structure_.header) {
            HeaderVariables::Variable kept{decodeText(variable.name, codePage_), {}};
            for (const Tag& tag : variable.tags) {
                auto value = ReadingFiler::keptValue(tag, codePage_, place_, error_);
                if (!value) return false;
                kept.tags.push_back(RawTag{tag.code, std::move(*value)});
            }
            if (db_.header().find(kept.name) == nullptr) variables.push_back(std::move(kept));
        }
        return true;
    }

    bool readClasses() {
        const Section* section = structure_.section("CLASSES");
        if (section == nullptr) return true;
        return eachItem(*section, [this](TagSpan item) {
            if (typeOf(item) != "CLASS") return true;
            std::vector<RawTag> tags;
            std::string dxfName;
            std::string className;
            for (const Tag& tag : item.subspan(1)) {
                auto value = ReadingFiler::keptValue(tag, codePage_, place_, error_);
                if (!value) return false;
                if (tag.code == 1) dxfName = *value;
                if (tag.code == 2) className = *value;
                tags.push_back(RawTag{tag.code, std::move(*value)});
            }
            if (!dxfName.empty()) classNames_.emplace(dxfName, className);
            db_.dxfClasses().push_back(std::move(tags));
            return true;
        });
    }

    // Handles the file does not give (R12, damaged objects) must not collide with any it
    // gives later, so the next free handle starts above every handle in the file.
    void reserveHandles() {
        Handle largest;
        std::size_t count = 0;
        for (const Section& section : structure_.sections) {
            count += section.items.size();
            for (const TagRun& item : section.items) {
                if (largest < item.handle) largest = item.handle;
            }
        }
        db_.setHandseed(largest.next());
        db_.reserveObjects(count);
        if (const HeaderVariable* seed = structure_.variable("$HANDSEED")) {
            for (const Tag& tag : seed->tags) {
                if (const auto value = toHandle(tag)) db_.setHandseed(Handle{*value});
            }
        }
    }

    // ---- Objects ----

    std::string_view classNameOf(std::string_view type, TagSpan item) const {
        const auto it = classNames_.find(std::string(type));
        if (it != classNames_.end()) return it->second;
        std::string_view last;
        for (const Tag& tag : item) {
            if (tag.code == 100) last = trimBlanks(tag.value);
        }
        return last;
    }

    // Reads one structure into a new object; null with error_ set when a value is bad.
    std::unique_ptr<DbObject> readItem(TagSpan item, Placement placement) {
        const std::string_view type = typeOf(item);
        // Only types kept raw need their class name.
        const std::string_view className =
            ObjectFactory::isModelled(type) ? std::string_view() : classNameOf(type, item);
        auto object = ObjectFactory::create(type, className, placement, item);
        if (!filer_.read(*object, item)) {
            error_ = filer_.error();
            return nullptr;
        }
        for (const DxfError& link : filer_.unreadableLinks()) {
            issue(kIssueUnreadableLink, std::string(type) + " at " + link.message,
                  ReadingFiler::handleOf(item));
        }
        return object;
    }

    // Stores an object under the handle the file gave it, or a new one when the file gave
    // none or a handle taken already.
    ObjectId store(std::unique_ptr<DbObject> object, TagSpan item, ObjectId owner) {
        const Handle handle = ReadingFiler::handleOf(item);
        // Handles mostly rise through a file; only one at or below the largest stored so far
        // can repeat one (a slot made by a reference has no object and is filled, not taken).
        ObjectId taken;
        const bool duplicate = !handle.isNull() && handle <= largestStored_ &&
                               db_.getObjectId(taken, false, handle) == ErrorStatus::eOk &&
                               taken.isValid();
        if (largestStored_ < handle) largestStored_ = handle;
        const bool hasXdictionary = !object->extensionDictionary().isNull();
        ObjectId id;
        db_.addObject(std::move(object), id, owner, duplicate ? Handle{} : handle);
        if (hasXdictionary) withXdictionary_.push_back(id);
        if (!duplicate && (!handle.isNull() || !hasHandles())) return id;
        const std::string where =
            placeText(place_, item.front().line) + ": " + std::string(typeOf(item));
        if (duplicate) {
            // The later object gets a new handle, so both survive.
            issue(kIssueDuplicateHandle,
                  where + " repeats handle " + handle.toHex() + "; it was given " +
                      id.handle().toHex(),
                  id.handle());
        } else {
            issue(kIssueMissingHandle,
                  where + " has no handle; it was given " + id.handle().toHex(), id.handle());
        }
        return id;
    }

    ObjectId readAndStore(TagSpan item, Placement placement, ObjectId owner) {
        auto object = readItem(item, placement);
        if (!object) return ObjectId::kNull;
        return store(std::move(object), item, owner);
    }

    // A structure the reader makes up, stored under a new handle.
    ObjectId make(const MadeTags& tags, ObjectId owner) {
        ReadingFiler filer(db_, version_, MadeTags::kCodePage, place_, *this);
        auto object =
            ObjectFactory::create(typeOf(tags.span()), {}, Placement::Object, tags.span());
        if (!filer.read(*object, tags.span())) return ObjectId::kNull;
        ObjectId id;
        db_.addObject(std::move(object), id, owner);
        return id;
    }

    // Drops what the file put where it cannot be. Unlike an erase, what goes along is only what
    // names the dropped object as its owner: a damaged object's claims on others (a hard-owner
    // link to a table, say) are not trusted.
    void drop(ObjectId id) {
        std::vector<ObjectId> todo{id};
        std::vector<ObjectId> owned;
        while (!todo.empty()) {
            const ObjectId next = todo.back();
            todo.pop_back();
            ObjectSlot* slot = next.slot();
            if (!next.isValid() || slot->erased) continue;
            // Read objects are closed, so the mark is set directly, as an erase marks what it
            // takes along.
            slot->erased = true;
            owned.clear();
            slot->object->ownedObjects(owned);
            for (const ObjectId child : owned) {
                if (child.isValid() && child.slot()->object->ownerId() == next)
                    todo.push_back(child);
            }
        }
    }

    // ---- Tables ----

    ObjectId& tableId(SymbolTableKind kind) {
        for (const WellKnownTable& table : kTables) {
            if (table.kind == kind) return ids_.*table.id;
        }
        return ids_.layerTable;
    }

    bool readTables(const Section& section) {
        ObjectId table;
        bool skipping = false;  // the records of a table we cannot place
        return eachItem(section, [&](TagSpan item) {
            const std::string_view type = typeOf(item);
            if (type == "TABLE") {
                skipping = false;
                table = ObjectId::kNull;
                std::optional<SymbolTableKind> kind;
                for (const Tag& tag : item) {
                    if (tag.code == 2) {
                        kind = symbolTableKindFromName(trimBlanks(tag.value));
                        break;
                    }
                }
                if (!kind) {
                    skipping = true;
                    issue(kIssueBadTableRecord,
                          placeText(place_, item.front().line) +
                              ": a table of unknown kind was dropped with its records",
                          ReadingFiler::handleOf(item));
                    return true;
                }
                ObjectId& known = tableId(*kind);
                if (!known.isNull()) {
                    table = known;  // a table given twice: its records join the first
                    return true;
                }
                auto object = readItem(item, Placement::Object);
                if (!object) return false;
                table = known = store(std::move(object), item, ObjectId::kNull);
            } else if (type == "ENDTAB") {
                table = ObjectId::kNull;
                skipping = false;
            } else if (!skipping) {
                if (table.isNull()) {
                    return fail(item.front().line,
                                "expected 0 TABLE before 0 " + std::string(type));
                }
                const ObjectId id = readAndStore(item, Placement::Object, table);
                if (id.isNull()) return false;
                listRecord(table, id, item);
            }
            return true;
        });
    }

    void listRecord(ObjectId table, ObjectId id, TagSpan item) {
        std::string name;
        bool nameless = false;
        if (auto record = open<SymbolTableRecord>(id, OpenMode::ForRead)) {
            name = record->name();
            // Only text styles go without a name (those that load shape files); any other
            // record is known and written by its name.
            nameless = name.empty() && record->tableKind() != SymbolTableKind::TextStyle;
        }
        ErrorStatus es = ErrorStatus::eInvalidKey;
        if (!nameless) {
            if (auto t = open<SymbolTable>(table, OpenMode::ForWrite)) es = t->add(id);
        }
        if (es == ErrorStatus::eOk) return;
        drop(id);
        issue(kIssueBadTableRecord,
              placeText(place_, item.front().line) + ": " + std::string(typeOf(item)) + " " +
                  inQuotes(name) +
                  (nameless                           ? " has no name"
                   : es == ErrorStatus::eDuplicateKey ? " repeats a name of its table"
                                                      : " does not belong in its table") +
                  "; it was dropped",
              id.handle());
    }

    void ensureTables() {
        for (const WellKnownTable& table : kTables) {
            ObjectId& id = ids_.*table.id;
            if (!id.isNull()) continue;
            id =
                make(MadeTags("TABLE", {{2, std::string(tableName(table.kind))}}), ObjectId::kNull);
            // Its standard records and blocks are made too; this report says it for them.
            madeTables_.insert(table.kind);
            if (hasHandles()) {
                issue(
                    kIssueMissingStandardObject,
                    "the " + std::string(tableName(table.kind)) + " table is missing; it was made",
                    id.handle());
            }
        }
    }

    bool tableIsEmpty(SymbolTableKind kind) {
        auto table = open<SymbolTable>(tableId(kind), OpenMode::ForRead);
        return !table || table->recordIds().empty();
    }

    ObjectId recordNamed(SymbolTableKind kind, std::string_view name) {
        ObjectId id;
        if (auto table = open<SymbolTable>(tableId(kind), OpenMode::ForRead))
            table->getAt(name, id);
        return id;
    }

    // Adds a made record to its table; the table accepts any name a file could hold.
    ObjectId makeRecord(SymbolTableKind kind, const MadeTags& tags) {
        const ObjectId table = tableId(kind);
        const ObjectId id = make(tags, table);
        if (id.isNull()) return id;
        if (auto t = open<SymbolTable>(table, OpenMode::ForWrite)) t->add(id);
        return id;
    }

    ObjectId ensureRecord(SymbolTableKind kind, std::string_view name, const MadeTags& tags,
                          bool implicitInR12) {
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

    void ensureStandardRecords() {
        using K = SymbolTableKind;
        ids_.byBlock = ensureRecord(
            K::Linetype, "ByBlock",
            MadeTags("LTYPE",
                     {{2, "ByBlock"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"}}),
            true);
        ids_.byLayer = ensureRecord(
            K::Linetype, "ByLayer",
            MadeTags("LTYPE",
                     {{2, "ByLayer"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"}}),
            true);
        ids_.continuous = ensureRecord(K::Linetype, "Continuous",
                                       MadeTags("LTYPE", {{2, "Continuous"},
                                                          {70, "0"},
                                                          {3, "Solid line"},
                                                          {72, "65"},
                                                          {73, "0"},
                                                          {40, "0.0"}}),
                                       false);
        buildSymbolMap(SymbolKind::Linetype);
        // Layer 0 names its linetype, which the map above resolves at once.
        symbolsReady_ = true;
        ids_.layerZero = ensureRecord(
            K::Layer, "0", MadeTags("LAYER", {{2, "0"}, {70, "0"}, {62, "7"}, {6, "Continuous"}}),
            false);
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
            ensureRecord(K::DimStyle, "Standard",
                         MadeTags("DIMSTYLE", {{2, "Standard"}, {70, "0"}}), true);
        }
        if (tableIsEmpty(K::Viewport)) {
            ensureRecord(K::Viewport, "*Active", MadeTags("VPORT", {{2, "*Active"}, {70, "0"}}),
                         true);
        }
        reportMissing_ = reported;
        buildSymbolMap(SymbolKind::Layer);
        buildSymbolMap(SymbolKind::TextStyle);
        buildSymbolMap(SymbolKind::DimStyle);
    }

    void buildSymbolMap(SymbolKind kind) {
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

    // ---- Symbols ----

    void resolve(ObjectId& record, std::string_view name, SymbolKind kind) override {
        if (!symbolsReady_) {
            pending_.push_back(Pending{&record, std::string(name), kind});
            return;
        }
        record = lookUp(kind, name);
    }

    ObjectId lookUp(SymbolKind kind, std::string_view name) {
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

    ObjectId makeMissing(SymbolKind kind, const std::string& name) {
        ObjectId id;
        switch (kind) {
            case SymbolKind::Layer:
                id = makeRecord(
                    SymbolTableKind::Layer,
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
                    MadeTags("STYLE",
                             {{2, name}, {70, "0"}, {40, "0.0"}, {41, "1.0"}, {3, "txt"}}));
                break;
            case SymbolKind::DimStyle:
                id = makeRecord(SymbolTableKind::DimStyle,
                                MadeTags("DIMSTYLE", {{2, name}, {70, "0"}}));
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

    // ---- Blocks ----

    static std::string_view blockNameOf(TagSpan item) {
        std::string_view fallback;
        for (const Tag& tag : item) {
            if (tag.code == 2) return tag.value;
            if (tag.code == 3 && fallback.empty()) fallback = tag.value;
        }
        return fallback;
    }

    // R12 writers call the layout blocks $MODEL_SPACE and $PAPER_SPACE.
    std::string blockName(TagSpan item) const {
        std::string name = decodeText(blockNameOf(item), codePage_);
        if (equalNames(name, "$MODEL_SPACE")) return std::string(BlockTableRecord::kModelSpace);
        if (equalNames(name, "$PAPER_SPACE")) return std::string(BlockTableRecord::kPaperSpace);
        return name;
    }

    ObjectId makeBlockRecord(const std::string& name) {
        const ObjectId id =
            makeRecord(SymbolTableKind::BlockRecord, MadeTags("BLOCK_RECORD", {{2, name}}));
        names_[static_cast<std::size_t>(SymbolKind::Block)].emplace(cad::sys::asciiUpper(name), id);
        made_.insert(id.slot());
        return id;
    }

    void makeBlockEnds(ObjectId recordId) {
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

    ObjectId makeBlock(const std::string& name) {
        const ObjectId id = makeBlockRecord(name);
        makeBlockEnds(id);
        return id;
    }

    // Every BLOCK gets its record before any entity is read, so references to blocks defined
    // further down (and R12 files, which have no BLOCK_RECORD table) resolve.
    bool defineBlocks(const Section& section) {
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

    void ensureLayoutBlocks() {
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

    bool readBlocks(const Section& section) {
        OpenRecord current;
        ObjectId recordId;
        std::optional<std::uint32_t> blockStart;  // where the open block starts
        bool dropping = false;                    // the entities of a block defined twice
        Sequence sequence;
        const bool read = eachItem(section, [&](TagSpan item) {
            const std::string_view type = typeOf(item);
            if (type == "BLOCK") {
                if (blockStart) {
                    return fail(item.front().line,
                                "expected 0 ENDBLK before 0 BLOCK: the block at " +
                                    placeText(place_, *blockStart) + " has no end");
                }
                blockStart = item.front().line;
                recordId = lookUp(SymbolKind::Block, blockName(item));
                BlockTableRecord* record = current.get(recordId);
                if (record == nullptr) return fail(item.front().line, "cannot open the block");
                auto begin = readItem(item, Placement::Entity);
                if (!begin) return false;
                const ObjectId id = store(std::move(begin), item, recordId);
                dropping = record->blockBeginId().isValid();
                if (dropping) {
                    drop(id);
                    issue(kIssueBadTableRecord,
                          placeText(place_, item.front().line) + ": block " +
                              inQuotes(record->name()) +
                              " is defined twice; the second definition was dropped",
                          id.handle());
                } else {
                    record->setBlockBegin(id);
                }
            } else if (type == "ENDBLK") {
                if (!blockStart) return fail(item.front().line, "expected 0 BLOCK before 0 ENDBLK");
                endSequence(sequence);
                blockStart.reset();
                auto end = readItem(item, Placement::Entity);
                if (!end) return false;
                const ObjectId id = store(std::move(end), item, recordId);
                BlockTableRecord* record = current.get(recordId);
                if (dropping || record == nullptr) {
                    drop(id);
                } else {
                    record->setBlockEnd(id);
                }
            } else {
                if (!blockStart) {
                    return fail(item.front().line,
                                "expected 0 BLOCK before 0 " + std::string(type));
                }
                return readEntity(item, recordId, current, sequence, dropping);
            }
            return true;
        });
        if (read && blockStart) {
            return fail(*blockStart, "the block has no end: expected 0 ENDBLK before 0 ENDSEC");
        }
        return read;
    }

    // Closes a run of sub-entities; a run the file did not close gets its SEQEND.
    void endSequence(Sequence& sequence) {
        if (sequence.parent.isNull()) return;
        auto parent = open<ComplexEntity>(sequence.parent, OpenMode::ForWrite);
        if (parent && !parent->subentityIds().empty() && parent->sequenceEndId().isNull()) {
            const ObjectId end = make(MadeTags("SEQEND", {{8, "0"}}), sequence.parent);
            if (!end.isNull()) parent->attachSequenceEnd(end);
        }
        sequence = Sequence{};
    }

    bool readSubentity(TagSpan item, std::string_view type, Sequence& sequence, bool dropping) {
        const bool isEnd = type == "SEQEND";
        if (sequence.parent.isNull() || (!isEnd && type != sequence.childType)) {
            issue(kIssueStraySubentity,
                  placeText(place_, item.front().line) + ": " + std::string(type) + " follows no " +
                      (type == "VERTEX" ? "POLYLINE" : "INSERT") + "; it was dropped",
                  ReadingFiler::handleOf(item));
            return true;
        }
        const ObjectId id = readAndStore(item, Placement::Entity, sequence.parent);
        if (id.isNull()) return false;
        auto parent = open<ComplexEntity>(sequence.parent, OpenMode::ForWrite);
        if (dropping || !parent) {
            parent.close();
            drop(id);
        } else if (isEnd) {
            parent->attachSequenceEnd(id);
        } else {
            parent->attachSubentity(id);
        }
        if (isEnd) sequence = Sequence{};
        return true;
    }

    // Reads an entity into `owner` (null: model or paper space, as the entity says).
    bool readEntity(TagSpan item, ObjectId owner, OpenRecord& current, Sequence& sequence,
                    bool dropping) {
        const std::string_view type = typeOf(item);
        if (type == "ATTRIB" || type == "VERTEX" || type == "SEQEND")
            return readSubentity(item, type, sequence, dropping);
        endSequence(sequence);
        auto object = readItem(item, Placement::Entity);
        if (!object) return false;
        const auto* entity = dynamic_cast<const Entity*>(object.get());
        if (entity == nullptr) {
            issue(kIssueStraySubentity,
                  placeText(place_, item.front().line) + ": " + std::string(type) +
                      " is not an entity; it was dropped",
                  ReadingFiler::handleOf(item));
            return true;
        }
        if (owner.isNull()) owner = entityOwner(*entity);
        // Only these two own sub-entities; asked by name, since a failing cast is slow and
        // nearly every entity would fail it.
        const bool complex = type == "INSERT" || type == "POLYLINE";
        const ObjectId id = store(std::move(object), item, owner);
        if (dropping) {
            drop(id);
            return true;
        }
        if (BlockTableRecord* record = current.get(owner)) record->appendEntity(id);
        if (complex) sequence = Sequence{id, type == "INSERT" ? "ATTRIB" : "VERTEX"};
        return true;
    }

    // An entity of the ENTITIES section belongs to the block record its owner names, or, when
    // that names none (R12 files have no owners), to model or paper space by its 67 flag.
    ObjectId entityOwner(const Entity& entity) {
        const Handle owner = filer_.ownerHandle();
        if (!owner.isNull()) {
            ObjectId id;
            if (db_.getObjectId(id, false, owner) == ErrorStatus::eOk && id.isValid() &&
                dynamic_cast<const BlockTableRecord*>(id.slot()->object.get()) != nullptr) {
                return id;
            }
        }
        return entity.isInPaperSpace() ? ids_.paperSpace : ids_.modelSpace;
    }

    bool readEntities(const Section& section) {
        OpenRecord current;
        Sequence sequence;
        const bool read = eachItem(section, [&](TagSpan item) {
            return readEntity(item, ObjectId::kNull, current, sequence, false);
        });
        if (!read) return false;
        current.record.close();
        endSequence(sequence);
        return true;
    }

    // Records listed in BLOCK_RECORD without a BLOCK in the blocks section, and records the
    // reader made, get their BLOCK and ENDBLK.
    void completeBlocks() {
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

    // ---- Objects ----

    bool readObjects(const Section& section) {
        return eachItem(section, [this](TagSpan item) {
            auto object = readItem(item, Placement::Object);
            if (!object) return false;
            const Handle ownerHandle = filer_.ownerHandle();
            ObjectId owner;
            if (!ownerHandle.isNull()) db_.getObjectId(owner, true, ownerHandle);
            const bool isDictionary = dynamic_cast<const Dictionary*>(object.get()) != nullptr;
            // Entities and table records have their own sections; written from here they
            // would be lost, and whatever links to them would dangle.
            const bool misplaced = dynamic_cast<const Entity*>(object.get()) != nullptr ||
                                   dynamic_cast<const SymbolTable*>(object.get()) != nullptr ||
                                   dynamic_cast<const SymbolTableRecord*>(object.get()) != nullptr;
            const ObjectId id = store(std::move(object), item, owner);
            if (misplaced) {
                drop(id);
                issue(kIssueStraySubentity,
                      placeText(place_, item.front().line) + ": " + std::string(typeOf(item)) +
                          " is not an object; it was dropped",
                      id.handle());
                return true;
            }
            objects_.push_back(id);
            // The first object of the section is the named-objects dictionary.
            if (ids_.namedObjects.isNull() && isDictionary && owner.isNull())
                ids_.namedObjects = id;
            return true;
        });
    }

    // ---- The second pass ----

    // Which object lists each object of OBJECTS as owned (dictionary entries, extension
    // dictionaries, raw owner references), for giving a stray object back to its container.
    std::unordered_map<const ObjectSlot*, ObjectId> containers() const {
        std::unordered_map<const ObjectSlot*, ObjectId> listedBy;
        for (const ObjectId id : withXdictionary_) {
            const ObjectId xdict = id.slot()->object->extensionDictionary();
            if (!id.isErased() && xdict.isValid()) listedBy.emplace(xdict.slot(), id);
        }
        std::vector<ObjectId> owned;
        for (const ObjectId id : objects_) {
            if (id.isErased()) continue;
            owned.clear();
            id.slot()->object->ownedObjects(owned);
            for (const ObjectId child : owned) listedBy.emplace(child.slot(), id);
        }
        return listedBy;
    }

    static bool lists(ObjectId container, ObjectId child) {
        const DbObject* object = container.slot()->object.get();
        if (object->extensionDictionary() == child) return true;
        std::vector<ObjectId> owned;
        object->ownedObjects(owned);
        return std::find(owned.begin(), owned.end(), child) != owned.end();
    }

    // An object of OBJECTS whose owner names nothing (or was dropped) goes to the container
    // that lists it, or is dropped when none does; one with no owner at all (R13 writers gave
    // some only as a reactor) goes to the container that lists it, or stays as it is. One whose
    // owner does not list it, while another container does, goes to that container: owners
    // decide what is written with what (and what R14 leaves out).
    void repairOwners() {
        const auto listedBy = containers();
        for (const ObjectId id : objects_) {
            if (id == ids_.namedObjects || id.isErased()) continue;
            const ObjectId owner = id.slot()->object->ownerId();
            const auto lister = listedBy.find(id.slot());
            const bool listed = lister != listedBy.end();
            if (owner.isLive() && (!listed || lister->second == owner || lists(owner, id)))
                continue;
            if (owner.isLive() || owner.isNull()) {
                if (!listed) continue;
            }
            // Given to what it owns itself, it would close a cycle that is then cut at it
            // again: it would stay without an owner and be repaired anew at every load.
            if (owner.isNull() && ownsOnTheWayUp(id, lister->second)) continue;
            auto object = open<DbObject>(id, OpenMode::ForWrite);
            if (!object) continue;
            const std::string what =
                std::string(object->dxfName()) + " " + id.handle().toHex() +
                (owner.isNull()    ? ": it has no owner"
                 : owner.isLive()  ? ": its owner " + owner.handle().toHex() + " does not list it"
                 : owner.isValid() ? ": its owner " + owner.handle().toHex() + " was dropped"
                                   : ": its owner " + owner.handle().toHex() + " names no object");
            if (listed) {
                object->setOwnerId(lister->second);
                issue(kIssueDanglingOwner,
                      what + "; the owner is now " + lister->second.handle().toHex(), id.handle());
            } else {
                object.close();
                drop(id);
                issue(kIssueDanglingOwner, what + " and nothing lists it; it was dropped",
                      id.handle());
            }
        }
        cutOwnerCycles();
    }

    // True when `owner` is among the owners of `object`, all the way up.
    static bool ownsOnTheWayUp(ObjectId owner, ObjectId object) {
        std::unordered_set<const ObjectSlot*> seen;
        for (ObjectId at = object; at.isValid() && seen.insert(at.slot()).second;
             at = at.slot()->object->ownerId()) {
            if (at == owner) return true;
        }
        return false;
    }

    void cutOwnerCycles() {
        // 1: on the path being followed, 2: known to end outside any cycle.
        std::unordered_map<const ObjectSlot*, int> state;
        std::vector<ObjectId> path;
        for (const ObjectId start : objects_) {
            path.clear();
            ObjectId current = start;
            while (current.isValid() && state[current.slot()] == 0) {
                state[current.slot()] = 1;
                path.push_back(current);
                current = current.slot()->object->ownerId();
            }
            if (current.isValid() && state[current.slot()] == 1) cutCycleAt(current);
            for (const ObjectId id : path) state[id.slot()] = 2;
        }
    }

    // The cycle is cut where it closes: the object leaves the dictionary of the cycle that
    // lists it and becomes an entry of the named-objects dictionary, under the key it had, so
    // it is listed by its owner and reachable from the root.
    void cutCycleAt(ObjectId id) {
        const ObjectId previous = id.slot()->object->ownerId();
        std::string key = id.handle().toHex();
        if (auto container = open<Dictionary>(previous, OpenMode::ForWrite)) {
            container->nameAt(id, key);
            container->remove(id);
        }
        if (id != ids_.namedObjects && ids_.namedObjects.isLive()) {
            auto root = open<Dictionary>(ids_.namedObjects, OpenMode::ForWrite);
            while (root && root->has(key)) key += "+";
            if (root) root->setAt(key, id);
        } else if (auto object = open<DbObject>(id, OpenMode::ForWrite)) {
            object->setOwnerId(ObjectId::kNull);
        }
        issue(kIssueOwnerCycle,
              std::string(id.slot()->object->dxfName()) + " " + id.handle().toHex() +
                  ": its owners lead back to it; it is now the named-objects dictionary's " +
                  inQuotes(key),
              id.handle());
    }

    void repairDictionaries() {
        for (const ObjectId id : objects_) {
            std::vector<std::string> dangling;
            if (auto dictionary = open<Dictionary>(id, OpenMode::ForRead)) {
                for (const Dictionary::Entry& entry : dictionary->entries()) {
                    if (!entry.id.isValid()) dangling.push_back(entry.key);
                }
            }
            if (dangling.empty()) continue;
            auto dictionary = open<Dictionary>(id, OpenMode::ForWrite);
            for (const std::string& key : dangling) {
                dictionary->remove(key);
                issue(kIssueDanglingDictionaryEntry,
                      "dictionary " + id.handle().toHex() + ": entry " + inQuotes(key) +
                          " names no object; it was removed",
                      id.handle());
            }
        }
        for (const ObjectId id : withXdictionary_) {
            DbObject* object = id.slot()->object.get();
            const ObjectId xdict = object->extensionDictionary();
            if (xdict.isNull() || xdict.isValid()) continue;
            object->setExtensionDictionary(ObjectId::kNull);
            issue(kIssueDanglingDictionaryEntry,
                  std::string(object->dxfName()) + " " + id.handle().toHex() +
                      ": its extension dictionary names no object; the link was removed",
                  id.handle());
        }
    }

    ObjectId ensureEntry(ObjectId dictionaryId, std::string_view key, bool report,
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

    void ensureNamedObjects() {
        if (!ids_.namedObjects.isValid() || ids_.namedObjects.isErased()) {
            db_.addObject(std::make_unique<Dictionary>(), ids_.namedObjects, ObjectId::kNull);
            if (hasHandles()) {
                issue(kIssueMissingStandardObject,
                      "the named-objects dictionary is missing; it was made",
                      ids_.namedObjects.handle());
            }
        }
        ids_.groupDictionary = ensureEntry(ids_.namedObjects, "ACAD_GROUP", hasHandles(),
                                           std::make_unique<Dictionary>());
        ids_.layoutDictionary =
            ensureEntry(ids_.namedObjects, "ACAD_LAYOUT", version_ >= DxfVersion::R2000,
                        std::make_unique<Dictionary>());
        ensurePlotStyles();
    }

    // Layers from R2000 on name a plot style; drawings older than that get the dictionary
    // with its "Normal" placeholder that the host makes for every new drawing.
    void ensurePlotStyles() {
        ObjectId existing;
        if (auto root = open<Dictionary>(ids_.namedObjects, OpenMode::ForRead))
            root->getAt("ACAD_PLOTSTYLENAME", existing);
        if (!existing.isNull()) return;
        ObjectId placeholder;
        db_.addObject(std::make_unique<RawObject>("ACDBPLACEHOLDER", "AcDbPlaceHolder"),
                      placeholder, ObjectId::kNull);
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
        if (auto object = open<DbObject>(placeholder, OpenMode::ForWrite))
            object->setOwnerId(styles);
    }

    // Layout blocks and layouts name each other; a file may give only one side of the link
    // (or, before R2000, neither), and the missing side is made.
    void ensureLayouts() {
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

    void makeLayout(ObjectId recordId, bool model, int sheet) {
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
        if (auto record = open<BlockTableRecord>(recordId, OpenMode::ForWrite))
            record->setLayoutId(id);
        if (version_ >= DxfVersion::R2000) {
            issue(kIssueMissingStandardObject,
                  "layout block " + recordId.handle().toHex() + " has no layout; " +
                      inQuotes(name) + " was made",
                  id.handle());
        }
    }

    void setWellKnownIds() {
        const auto& layers = names_[static_cast<std::size_t>(SymbolKind::Layer)];
        ids_.clayer = ids_.layerZero;
        if (const auto name = db_.header().text("$CLAYER")) {
            if (const auto it = layers.find(cad::sys::asciiUpper(*name)); it != layers.end())
                ids_.clayer = it->second;
        }
    }

    const DxfStructure& structure_;
    DxfFile& file_;
    TagPlace place_;
    Database& db_;
    Database::WellKnownIds& ids_;
    DxfVersion version_;
    sys::CodePage codePage_;
    ReadingFiler filer_;
    std::optional<DxfError> error_;

    std::array<std::unordered_map<std::string, ObjectId>, kSymbolKinds> names_;
    struct LastName {
        std::string name;
        ObjectId id;
    };
    std::array<LastName, kSymbolKinds> lastNames_;
    bool symbolsReady_ = false;
    std::vector<Pending> pending_;
    std::unordered_map<std::string, std::string> classNames_;
    std::unordered_set<const ObjectSlot*> made_;  // block records the reader made
    std::unordered_set<SymbolTableKind> madeTables_;
    bool reportMissing_ = true;
    std::vector<ObjectId> objects_;          // what the OBJECTS section held
    std::vector<ObjectId> withXdictionary_;  // objects that name an extension dictionary
    Handle largestStored_;
};

}  // namespace

std::optional<DxfError> DxfDatabaseReader::read(const DxfStructure& structure, DxfFile& file,
                                                Database& database) {
    return Loader(structure, file, database).load();
}

}  // namespace cad::db::dxf
