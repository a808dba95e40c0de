// Any bytes through the first reading stages (tags, then sections and items, each item read
// again) and every value accessor, as a drawing being opened would take them. Nothing may
// crash, hang or grow without bound; a refused file is a normal outcome.
#include <cstddef>
#include <cstdint>
#include <string>

#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/GroupCode.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/db/dxf/TextCodec.h"

using namespace cad::db::dxf;

namespace {

void readValue(const Tag& tag, cad::sys::CodePage codePage) {
    switch (valueTypeOf(tag.code)) {
        case ValueType::Double:
            (void)toDouble(tag);
            break;
        case ValueType::Handle:
            (void)toHandle(tag);
            break;
        case ValueType::Binary:
            (void)toBinary(tag);
            break;
        case ValueType::String:
        case ValueType::Comment:
            (void)decodeText(tag.value, codePage);
            break;
        default:
            (void)toInt(tag);
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    DxfFile file = DxfFile::fromBytes(std::string(reinterpret_cast<const char*>(data), size));
    if (!file.ok()) return 0;
    DxfStructure structure;
    if (StructureLoader::load(file, structure)) return 0;

    // The loader's promise to the database stage: every item reads again, from its code-0 tag.
    const auto codePage = fileCodePage(structure.acadVersion, structure.codePageName);
    for (const Section& section : structure.sections) {
        for (const TagRun& run : section.items) {
            const auto item = file.tagsOf(run);
            if (!item || item->front().code != 0) __builtin_trap();
            for (const Tag& tag : *item) readValue(tag, codePage);
        }
    }
    for (const Tag& tag : structure.headerTags) readValue(tag, codePage);
    return 0;
}
