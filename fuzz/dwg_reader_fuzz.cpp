// The DWG reader on damaged files. Two kinds of input: bytes that start like a DWG file are
// read as one; any other input is a list of patches (a 4-byte offset, a byte to mix in) laid
// on the sample R14 drawing, so mutations reach the objects deep inside a real file rather
// than failing at its header. Nothing may crash, hang or grow without bound; a refused file
// is a normal outcome, but a file the reader accepts must load into a database, and that
// database written as DWG 2000 and as R14 must read again.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/dwg/DwgFileLayout.h"
#include "cad/db/dwg/DwgTranslator.h"
#include "cad/db/dwg/DwgWriter.h"

using namespace cad;
using namespace cad::db;

namespace {

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "dwg_reader_fuzz: %s\n", what.c_str());
    __builtin_trap();
}

const std::string& sample() {
    static const std::string bytes = [] {
        std::ifstream in(VANTOR_SOURCE_DIR "/testdata/corpus/acadsharp__sample_AC1014.dwg",
                         std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }();
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::string bytes;
    if (dwg::looksLikeDwg(input)) {
        bytes = std::string(input);
    } else {
        bytes = sample();
        if (bytes.empty()) fail("the sample drawing cannot be read");
        for (std::size_t at = 0; at + 5 <= input.size(); at += 5) {
            std::uint32_t offset = 0;
            for (int i = 0; i < 4; ++i) {
                offset |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(input[at + i]))
                          << (8 * i);
            }
            bytes[offset % bytes.size()] ^= input[at + 4];
        }
    }
    dwg::DwgTranslation translation;
    if (dwg::DwgTranslator::translate(bytes, translation)) return 0;
    Database db(false);
    if (db.readDxfBytes(translation.dxf, "translated.dxf") != ErrorStatus::eOk) {
        fail("a DWG the reader accepted does not load: " + db.lastErrorMessage());
    }
    if (db.openObjectCount() != 0) fail("objects left open by the read");
    for (const dwg::DwgVersion version : {dwg::DwgVersion::R2000, dwg::DwgVersion::R14}) {
        std::string written;
        std::vector<std::string> messages;
        if (dwg::DwgWriter::write(db, written, messages, version) != ErrorStatus::eOk) {
            fail("the write failed");
        }
        dwg::DwgTranslation again;
        if (const auto error = dwg::DwgTranslator::translate(written, again)) {
            fail("the written DWG does not read: " + error->message);
        }
        if (again.unreadable != 0) {
            fail("a written record does not read: " + again.unreadableMessages[0]);
        }
    }
    return 0;
}
