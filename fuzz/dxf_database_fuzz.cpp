// Any bytes read into a database, as opening a drawing would take them, and what loads written
// back and read again. Nothing may crash, hang or grow without bound; a refused file is a
// normal outcome, but a file the engine wrote must always load again, without repairs.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"

using namespace cad;
using namespace cad::db;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Database db(false);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (db.readDxfBytes(bytes, "fuzz.dxf") != ErrorStatus::eOk) return 0;
    if (db.openObjectCount() != 0) __builtin_trap();
    for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R14}) {
        std::string text;
        std::vector<std::string> messages;
        if (dxf::DxfDatabaseWriter::write(db, version, text, messages) != ErrorStatus::eOk)
            __builtin_trap();
        Database back(false);
        if (back.readDxfBytes(text, "written.dxf") != ErrorStatus::eOk) __builtin_trap();
        if (!back.loadIssues().empty()) __builtin_trap();
    }
    return 0;
}
