// The database stage of reading a drawing, behind DxfDatabaseReader: one object per read, kept
// to this folder. Its work is split by stage: DxfDatabaseReader.cpp runs the stages in order;
// DatabaseLoader.cpp reads the header, the classes and the objects, DatabaseLoaderSections.cpp
// the tables, blocks and entities; DatabaseLoaderSymbols.cpp resolves names to records;
// DatabaseLoaderDefaults.cpp makes what a drawing must have and the file lacks;
// DatabaseLoaderRepairs.cpp repairs the links once everything is read.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/dxf/DxfError.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/DxfStructure.h"
#include "cad/db/dxf/ItemReader.h"
#include "cad/db/dxf/ObjectFactory.h"
#include "cad/db/dxf/ReadingFiler.h"
#include "cad/db/dxf/TextCodec.h"

namespace cad::db {
class Entity;
}

namespace cad::db::dxf {

class DatabaseLoader final : private ReadingFiler::SymbolResolver {
public:
    DatabaseLoader(const DxfStructure& structure, DxfFile& file, Database& db)
        : structure_(structure),
          file_(file),
          place_(file.place()),
          db_(db),
          ids_(db.wellKnownIds()),
          version_(fileVersion()),
          codePage_(textCodePage()),
          filer_(db, version_, codePage_, place_, *this) {}

    std::optional<DxfError> load();

private:
    using Placement = ObjectFactory::Placement;
    using SymbolKind = DxfFiler::SymbolTable;

    static constexpr std::size_t kSymbolKinds = 5;

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
    struct LastName {
        std::string name;
        ObjectId id;
    };

    static std::string_view typeOf(TagSpan item) { return trimBlanks(item.front().value); }
    static std::string inQuotes(std::string_view text) {
        std::string out;
        out.reserve(text.size() + 2);
        out += '"';
        out += text;
        out += '"';
        return out;
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

    // ---- The file's version and code page (DxfDatabaseReader.cpp); called while constructing
    sys::CodePage textCodePage();
    DxfVersion fileVersion();

    // ---- Reading: header, classes, objects (DatabaseLoader.cpp)
    bool readHeader();
    bool readClasses();
    void reserveHandles();
    std::string_view classNameOf(std::string_view type, TagSpan item) const;
    std::unique_ptr<DbObject> readItem(TagSpan item, Placement placement);
    ObjectId store(std::unique_ptr<DbObject> object, TagSpan item, ObjectId owner);
    ObjectId readAndStore(TagSpan item, Placement placement, ObjectId owner);
    bool readObjects(const Section& section);

    // ---- Reading: tables, blocks, entities (DatabaseLoaderSections.cpp)
    bool readTables(const Section& section);
    void listRecord(ObjectId table, ObjectId id, TagSpan item);
    bool readBlocks(const Section& section);
    void endSequence(Sequence& sequence);
    bool readSubentity(TagSpan item, std::string_view type, Sequence& sequence, bool dropping);
    bool readEntity(TagSpan item, ObjectId owner, OpenRecord& current, Sequence& sequence,
                    bool dropping);
    ObjectId entityOwner(const Entity& entity);
    bool readEntities(const Section& section);

    // ---- Resolving names (DatabaseLoaderSymbols.cpp)
    void buildSymbolMap(SymbolKind kind);
    void resolve(ObjectId& record, std::string_view name, SymbolKind kind) override;
    ObjectId lookUp(SymbolKind kind, std::string_view name);
    ObjectId makeMissing(SymbolKind kind, const std::string& name);
    static std::string_view blockNameOf(TagSpan item);
    std::string blockName(TagSpan item) const;
    bool defineBlocks(const Section& section);

    // ---- Making what the file lacks (DatabaseLoaderDefaults.cpp)
    ObjectId make(const MadeTags& tags, ObjectId owner);
    ObjectId& tableId(SymbolTableKind kind);
    void ensureTables();
    bool tableIsEmpty(SymbolTableKind kind);
    ObjectId recordNamed(SymbolTableKind kind, std::string_view name);
    ObjectId makeRecord(SymbolTableKind kind, const MadeTags& tags);
    ObjectId ensureRecord(SymbolTableKind kind, std::string_view name, const MadeTags& tags,
                          bool implicitInR12);
    void ensureStandardRecords();
    ObjectId makeBlockRecord(const std::string& name);
    void makeBlockEnds(ObjectId recordId);
    ObjectId makeBlock(const std::string& name);
    void ensureLayoutBlocks();
    void completeBlocks();
    ObjectId ensureEntry(ObjectId dictionaryId, std::string_view key, bool report,
                         std::unique_ptr<DbObject> made);
    void ensureNamedObjects();
    void ensurePlotStyles();
    void ensureLayouts();
    void makeLayout(ObjectId recordId, bool model, int sheet);
    void setWellKnownIds();

    // ---- Repairing links (DatabaseLoaderRepairs.cpp)
    void drop(ObjectId id);
    std::unordered_map<const ObjectSlot*, ObjectId> containers() const;
    static bool lists(ObjectId container, ObjectId child);
    void repairOwners();
    static bool ownsOnTheWayUp(ObjectId owner, ObjectId object);
    void cutOwnerCycles();
    void cutCycleAt(ObjectId id);
    void repairDictionaries();

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

}  // namespace cad::db::dxf
