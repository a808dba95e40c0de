// Reading a drawing's structures into a database, in stages: objects are read in file order and
// stored under their handles, references go to slots by handle, so they resolve whatever the
// order; symbol names are resolved once the tables are known; what the file lacks is made;
// the links are checked and repaired at the end.
#include "cad/db/dxf/DxfDatabaseReader.h"

#include <algorithm>

#include "cad/db/dxf/DatabaseLoader.h"

namespace cad::db::dxf {

std::optional<DxfError> DxfDatabaseReader::read(const DxfStructure& structure, DxfFile& file,
                                                Database& database) {
    return DatabaseLoader(structure, file, database).load();
}

std::optional<DxfError> DatabaseLoader::load() {
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

// Called while constructing, as is fileVersion. Programs that ignore code pages write
// UTF-8 and declare ANSI_1252 (or nothing); bytes beyond ASCII that all read as UTF-8 are
// next to never Western text, so such a file's text is read as UTF-8.
sys::CodePage DatabaseLoader::textCodePage() {
    const sys::CodePage declared = fileCodePage(structure_.acadVersion, structure_.codePageName);
    if (declared == sys::CodePage::Ansi1252 && file_.hasUtf8Text()) return sys::CodePage::Utf8;
    return declared;
}

// Called while constructing, so it reads only what is set before version_.
DxfVersion DatabaseLoader::fileVersion() {
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

}  // namespace cad::db::dxf
