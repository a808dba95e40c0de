// Turning a DWG file into DXF text: tables and objects are decoded first, entities only as far
// as their owner; each entity's fields are decoded as DwgDxfWriter writes it.
#include "cad/db/dwg/DwgTranslator.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cad/db/dwg/DwgDxfWriter.h"
#include "cad/db/dwg/DwgHeaderVariables.h"
#include "cad/db/dwg/DwgObjectDecoder.h"

namespace cad::db::dwg {

std::optional<DwgError> DwgTranslator::translate(std::string_view bytes, DwgTranslation& out) {
    if (auto error = readFileLayout(bytes, out.layout)) return error;
    DwgObjectDecoder decoder(bytes, out.layout);
    // Tables, objects and the few entities looked up by handle are decoded now; the other
    // entities when they are written.
    std::vector<DwgRecord> records;
    std::vector<DwgDxfWriter::Pending> pending;
    struct Place {
        std::uint64_t handle;
        std::uint32_t map;
        DwgDxfWriter::Ref ref;  // into records, or into pending when isPending
        bool isPending;
    };
    std::vector<Place> places;
    places.reserve(out.layout.objects.size());
    std::vector<std::pair<std::uint32_t, std::string>> unreadable;
    DwgRecord record;
    for (std::uint32_t map = 0; map < out.layout.objects.size(); ++map) {
        const DwgMapEntry& entry = out.layout.objects[map];
        const auto outcome =
            decoder.decode(entry, record, DwgObjectDecoder::Pass::DeferEntityFields);
        if (!decoder.checkValueMatched()) ++out.checkValueMismatches;
        const auto notRead = [&] {
            const std::string census = decoder.typeName(record.type);
            ++out.notRead[census.empty() ? std::string(record.dxfName) : census];
        };
        switch (outcome) {
            case DwgObjectDecoder::Outcome::Damaged:
                return DwgError{static_cast<std::uint64_t>(entry.offset), decoder.error()};
            case DwgObjectDecoder::Outcome::Unreadable:
                ++out.unreadable;
                unreadable.emplace_back(map, decoder.error());
                notRead();
                continue;
            case DwgObjectDecoder::Outcome::NotDecoded:
                notRead();
                continue;
            case DwgObjectDecoder::Outcome::Deferred:
                places.push_back(
                    {record.handle, map, static_cast<DwgDxfWriter::Ref>(pending.size()), true});
                pending.push_back(
                    {record.handle, record.owner, map, record.type, record.entityMode, false});
                continue;
            case DwgObjectDecoder::Outcome::Decoded:
                break;
        }
        places.push_back(
            {record.handle, map, static_cast<DwgDxfWriter::Ref>(records.size()), false});
        // A copy sized to what it holds; `record` keeps its room for the next one.
        records.push_back(record);
    }
    // By handle; a handle listed twice reads once, as first listed.
    const auto before = [](const Place& a, const Place& b) {
        return a.handle != b.handle ? a.handle < b.handle : a.map < b.map;
    };
    if (!std::is_sorted(places.begin(), places.end(), before)) {
        std::sort(places.begin(), places.end(), before);
    }
    std::vector<DwgDxfWriter::Ref> order;
    order.reserve(places.size());
    const auto base = static_cast<DwgDxfWriter::Ref>(records.size());
    std::map<int, int> readByType;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (i > 0 && places[i].handle == places[i - 1].handle) {
            // A later listing of a handle is dropped; a pending one is never decoded again.
            if (places[i].isPending) pending[places[i].ref].decoded = true;
            continue;
        }
        if (places[i].isPending) {
            order.push_back(base + places[i].ref);
        } else {
            order.push_back(places[i].ref);
            ++readByType[records[places[i].ref].type];
        }
    }
    const DwgHeaderVariables header = readHeaderVariables(bytes, out.layout);
    if (!header.complete) out.layout.warnings.push_back("the header variables do not read");
    out.dxf = DwgDxfWriter(decoder, out, header, records, pending, std::move(order), readByType,
                           unreadable)
                  .write();
    for (const auto& [type, count] : readByType) out.read[decoder.typeName(type)] += count;
    // The first few records that did not read, in the order of the file.
    std::sort(unreadable.begin(), unreadable.end());
    for (std::size_t i = 0; i < unreadable.size() && i < 10; ++i) {
        out.unreadableMessages.push_back(std::move(unreadable[i].second));
    }
    return std::nullopt;
}

}  // namespace cad::db::dwg
