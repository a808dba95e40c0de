// Writing a database as DWG 2000 or R14: the database is written as DXF by the DXF writer,
// its structures encoded as DWG records, then laid out as the file: the file header with its
// section locators, the header variables, the classes, the records and the object map that
// locates them, each section with its check value.
#include "cad/db/dwg/DwgWriter.h"

#include <algorithm>

#include "cad/db/dwg/DwgCrc.h"
#include "cad/db/dwg/DwgEncoder.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/StructureLoader.h"

namespace cad::db::dwg {
namespace {

constexpr unsigned char kFileSentinel[16] = {0x95, 0xA0, 0x4E, 0x28, 0x99, 0x82, 0x1A, 0xE5,
                                             0x5E, 0x41, 0xE0, 0x5F, 0x9D, 0x3A, 0x4D, 0x00};

}  // namespace

std::string DwgEncoder::file() {
    classes_ = {{"DICTIONARYVAR", 500}, {"ACDBDICTIONARYWDFLT", 501}, {"SCALE", 502},
                {"SORTENTSTABLE", 503}};
    if (!r2000_) {
        classes_.insert(classes_.end(), {{"LWPOLYLINE", 504}, {"HATCH", 505}, {"XRECORD", 506},
                                         {"ACDBPLACEHOLDER", 507}});
    }
    // Classes of images go in only with a drawing that has them.
    for (const char* name : {"IMAGE", "WIPEOUT", "IMAGEDEF", "IMAGEDEF_REACTOR"}) {
        if (std::any_of(items_.begin(), items_.end(),
                        [name](const DwgItem& item) { return item.type == name; })) {
            classes_.emplace_back(name, 500 + static_cast<int>(classes_.size()));
        }
    }
    index();

    // The records, each with its handle; symbol tables become their control objects.
    std::vector<std::pair<std::uint64_t, std::string>> records;
    for (const DwgItem& item : items_) {
        if (item.type == "TABLE") {
            if (std::string bytes = control(item); !bytes.empty()) {
                records.emplace_back(item.handle, std::move(bytes));
            }
            continue;
        }
        const auto type = typeOf(item);
        if (!type) {
            ++leftOut_[item.type];
            continue;
        }
        EncodedRecord r;
        r.data.setCompact(r2000_);
        number_ = 0;
        if (!r2000_) {
            // Types R14 knows only as classes.
            static constexpr std::pair<int, int> kAsClasses[] = {
                {0x4D, 504}, {0x4E, 505}, {0x4F, 506}, {0x50, 507}};
            for (const auto& [kind, number] : kAsClasses) {
                if (*type == kind) number_ = number;
            }
        }
        if (!encode(r, item, *type)) {
            ++leftOut_[item.type];
            continue;
        }
        records.emplace_back(item.handle, finish(r));
    }
    for (const auto& [type, count] : leftOut_) {
        messages_.push_back(std::to_string(count) + " " + type + (count == 1 ? " object" : " objects") +
                            " not written to DWG: the writer does not encode that type yet");
    }

    // File header with three section locators, then the sections in order.
    const std::string header = headerSection();
    const std::string classes = classesSection();
    constexpr std::size_t kLocators = 3;
    const std::size_t fileHeaderSize = 0x19 + 9 * kLocators + 2 + 16;
    const std::size_t headerAt = fileHeaderSize;
    const std::size_t classesAt = headerAt + header.size();
    std::size_t objectsAt = classesAt + classes.size();
    std::string objects;
    std::vector<std::pair<std::uint64_t, std::int64_t>> map;
    std::sort(records.begin(), records.end());
    for (const auto& [handle, bytes] : records) {
        map.emplace_back(handle, static_cast<std::int64_t>(objectsAt + objects.size()));
        objects += bytes;
    }
    const std::size_t mapAt = objectsAt + objects.size();
    std::string mapBytes;
    std::size_t i = 0;
    while (i < map.size()) {
        BitWriter page;
        std::uint64_t lastHandle = 0;
        std::int64_t lastOffset = 0;
        while (i < map.size() && page.bytes().size() < 2020) {
            page.modularChar(map[i].first - lastHandle);
            page.signedModularChar(map[i].second - lastOffset);
            lastHandle = map[i].first;
            lastOffset = map[i].second;
            ++i;
        }
        std::string sized;
        const std::size_t size = page.bytes().size() + 2;
        sized += static_cast<char>(size >> 8);
        sized += static_cast<char>(size & 0xFF);
        sized += page.bytes();
        const std::uint16_t crc = dwgCrc16(sized, 0xC0C1);
        mapBytes += sized;
        mapBytes += static_cast<char>(crc >> 8);
        mapBytes += static_cast<char>(crc & 0xFF);
    }
    {
        std::string last("\x00\x02", 2);
        const std::uint16_t crc = dwgCrc16(last, 0xC0C1);
        mapBytes += last;
        mapBytes += static_cast<char>(crc >> 8);
        mapBytes += static_cast<char>(crc & 0xFF);
    }

    std::string file = r2000_ ? "AC1015" : "AC1014";
    file += std::string(5, '\0');
    file += '\0';  // maintenance version
    file += '\x01';
    file += std::string(4, '\0');  // no preview image
    file += std::string("\x00\x00", 2);
    file += static_cast<char>(codePage_ & 0xFF);
    file += static_cast<char>(codePage_ >> 8);
    const auto putLong = [&file](std::uint32_t v) {
        for (int b = 0; b < 4; ++b) file += static_cast<char>(v >> (8 * b));
    };
    putLong(kLocators);
    const std::pair<std::size_t, std::size_t> locators[kLocators] = {
        {headerAt, header.size()}, {classesAt, classes.size()}, {mapAt, mapBytes.size()}};
    for (std::size_t n = 0; n < kLocators; ++n) {
        file += static_cast<char>(n);
        putLong(static_cast<std::uint32_t>(locators[n].first));
        putLong(static_cast<std::uint32_t>(locators[n].second));
    }
    const std::uint16_t crc = dwgCrc16(file, 0) ^ 0xA598;
    file += static_cast<char>(crc & 0xFF);
    file += static_cast<char>(crc >> 8);
    file.append(reinterpret_cast<const char*>(kFileSentinel), 16);
    file += header;
    file += classes;
    file += objects;
    file += mapBytes;
    return file;
}

ErrorStatus DwgWriter::write(Database& database, std::string& bytes,
                             std::vector<std::string>& messages, DwgVersion version) {
    if (version == DwgVersion::R13) return ErrorStatus::eVersionNotSupported;
    std::string text;
    if (ErrorStatus es = dxf::DxfDatabaseWriter::write(database, DxfVersion::R2000, text, messages);
        es != ErrorStatus::eOk) {
        return es;
    }
    dxf::DxfFile file = dxf::DxfFile::fromBytes(std::move(text));
    dxf::DxfStructure structure;
    if (!file.ok() || dxf::StructureLoader::load(file, structure)) return ErrorStatus::eInvalidInput;
    std::vector<DwgItem> items;
    for (const dxf::Section& section : structure.sections) {
        if (section.name == "HEADER" || section.name == "CLASSES") continue;
        for (const dxf::TagRun& run : section.items) {
            const auto tags = file.tagsOf(run);
            if (!tags || tags->empty()) continue;
            const std::string_view type = dxf::trimBlanks((*tags)[0].value);
            if (type == "ENDTAB" || type == "ENDSEC" || type == "EOF") continue;
            items.push_back(itemFrom(*tags));
            items.back().type = std::string(type);
        }
    }
    DwgEncoder encoder(items, messages, structure, version == DwgVersion::R2000);
    bytes = encoder.file();
    return ErrorStatus::eOk;
}

}  // namespace cad::db::dwg
