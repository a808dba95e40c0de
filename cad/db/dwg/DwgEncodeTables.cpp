// The symbol tables as DWG records: the control object of each table, and the block, layer,
// text style, linetype, dimension style, view, viewport, coordinate system and application
// records.
#include <cmath>
#include <map>

#include "cad/db/dwg/DwgEncoder.h"
#include "cad/db/dwg/DwgValues.h"

namespace cad::db::dwg {

bool DwgEncoder::encodeTableRecord(EncodedRecord& r, const DwgItem& item, int type) {
    BitWriter& d = r.data;
    BitWriter& h = r.handles;
    switch (type) {
        case 0x31: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            const DwgItem* begin = byHandle_[blockEnds_[item.handle].first];
            const int blockFlags = begin ? begin->integer(70) : 0;
            d.bit(blockFlags & 1);
            d.bit(blockFlags & 2);
            d.bit(blockFlags & 4);
            d.bit(blockFlags & 8);
            if (r2000_) d.bit(true);  // loaded
            d.point3Bit(begin ? begin->point(10) : ge::Point3d{});
            d.text(begin ? begin->text(1) : std::string());
            std::string preview;
            for (const auto& [c, v] : item.tags) {
                if (c == 310) preview += bytesFromHex(v);
            }
            if (r2000_) {
                d.rawChar(0);  // no insert list
                d.text({});
                d.bitLong(static_cast<std::int32_t>(preview.size()));
                d.bytes(preview);
            }
            h.handle(kHardPointer, 0);
            h.handle(kHardOwner, blockEnds_[item.handle].first);
            std::vector<std::uint64_t> entities;
            for (const std::uint64_t e : owned_[item.handle]) {
                const DwgItem* c = byHandle_[e];
                if (c && c->type != "ATTRIB" && c->type != "VERTEX" && c->type != "SEQEND") {
                    entities.push_back(e);
                }
            }
            if (!(blockFlags & 4) && !(blockFlags & 8)) {
                h.handle(kSoftPointer, entities.empty() ? 0 : entities.front());
                h.handle(kSoftPointer, entities.empty() ? 0 : entities.back());
            }
            h.handle(kHardOwner, blockEnds_[item.handle].second);
            if (r2000_) h.handle(kHardPointer, item.handleOf(340));
            return true;
        }
        case 0x33: {
            commonObject(r, item, type);
            int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            const int color = item.integer(62, 7);
            int values = 0;
            if (flags & 1) values |= 1;
            if (color < 0) values |= 2;
            if (flags & 2) values |= 4;
            if (flags & 4) values |= 8;
            if (item.integer(290, 1) != 0) values |= 16;
            values |= lineweightIndex(item.integer(370, -3)) << 5;
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(values));
            } else {
                d.bit(flags & 1);
                d.bit(color >= 0);
                d.bit(flags & 2);
                d.bit(flags & 4);
            }
            d.bitShort(static_cast<std::int16_t>(std::abs(color)));
            h.handle(kHardPointer, 0);
            if (r2000_) h.handle(kHardPointer, item.handleOf(390));
            h.handle(kHardPointer, nameToHandle("LTYPE", item.text(6, "Continuous")));
            return true;
        }
        case 0x35: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            d.bit(flags & 4);
            d.bit(flags & 1);
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41, 1.0));
            d.bitDouble(item.real(50) * kRadians);
            d.rawChar(static_cast<std::uint8_t>(item.integer(71)));
            d.bitDouble(item.real(42, 2.5));
            d.text(item.text(3));
            d.text(item.text(4));
            h.handle(kHardPointer, 0);
            return true;
        }
        case 0x39: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.text(item.text(3));
            d.bitDouble(item.real(40));
            d.rawChar(static_cast<std::uint8_t>(item.integer(72, 65)));
            std::vector<double> dashes;
            for (const auto& [c, v] : item.tags) {
                if (c == 49) dashes.push_back(std::strtod(v.c_str(), nullptr));
            }
            d.rawChar(static_cast<std::uint8_t>(dashes.size()));
            for (const double dash : dashes) {
                d.bitDouble(dash);
                d.bitShort(0);
                d.rawDouble(0.0);
                d.rawDouble(0.0);
                d.bitDouble(1.0);
                d.bitDouble(0.0);
                d.bitShort(0);
            }
            d.bytes(std::string(256, '\0'));
            h.handle(kHardPointer, 0);
            for (std::size_t i = 0; i < dashes.size(); ++i) h.handle(kHardPointer, 0);
            return true;
        }
        case 0x45: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            const auto real = [&](int code, double fallback) { d.bitDouble(item.real(code, fallback)); };
            const auto flag = [&](int code, int fallback) { d.bit(item.integer(code, fallback) != 0); };
            const auto small = [&](int code, int fallback) {
                d.bitShort(static_cast<std::int16_t>(item.integer(code, fallback)));
            };
            if (!r2000_) {
                const auto byte = [&](int code, int fallback) {
                    d.rawChar(static_cast<std::uint8_t>(item.integer(code, fallback)));
                };
                for (const auto& [code, fallback] :
                     {std::pair{71, 0}, {72, 0}, {73, 1}, {74, 1}, {75, 0}, {76, 0}, {170, 0},
                      {172, 0}, {173, 0}, {174, 0}, {175, 0}}) {
                    flag(code, fallback);
                }
                byte(171, 2);
                byte(78, 0);
                flag(281, 0);
                flag(282, 0);
                byte(283, 1);
                byte(280, 0);
                byte(287, 3);
                flag(288, 0);
                byte(284, 0);
                byte(285, 0);
                byte(286, 0);
                byte(77, 0);
                for (const auto& [code, fallback] :
                     {std::pair{270, 2}, {275, 0}, {271, 4}, {272, 4}, {273, 2}, {274, 2}}) {
                    small(code, fallback);
                }
                const std::pair<int, double> reals[] = {
                    {40, 1.0},  {41, 2.5},  {42, 0.625}, {43, 3.75},  {44, 1.25}, {45, 0.0},
                    {46, 0.0},  {47, 0.0},  {48, 0.0},   {140, 2.5},  {141, 2.5}, {142, 0.0},
                    {143, 25.4}, {144, 1.0}, {145, 0.0}, {146, 1.0}, {147, 0.625}};
                for (const auto& [code, fallback] : reals) real(code, fallback);
                d.text(item.text(3));
                d.text(item.text(4));
                // R14 names the arrow blocks; 2000 points at them.
                for (int code = 342; code <= 344; ++code) {
                    const DwgItem* block = byHandle_[item.handleOf(code)];
                    d.text(block ? block->text(2) : std::string());
                }
                small(176, 0);
                small(177, 0);
                small(178, 0);
                d.bit(false);
                h.handle(kHardPointer, 0);
                h.handle(kHardPointer, item.handleOf(340));
                return true;
            }
            d.text(item.text(3));
            d.text(item.text(4));
            const std::pair<int, double> sizes[] = {{40, 1.0}, {41, 2.5}, {42, 0.625},
                                                     {43, 3.75}, {44, 1.25}, {45, 0.0},
                                                     {46, 0.0}, {47, 0.0}, {48, 0.0}};
            for (const auto& [code, fallback] : sizes) real(code, fallback);
            for (const auto& [code, fallback] : {std::pair{71, 0}, {72, 0}, {73, 1}, {74, 1},
                                                 {75, 0}, {76, 0}}) {
                flag(code, fallback);
            }
            small(77, 0);
            small(78, 0);
            small(79, 0);
            const std::pair<int, double> more[] = {{140, 2.5}, {141, 2.5}, {142, 0.0},
                                                    {143, 25.4}, {144, 1.0}, {145, 0.0},
                                                    {146, 1.0}, {147, 0.625}, {148, 0.0}};
            for (const auto& [code, fallback] : more) real(code, fallback);
            flag(170, 0);
            small(171, 2);
            for (const int code : {172, 173, 174, 175}) flag(code, 0);
            for (const auto& [code, fallback] :
                 {std::pair{176, 0}, {177, 0}, {178, 0}, {179, 0}, {271, 4}, {272, 4}, {273, 2},
                  {274, 2}, {275, 0}, {276, 0}, {277, 2}, {278, 46}, {279, 0}, {280, 0}}) {
                small(code, fallback);
            }
            flag(281, 0);
            flag(282, 0);
            for (const int code : {283, 284, 285, 286}) small(code, 0);
            flag(288, 0);
            small(289, 3);
            small(371, -2);
            small(372, -2);
            d.bit(false);
            h.handle(kHardPointer, 0);
            h.handle(kHardPointer, item.handleOf(340));
            for (int code = 341; code <= 344; ++code) h.handle(kHardPointer, item.handleOf(code));
            return true;
        }
        case 0x41: {
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            // A viewport stores its width where DXF keeps the ratio of width to height.
            const int mode = item.integer(71);
            viewStart(r, item, item.real(41, 1.0) * item.real(40, 1.0), 12, 17, 16, 51);
            d.point2Raw(item.point(10));
            d.point2Raw(item.point(11, {1, 1, 0}));
            d.bit(mode & 8);
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 1000)));
            d.bit(item.integer(73, 1) != 0);
            const int icon = item.integer(74, 3);
            d.bit(icon & 1);
            d.bit(icon & 2);
            d.bit(item.integer(76) != 0);
            d.point2Raw(item.point(15));
            d.bit(item.integer(75) != 0);
            d.bit(item.integer(77) != 0);
            d.bitShort(static_cast<std::int16_t>(item.integer(78)));
            d.bitDouble(item.real(50) * kRadians);
            d.point2Raw(item.point(13));
            d.point2Raw(item.point(14, {10, 10, 0}));
            if (!r2000_) {
                h.handle(kHardPointer, 0);
                return true;
            }
            d.bit(false);
            d.bit(item.integer(65) != 0);
            ucsData(d, item);
            h.handle(kHardPointer, 0);
            h.handle(kHardPointer, item.handleOf(345));
            h.handle(kHardPointer, item.handleOf(346));
            return true;
        }
        case 0x3D: {
            commonObject(r, item, type);
            const int flags = item.integer(70);
            tableEntryStart(r, item, flags);
            viewStart(r, item, item.real(41, 1.0), 10, 12, 11, 50);
            d.bit(flags & 1);
            if (!r2000_) {
                h.handle(kHardPointer, 0);
                return true;
            }
            const bool ucs = item.integer(72) != 0;
            d.bit(ucs);
            h.handle(kHardPointer, 0);
            if (ucs) {
                ucsData(d, item);
                h.handle(kHardPointer, item.handleOf(346));
                h.handle(kHardPointer, item.handleOf(345));
            }
            return true;
        }
        case 0x3F:
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.point3Bit(item.point(12, {0, 1, 0}));
            h.handle(kHardPointer, 0);
            if (r2000_) {
                d.bitDouble(item.real(146));
                d.bitShort(static_cast<std::int16_t>(item.integer(79)));
                d.bitShort(0);
                h.handle(kHardPointer, item.handleOf(346));
                h.handle(kHardPointer, 0);
            }
            return true;
        case 0x43:
            commonObject(r, item, type);
            tableEntryStart(r, item, item.integer(70));
            d.rawChar(0);
            h.handle(kHardPointer, 0);
            return true;
        default:
            return false;
    }
}

void DwgEncoder::viewStart(EncodedRecord& r, const DwgItem& item, double width, int center,
                           int target, int direction, int twist) {
    BitWriter& d = r.data;
    const int mode = item.integer(71);
    d.bitDouble(item.real(40, 1.0));
    d.bitDouble(width);
    d.point2Raw(item.point(center));
    d.point3Bit(item.point(target));
    d.point3Bit(item.point(direction, {0, 0, 1}));
    d.bitDouble(item.real(twist) * kRadians);
    d.bitDouble(item.real(42, 50.0));
    d.bitDouble(item.real(43));
    d.bitDouble(item.real(44));
    d.bit(mode & 1);
    d.bit(mode & 2);
    d.bit(mode & 4);
    d.bit(!(mode & 16));
    if (r2000_) d.rawChar(static_cast<std::uint8_t>(item.integer(281)));
}

std::string DwgEncoder::control(const DwgItem& table) {
    const std::string name = table.text(2);
    static const std::map<std::string, int, std::less<>> kControls{
        {"BLOCK_RECORD", 0x30}, {"LAYER", 0x32}, {"STYLE", 0x34}, {"LTYPE", 0x38},
        {"VIEW", 0x3C},         {"UCS", 0x3E},   {"VPORT", 0x40}, {"APPID", 0x42},
        {"DIMSTYLE", 0x44}};
    const auto control = kControls.find(name);
    if (control == kControls.end()) return {};
    EncodedRecord r;
    r.data.setCompact(r2000_);
    number_ = 0;
    DwgItem copy = table;
    copy.owner = 0;
    commonObject(r, copy, control->second);
    std::vector<std::uint64_t> entries;
    std::uint64_t first = 0, second = 0;
    for (const std::uint64_t e : tables_[name].entries) {
        const DwgItem* entry = byHandle_[e];
        const std::string upper = entry ? sys::asciiUpper(entry->text(2)) : "";
        // Model and paper space, and ByLayer and ByBlock, follow the counted entries.
        if (name == "BLOCK_RECORD" && upper == "*MODEL_SPACE") {
            first = e;
        } else if (name == "BLOCK_RECORD" && upper == "*PAPER_SPACE") {
            second = e;
        } else if (name == "LTYPE" && upper == "BYLAYER") {
            first = e;
        } else if (name == "LTYPE" && upper == "BYBLOCK") {
            second = e;
        } else if (entry) {
            entries.push_back(e);
        }
    }
    r.data.bitLong(static_cast<std::int32_t>(entries.size()));
    for (const std::uint64_t e : entries) r.handles.handle(kSoftOwner, e);
    if (name == "LTYPE") linetypeOrder_ = entries;
    if (name == "BLOCK_RECORD" || name == "LTYPE") {
        r.handles.handle(kSoftOwner, first);
        r.handles.handle(kSoftOwner, second);
    }
    return finish(r);
}

}  // namespace cad::db::dwg
