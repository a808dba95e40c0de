// Any bytes read into a database, as opening a drawing would take them, and what loads written
// back and read again. Nothing may crash, hang or grow without bound; a refused file is a
// normal outcome, but a file the engine wrote must always load again, without repairs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"

using namespace cad;
using namespace cad::db;

namespace {

// Says what broke before stopping, so a crash's log tells which promise the input broke.
[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "dxf_database_fuzz: %s\n", what.c_str());
    __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Database db(false);
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (db.readDxfBytes(bytes, "fuzz.dxf") != ErrorStatus::eOk) return 0;
    if (db.openObjectCount() != 0) fail("objects left open by the read");
    for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R14}) {
        std::string text;
        std::vector<std::string> messages;
        if (dxf::DxfDatabaseWriter::write(db, version, text, messages) != ErrorStatus::eOk)
            fail("the write failed");
        // To see what was written when a crash is looked into.
        if (std::getenv("VANTOR_FUZZ_DUMP") != nullptr)
            std::fwrite(text.data(), 1, text.size(), stderr);
        Database back(false);
        if (back.readDxfBytes(text, "written.dxf") != ErrorStatus::eOk)
            fail("the written file does not load: " + back.lastErrorMessage());
        if (!back.loadIssues().empty())
            fail("the written file needs repairs: " + back.loadIssues().front().message);
    }
    return 0;
}
