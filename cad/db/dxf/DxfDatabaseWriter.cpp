// Writing the sections of a DXF file from a database: HEADER, CLASSES, TABLES, BLOCKS,
// ENTITIES, OBJECTS. Objects are written through the writing filer, so the layout each class
// declares is the layout written.
#include "cad/db/dxf/DxfDatabaseWriter.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/ComplexEntity.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Entity.h"
#include "cad/db/Group.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/dxf/TagWriter.h"
#include "cad/db/dxf/TextCodec.h"
#include "cad/db/dxf/WritingFiler.h"
#include "cad/db/dxf/WrittenCodePage.h"

namespace cad::db::dxf {
namespace {

// The header variables an R14 file has; anything else is newer and left out.
constexpr std::string_view kR14Variables[] = {
    "$ANGBASE",    "$ANGDIR",        "$ATTMODE",    "$AUNITS",     "$AUPREC",   "$CECOLOR",
    "$CELTSCALE",  "$CELTYPE",       "$CHAMFERA",   "$CHAMFERB",   "$CHAMFERC", "$CHAMFERD",
    "$CLAYER",     "$CMLJUST",       "$CMLSCALE",   "$CMLSTYLE",   "$DIMALT",   "$DIMALTD",
    "$DIMALTF",    "$DIMALTTD",      "$DIMALTTZ",   "$DIMALTU",    "$DIMALTZ",  "$DIMAPOST",
    "$DIMASO",     "$DIMASZ",        "$DIMAUNIT",   "$DIMBLK",     "$DIMBLK1",  "$DIMBLK2",
    "$DIMCEN",     "$DIMCLRD",       "$DIMCLRE",    "$DIMCLRT",    "$DIMDEC",   "$DIMDLE",
    "$DIMDLI",     "$DIMEXE",        "$DIMEXO",     "$DIMFIT",     "$DIMGAP",   "$DIMJUST",
    "$DIMLFAC",    "$DIMLIM",        "$DIMPOST",    "$DIMRND",     "$DIMSAH",   "$DIMSCALE",
    "$DIMSD1",     "$DIMSD2",        "$DIMSE1",     "$DIMSE2",     "$DIMSHO",   "$DIMSOXD",
    "$DIMSTYLE",   "$DIMTAD",        "$DIMTDEC",    "$DIMTFAC",    "$DIMTIH",   "$DIMTIX",
    "$DIMTM",      "$DIMTOFL",       "$DIMTOH",     "$DIMTOL",     "$DIMTOLJ",  "$DIMTP",
    "$DIMTSZ",     "$DIMTVP",        "$DIMTXSTY",   "$DIMTXT",     "$DIMTZIN",  "$DIMUNIT",
    "$DIMUPT",     "$DIMZIN",        "$DISPSILH",   "$ELEVATION",  "$EXTMAX",   "$EXTMIN",
    "$FILLETRAD",  "$FILLMODE",      "$INSBASE",    "$LIMCHECK",   "$LIMMAX",   "$LIMMIN",
    "$LTSCALE",    "$LUNITS",        "$LUPREC",     "$MAXACTVP",   "$MENU",     "$MIRRTEXT",
    "$ORTHOMODE",  "$PDMODE",        "$PDSIZE",     "$PELEVATION", "$PEXTMAX",  "$PEXTMIN",
    "$PICKSTYLE",  "$PINSBASE",      "$PLIMCHECK",  "$PLIMMAX",    "$PLIMMIN",  "$PLINEGEN",
    "$PLINEWID",   "$PROXYGRAPHICS", "$PSLTSCALE",  "$PUCSNAME",   "$PUCSORG",  "$PUCSXDIR",
    "$PUCSYDIR",   "$QTEXTMODE",     "$REGENMODE",  "$SHADEDGE",   "$SHADEDIF", "$SKETCHINC",
    "$SKPOLY",     "$SPLFRAME",      "$SPLINESEGS", "$SPLINETYPE", "$SURFTAB1", "$SURFTAB2",
    "$SURFTYPE",   "$SURFU",         "$SURFV",      "$TDCREATE",   "$TDINDWG",  "$TDUPDATE",
    "$TDUSRTIMER", "$TEXTSIZE",      "$TEXTSTYLE",  "$THICKNESS",  "$TILEMODE", "$TRACEWID",
    "$TREEDEPTH",  "$UCSNAME",       "$UCSORG",     "$UCSXDIR",    "$UCSYDIR",  "$UNITMODE",
    "$USERI1",     "$USERI2",        "$USERI3",     "$USERI4",     "$USERI5",   "$USERR1",
    "$USERR2",     "$USERR3",        "$USERR4",     "$USERR5",     "$USRTIMER", "$VISRETAIN",
    "$WORLDVIEW",
};

// Variables that came after R2000: an R2000 file read by the host must not carry them.
constexpr std::string_view kAfterR2000Variables[] = {
    "$3DDWFPREC",
    "$CAMERADISPLAY",
    "$CAMERAHEIGHT",
    "$CMATERIAL",
    "$CSHADOW",
    "$DGNFRAME",
    "$DIMARCSYM",
    "$DIMASSOC",
    "$DIMFXL",
    "$DIMFXLON",
    "$DIMJOGANG",
    "$DIMLTEX1",
    "$DIMLTEX2",
    "$DIMLTYPE",
    "$DIMTFILL",
    "$DIMTFILLCLR",
    "$DIMTXTDIRECTION",
    "$DWFFRAME",
    "$HALOGAP",
    "$HIDETEXT",
    "$INDEXCTL",
    "$INTERFERECOLOR",
    "$INTERFEREOBJVS",
    "$INTERFEREVPVS",
    "$INTERSECTIONCOLOR",
    "$INTERSECTIONDISPLAY",
    "$LASTSAVEDBY",
    "$LATITUDE",
    "$LENSLENGTH",
    "$LIGHTGLYPHDISPLAY",
    "$LOFTANG1",
    "$LOFTANG2",
    "$LOFTMAG1",
    "$LOFTMAG2",
    "$LOFTNORMALS",
    "$LOFTPARAM",
    "$LONGITUDE",
    "$NORTHDIRECTION",
    "$OBSCOLOR",
    "$OBSLTYPE",
    "$PROJECTNAME",
    "$PSOLHEIGHT",
    "$PSOLWIDTH",
    "$REALWORLDSCALE",
    "$REQUIREDVERSIONS",
    "$SHADOWPLANELOCATION",
    "$SHOWHIST",
    "$SOLIDHIST",
    "$SORTENTS",
    "$STEPSIZE",
    "$STEPSPERSEC",
    "$TILEMODELIGHTSYNCH",
    "$TIMEZONE",
    "$XCLIPFRAME",
};

// Variables only R12 has; later versions dropped them.
constexpr std::string_view kR12OnlyVariables[] = {"$ATTDIA",   "$ATTREQ",   "$COORDS",
                                                  "$DRAGMODE", "$HANDLING", "$OSMODE"};

template <std::size_t N>
bool listed(const std::string_view (&list)[N], std::string_view name) {
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

// Object types that are classes (listed in CLASSES) rather than built into the format.
struct KnownClass {
    std::string_view dxfName;
    std::string_view className;
    bool entity;
    bool inR14;    // a class in R14 files
    bool inR2000;  // a class in R2000 files (R2000 made some R14 classes built-in)
};

constexpr KnownClass kKnownClasses[] = {
    {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", false, true, true},
    {"ACDBPLACEHOLDER", "AcDbPlaceHolder", false, true, true},
    {"DICTIONARYVAR", "AcDbDictionaryVar", false, true, true},
    {"LAYOUT", "AcDbLayout", false, false, true},
    {"PLOTSETTINGS", "AcDbPlotSettings", false, false, true},
    {"XRECORD", "AcDbXrecord", false, true, false},
    {"LWPOLYLINE", "AcDbPolyline", true, true, false},
    {"HATCH", "AcDbHatch", true, true, false},
};

// Root entries that R14 drawings do not have: layouts and plot styles came with R2000.
constexpr std::string_view kAfterR14RootEntries[] = {"ACAD_LAYOUT", "ACAD_PLOTSETTINGS",
                                                     "ACAD_PLOTSTYLENAME"};

class Writer final : private WritingFiler::SymbolNames {
public:
    Writer(Database& db, DxfVersion version, std::vector<std::string>& messages)
        : db_(db),
          version_(version),
          messages_(messages),
          out_(writtenCodePage(db)),
          filer_(out_, version, *this) {}

    // eOk, or eWasOpenedForWrite when an object could not be read because someone is
    // changing it: the file would lack it.
    ErrorStatus status() const { return status_; }

    // Whole tags go to `sink` as they pile up past `chunk` bytes.
    void setSink(const std::function<void(std::string_view)>& sink, std::size_t chunk) {
        out_.setSink(sink, chunk);
    }

    std::string run() {
        if (r14()) collectAfterR14Objects();
        collectGroupMembers();
        filer_.setExtraReactors(&groupsOf_);
        writeHeader();
        writeClasses();
        writeTables();
        writeBlocks();
        writeEntities();
        writeObjects();
        out_.writeRaw(0, "EOF");
        out_.finish();
        return out_.takeText();
    }

private:
    bool r14() const { return version_ == DxfVersion::R14; }

    template <class T>
    ObjectPtr<T> read(ObjectId id) {
        ObjectPtr<T> object(id, OpenMode::ForRead);
        if (object.openStatus() == ErrorStatus::eWasOpenedForWrite) status_ = object.openStatus();
        return object;
    }

    std::string_view nameOf(ObjectId record, DxfFiler::SymbolTable) override {
        const auto it = names_.find(record.slot());
        if (it != names_.end()) return it->second;
        std::string name;
        if (auto open = cad::db::open<SymbolTableRecord>(record, OpenMode::ForRead))
            name = open->name();
        return names_.emplace(record.slot(), std::move(name)).first->second;
    }

    void beginSection(std::string_view name) {
        out_.writeRaw(0, "SECTION");
        out_.writeRaw(2, name);
    }

    void endSection() { out_.writeRaw(0, "ENDSEC"); }

    // ---- HEADER ----

    bool writesVariable(std::string_view name) const {
        if (r14()) return listed(kR14Variables, name);
        return !listed(kAfterR2000Variables, name) && !listed(kR12OnlyVariables, name);
    }

    void writeHandseed() { out_.writeHandle(5, db_.handseed().value); }

    void writeHeader() {
        beginSection("HEADER");
        out_.writeRaw(9, "$ACADVER");
        out_.writeRaw(1, acadVer(version_));
        out_.writeRaw(9, "$DWGCODEPAGE");
        out_.writeRaw(3, sys::dxfCodePageName(out_.codePage()));
        bool handseedWritten = false;
        for (const HeaderVariables::Variable& variable : db_.header().variables()) {
            const std::string_view name = variable.name;
            if (name == "$ACADVER" || name == "$DWGCODEPAGE") continue;
            if (name == "$HANDSEED") {
                out_.writeString(9, name);
                writeHandseed();
                handseedWritten = true;
                continue;
            }
            if (!writesVariable(name)) continue;
            out_.writeString(9, name);
            for (const RawTag& tag : variable.tags) filer_.writeRawTag(tag);
        }
        if (!handseedWritten) {
            out_.writeRaw(9, "$HANDSEED");
            writeHandseed();
        }
        endSection();
    }

    // ---- CLASSES ----

    void writeClass(const std::vector<RawTag>& tags) {
        out_.writeRaw(0, "CLASS");
        for (const RawTag& tag : tags) {
            // The instance count (91) came with R2004.
            if (tag.code != 91) filer_.writeRawTag(tag);
        }
    }

    void writeClasses() {
        // The classes the written objects are of, found once over the database.
        std::unordered_set<std::string_view> used;
        for (const ObjectId id : db_.objectIds()) {
            if (!id.isErased() && !isSkipped(id)) used.insert(id.slot()->object->dxfName());
        }
        beginSection("CLASSES");
        std::unordered_set<std::string> written;
        for (const std::vector<RawTag>& tags : db_.dxfClasses()) {
            const auto name =
                std::find_if(tags.begin(), tags.end(), [](const RawTag& t) { return t.code == 1; });
            if (name == tags.end() || written.count(name->value) != 0) continue;
            const auto known =
                std::find_if(std::begin(kKnownClasses), std::end(kKnownClasses),
                             [&](const KnownClass& k) { return k.dxfName == name->value; });
            if (known != std::end(kKnownClasses) && !(r14() ? known->inR14 : known->inR2000)) {
                continue;
            }
            // R14 gets only the classes of what it holds: most later ones it would not know.
            if (r14() && used.count(name->value) == 0) continue;
            written.insert(name->value);
            writeClass(tags);
        }
        for (const KnownClass& known : kKnownClasses) {
            if (!(r14() ? known.inR14 : known.inR2000)) continue;
            if (!used.count(known.dxfName) || written.count(std::string(known.dxfName))) continue;
            writeClass({{1, std::string(known.dxfName)},
                        {2, std::string(known.className)},
                        {3, r14() ? "AutoCAD" : "ObjectDBX Classes"},
                        {90, "0"},
                        {280, "0"},
                        {281, known.entity ? "1" : "0"}});
        }
        endSection();
    }

    // ---- TABLES ----

    // R14 names: at most 31 bytes on disk, letters, digits, "$", "-" and "_" (and the
    // double-byte characters of the drawing's code page); "*" opens the special names.
    void checkR14Name(SymbolTableKind kind, const std::string& name) {
        const std::string what = std::string(tableName(kind)) + " \"" + name + "\"";
        const std::size_t bytes = encodeText(name, out_.codePage()).size();
        if (bytes > 31) {
            messages_.push_back(what + ": the name is " + std::to_string(bytes) +
                                " bytes long; R14 holds 31");
        }
        for (std::size_t i = 0; i < name.size(); ++i) {
            const auto c = static_cast<unsigned char>(name[i]);
            const bool allowed = c >= 0x80 || std::isalnum(c) || c == '$' || c == '-' || c == '_' ||
                                 (c == '*' && i == 0);
            if (!allowed) {
                messages_.push_back(what + ": R14 does not allow '" + std::string(1, name[i]) +
                                    "' in names");
                break;
            }
        }
    }

    void writeObject(ObjectId id) {
        auto object = read<DbObject>(id);
        if (object) filer_.write(*object);
    }

    void writeTables() {
        constexpr SymbolTableKind kOrder[] = {
            SymbolTableKind::Viewport,  SymbolTableKind::Linetype, SymbolTableKind::Layer,
            SymbolTableKind::TextStyle, SymbolTableKind::View,     SymbolTableKind::Ucs,
            SymbolTableKind::RegApp,    SymbolTableKind::DimStyle, SymbolTableKind::BlockRecord};
        const auto& ids = db_.wellKnownIds();
        const ObjectId tables[] = {ids.viewportTable,  ids.linetypeTable, ids.layerTable,
                                   ids.textStyleTable, ids.viewTable,     ids.ucsTable,
                                   ids.regAppTable,    ids.dimStyleTable, ids.blockTable};
        beginSection("TABLES");
        for (std::size_t i = 0; i < std::size(kOrder); ++i) {
            std::vector<ObjectId> records;
            {
                auto table = read<SymbolTable>(tables[i]);
                if (!table) continue;
                records = table->recordIds();
                filer_.write(*table);
            }
            for (const ObjectId id : records) {
                auto record = read<SymbolTableRecord>(id);
                if (!record) continue;
                if (r14()) checkR14Name(kOrder[i], record->name());
                filer_.write(*record);
            }
            out_.writeRaw(0, "ENDTAB");
        }
        endSection();
    }

    // ---- BLOCKS and ENTITIES ----

    void writeEntity(ObjectId id) {
        std::vector<ObjectId> subentities;
        ObjectId sequenceEnd;
        {
            auto entity = read<Entity>(id);
            if (!entity) return;
            filer_.write(*entity);
            if (const auto* complex = dynamic_cast<const ComplexEntity*>(entity.get())) {
                subentities = complex->subentityIds();
                sequenceEnd = complex->sequenceEndId();
            }
        }
        for (const ObjectId sub : subentities) {
            if (sub.isLive()) writeObject(sub);
        }
        if (sequenceEnd.isLive()) writeObject(sequenceEnd);
    }

    void writeBlocks() {
        std::vector<ObjectId> records;
        if (auto table = open<SymbolTable>(db_.blockTableId(), OpenMode::ForRead))
            records = table->recordIds();
        // The layout blocks come first, as the host writes them.
        std::stable_partition(records.begin(), records.end(), [&](ObjectId id) {
            return id == db_.modelSpaceId() || id == db_.paperSpaceId();
        });
        beginSection("BLOCKS");
        for (const ObjectId id : records) {
            ObjectId begin;
            ObjectId end;
            std::vector<ObjectId> entities;
            {
                auto record = read<BlockTableRecord>(id);
                if (!record) continue;
                begin = record->blockBeginId();
                end = record->blockEndId();
                if (id != db_.modelSpaceId() && id != db_.paperSpaceId())
                    entities = record->entityIds();
                if (r14() && record->hasPreviewIcon()) {
                    messages_.push_back(
                        "BLOCK_RECORD \"" + record->name() +
                        "\": R14 keeps no block previews; the preview was left out");
                }
            }
            writeObject(begin);
            for (const ObjectId entity : entities) writeEntity(entity);
            writeObject(end);
        }
        endSection();
    }

    void writeEntities() {
        beginSection("ENTITIES");
        for (const ObjectId space : {db_.modelSpaceId(), db_.paperSpaceId()}) {
            std::vector<ObjectId> entities;
            if (auto record = read<BlockTableRecord>(space)) entities = record->entityIds();
            filer_.setPaperSpace(space == db_.paperSpaceId());
            for (const ObjectId id : entities) writeEntity(id);
        }
        filer_.setPaperSpace(false);
        endSection();
    }

    // ---- OBJECTS ----

    // An object and what it owns: what names it as owner among what it lists, and its
    // extension dictionary. A list alone does not make an object part of another's tree.
    void collectSubtree(ObjectId id) {
        std::vector<ObjectId> todo{id};
        std::vector<ObjectId> owned;
        while (!todo.empty()) {
            const ObjectId next = todo.back();
            todo.pop_back();
            if (!next.isValid() || !skipped_.insert(next.slot()).second) continue;
            const DbObject* object = next.slot()->object.get();
            owned.clear();
            object->ownedObjects(owned);
            owned.push_back(object->extensionDictionary());
            for (const ObjectId child : owned) {
                if (child.isValid() && child.slot()->object->ownerId() == next)
                    todo.push_back(child);
            }
        }
    }

    // What R14 drawings cannot have: layouts, plot settings and the dictionaries of both.
    void collectAfterR14Objects() {
        if (auto root = open<Dictionary>(db_.namedObjectsDictionaryId(), OpenMode::ForRead)) {
            for (const std::string_view key : kAfterR14RootEntries) {
                ObjectId id;
                if (root->getAt(key, id) == ErrorStatus::eOk) collectSubtree(id);
            }
        }
        for (const ObjectId id : db_.objectIds()) {
            const std::string_view type = id.slot()->object->dxfName();
            if (type == "LAYOUT" || type == "PLOTSETTINGS") collectSubtree(id);
        }
    }

    void collectGroupMembers() {
        for (const ObjectId id : db_.objectIds()) {
            if (id.isErased()) continue;
            const auto* group = dynamic_cast<const Group*>(id.slot()->object.get());
            if (group == nullptr) continue;
            for (const ObjectId member : group->allEntityIds()) groupsOf_[member].push_back(id);
        }
    }

    // Also what R14 cannot have belongs to what R14 cannot have (a layout's extension
    // dictionary, say).
    bool isSkipped(ObjectId id) {
        if (skipped_.empty()) return false;
        std::vector<const ObjectSlot*> chain;
        bool skipped = false;
        for (ObjectId at = id; at.isValid(); at = at.slot()->object->ownerId()) {
            if (skipped_.count(at.slot()) != 0) {
                skipped = true;
                break;
            }
            if (kept_.count(at.slot()) != 0 || chain.size() > kMaxOwnerDepth) break;
            chain.push_back(at.slot());
        }
        for (const ObjectSlot* slot : chain) (skipped ? skipped_ : kept_).insert(slot);
        return skipped;
    }

    bool isWrittenObject(ObjectId id) {
        if (id.isErased() || isSkipped(id)) return false;
        const DbObject* object = id.slot()->object.get();
        return dynamic_cast<const Entity*>(object) == nullptr &&
               dynamic_cast<const SymbolTable*>(object) == nullptr &&
               dynamic_cast<const SymbolTableRecord*>(object) == nullptr;
    }

    // R14 leaves out what came later; a dictionary that lists any of it (the named objects
    // list the layouts, the layout dictionary its layouts) is written as a copy without those
    // entries, under its own handle.
    void writeDictionary(ObjectId id) {
        auto dictionary = read<Dictionary>(id);
        if (!dictionary) return;
        std::vector<std::string> leftOut;
        for (const Dictionary::Entry& entry : dictionary->entries()) {
            if (isSkipped(entry.id)) leftOut.push_back(entry.key);
        }
        if (leftOut.empty()) {
            filer_.write(*dictionary);
            return;
        }
        std::unique_ptr<DbObject> copy = dictionary->clone();
        auto* filtered = static_cast<Dictionary*>(copy.get());
        for (const std::string& key : leftOut) filtered->remove(key);
        filer_.write(*filtered, id.handle());
    }

    void writeObjects() {
        beginSection("OBJECTS");
        const ObjectId root = db_.namedObjectsDictionaryId();
        if (root.isLive()) writeDictionary(root);
        for (const ObjectId id : db_.objectIds()) {
            if (id == root || !isWrittenObject(id)) continue;
            if (dynamic_cast<const Dictionary*>(id.slot()->object.get()) != nullptr) {
                writeDictionary(id);
            } else {
                writeObject(id);
            }
        }
        endSection();
    }

    Database& db_;
    DxfVersion version_;
    std::vector<std::string>& messages_;
    TagWriter out_;
    WritingFiler filer_;
    std::unordered_map<const ObjectSlot*, std::string> names_;
    // Owner chains longer than this are broken (the reader cuts cycles); stop following.
    static constexpr std::size_t kMaxOwnerDepth = 64;
    std::unordered_set<const ObjectSlot*> skipped_;  // not written in this version
    std::unordered_set<const ObjectSlot*> kept_;     // known to be written
    std::unordered_map<ObjectId, std::vector<ObjectId>> groupsOf_;
    ErrorStatus status_ = ErrorStatus::eOk;
};

}  // namespace

ErrorStatus DxfDatabaseWriter::write(Database& database, DxfVersion version, std::string& text,
                                     std::vector<std::string>& messages) {
    if (version != DxfVersion::R2000 && version != DxfVersion::R14)
        return ErrorStatus::eVersionNotSupported;
    Writer writer(database, version, messages);
    text = writer.run();
    return writer.status();
}

ErrorStatus DxfDatabaseWriter::write(Database& database, DxfVersion version,
                                     const std::function<void(std::string_view)>& sink,
                                     std::vector<std::string>& messages) {
    if (version != DxfVersion::R2000 && version != DxfVersion::R14)
        return ErrorStatus::eVersionNotSupported;
    // A megabyte keeps the writes large and the memory small.
    constexpr std::size_t kChunk = 1 << 20;
    Writer writer(database, version, messages);
    writer.setSink(sink, kChunk);
    writer.run();
    return writer.status();
}

}  // namespace cad::db::dxf
