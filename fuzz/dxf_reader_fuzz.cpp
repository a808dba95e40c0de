// Any bytes through the first reading stages (tags, then sections and items) and every value
// accessor, as a drawing being opened would take them. Nothing may crash, hang or grow
// without bound; a refused file is a normal outcome.
#include <cstddef>
#include <cstdint>
#include <string>

#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/GroupCode.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/db/dxf/TextCodec.h"

using namespace cad::db::dxf;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const DxfFile file = DxfFile::fromBytes(std::string(reinterpret_cast<const char*>(data), size));
    if (!file.ok()) return 0;
    DxfStructure structure;
    if (StructureLoader::load(file.tags(), structure, file.place())) return 0;

    // The loader's promise to the database stage: every item starts at its code-0 tag.
    for (const Section& section : structure.sections) {
        for (const TagSpan& item : section.items) {
            if (item.empty() || item.front().code != 0) __builtin_trap();
        }
    }
    const auto codePage = fileCodePage(structure.acadVersion, structure.codePageName);
    for (const Tag& tag : file.tags()) {
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
    return 0;
}
