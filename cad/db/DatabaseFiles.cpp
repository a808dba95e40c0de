// Reading drawings into a database and saving them. A read goes into a fresh database that
// replaces this one's content only when it succeeds; a save goes to a temporary file that
// replaces the target only when it is complete.
#include <utility>

#include "cad/db/Database.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/dwg/DwgTranslator.h"
#include "cad/db/dwg/DwgWriter.h"
#include "cad/db/dxf/DxfDatabaseReader.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/sys/AsciiCase.h"
#include "cad/sys/AtomicFile.h"
#include "cad/sys/FileError.h"
#include "cad/sys/MappedFile.h"

namespace cad::db {
namespace {

// The version save() keeps: R14 files stay R14; everything else is written as R2000, the
// newest version the engine writes.
DxfVersion savedVersionOf(DxfVersion read) {
    return read == DxfVersion::R14 ? DxfVersion::R14 : DxfVersion::R2000;
}

}  // namespace

ErrorStatus Database::readDwgFile(const std::string& path, sys::ShareMode shareMode, bool) {
    if (openCount_ > 0) return ErrorStatus::eInvalidOpenState;
    // The file stays open, and shared as asked, until it has been read. A file system that
    // cannot map files has its bytes read instead.
    sys::SharedFile file;
    sys::MappedFile mapping;
    std::string bytes;
    ErrorStatus es = file.open(path, shareMode);
    const bool mapped = es == ErrorStatus::eOk && mapping.map(file) == ErrorStatus::eOk;
    if (es == ErrorStatus::eOk && !mapped) es = file.readAll(bytes);
    if (es != ErrorStatus::eOk) {
        lastErrorMessage_ = path + ": " +
                            (es == ErrorStatus::eFileNotFound    ? "the file does not exist"
                             : es == ErrorStatus::eFileAccessErr ? "the file is in use or locked"
                                                                 : "the file cannot be read");
        return es;
    }
    // A DWG file is known by its first bytes, whatever its name: it is read as the DXF
    // structure of the same drawing, so both kinds fill the database the same way.
    if (dwg::looksLikeDwg(mapped ? mapping.bytes() : std::string_view(bytes))) {
        dwg::DwgTranslation translation;
        if (auto error = dwg::DwgTranslator::translate(mapped ? mapping.bytes() : bytes,
                                                       translation)) {
            lastErrorMessage_ = path + ": " + error->message;
            return ErrorStatus::eBadDwgFile;
        }
        es = readDxf(dxf::DxfFile::fromBytes(std::move(translation.dxf)), path);
        if (es == ErrorStatus::eOk) {
            fileName_ = path;
            const std::size_t damaged = translation.layout.warnings.size() +
                                        static_cast<std::size_t>(translation.checkValueMismatches);
            if (damaged != 0) {
                loadIssues_.push_back({kIssueDwgCheckValue,
                                       std::to_string(damaged) +
                                           " check values of the DWG file do not match: read "
                                           "as it stands",
                                       Handle(), false});
            }
            for (const auto& [type, count] : translation.notRead) {
                loadIssues_.push_back({kIssueNotReadFromDwg,
                                       std::to_string(count) + " " + type +
                                           (count == 1 ? " object" : " objects") +
                                           " of the DWG file not read: left out",
                                       Handle(), false});
            }
        }
        return es;
    }
    es = readDxf(mapped ? dxf::DxfFile::fromMapping(std::move(mapping))
                        : dxf::DxfFile::fromBytes(std::move(bytes)),
                 path);
    if (es == ErrorStatus::eOk) fileName_ = path;
    return es;
}

ErrorStatus Database::readDxfBytes(std::string bytes, const std::string& name) {
    if (openCount_ > 0) return ErrorStatus::eInvalidOpenState;
    return readDxf(dxf::DxfFile::fromBytes(std::move(bytes)), name);
}

ErrorStatus Database::readDxf(dxf::DxfFile file, const std::string& name) {
    std::optional<dxf::DxfError> error = file.error();
    dxf::DxfStructure structure;
    if (!error) error = dxf::StructureLoader::load(file, structure);
    Database fresh(false, noDocument_);
    if (!error) error = dxf::DxfDatabaseReader::read(structure, file, fresh);
    if (error) {
        lastErrorMessage_ = name + ": " + error->message;
        return ErrorStatus::eBadDwgFile;
    }
    replaceContent(fresh);
    saveVersion_ = savedVersionOf(originalVersion_);
    lastErrorMessage_.clear();
    return ErrorStatus::eOk;
}

void Database::replaceContent(Database& other) {
    std::swap(slots_, other.slots_);
    slots_.forEach([this](ObjectSlot& slot) { slot.database = this; });
    other.slots_.forEach([&other](ObjectSlot& slot) { slot.database = &other; });
    std::swap(handseed_, other.handseed_);
    std::swap(ids_, other.ids_);
    std::swap(header_, other.header_);
    std::swap(originalVersion_, other.originalVersion_);
    std::swap(codePage_, other.codePage_);
    std::swap(loadIssues_, other.loadIssues_);
    std::swap(dxfClasses_, other.dxfClasses_);
}

ErrorStatus Database::saveAs(const std::string& path, DxfVersion version) {
    saveMessages_.clear();
    // The message is the system's reason with the file's name: a full disk, a read-only
    // folder and a file another user owns each need a different answer from the user.
    sys::AtomicFile file;
    if (ErrorStatus es = file.open(path); es != ErrorStatus::eOk) {
        lastErrorMessage_ = sys::lastFileError().text;
        return es == ErrorStatus::eFileWriteError ? es : ErrorStatus::eFileAccessErr;
    }
    // A path named .dwg gets a DWG file of the version asked for (R14, else 2000), never DXF
    // text under a DWG name, which other programs would refuse.
    const bool dwgPath = path.size() >= 4 && sys::equalNoCase(path.substr(path.size() - 4), ".dwg");
    if (dwgPath) {
        if (version != DxfVersion::R14) version = DxfVersion::R2000;
        std::string bytes;
        if (ErrorStatus es = dwg::DwgWriter::write(
                *this, bytes, saveMessages_,
                version == DxfVersion::R14 ? dwg::DwgVersion::R14 : dwg::DwgVersion::R2000);
            es != ErrorStatus::eOk) {
            file.discard();
            lastErrorMessage_ = path + ": an object is open for write";
            return es;
        }
        file.write(bytes);
    }
    // The text goes to the temporary piece by piece as it is made, so a large drawing is never
    // held whole; a write that fails is remembered and reported by commit().
    const auto toFile = [&file](std::string_view piece) { file.write(piece); };
    if (ErrorStatus es = dwgPath ? ErrorStatus::eOk
                                 : dxf::DxfDatabaseWriter::write(*this, version, toFile,
                                                                 saveMessages_);
        es != ErrorStatus::eOk) {
        file.discard();
        lastErrorMessage_ = path + (es == ErrorStatus::eVersionNotSupported
                                        ? ": only R2000 and R14 files are written"
                                        : ": an object is open for write");
        return es;
    }
    if (file.commit() != ErrorStatus::eOk) {
        lastErrorMessage_ = sys::lastFileError().text;
        return ErrorStatus::eFileWriteError;
    }
    fileName_ = path;
    saveVersion_ = version;
    lastErrorMessage_.clear();
    return ErrorStatus::eOk;
}

ErrorStatus Database::save() {
    if (fileName_.empty()) return ErrorStatus::eNotApplicable;
    return saveAs(fileName_, saveVersion_);
}

}  // namespace cad::db
