// The non-graphical objects as DWG records: dictionaries, groups, extended records,
// multiline styles, layouts, scales, draw-order tables and dictionary variables.
#include <algorithm>
#include <cmath>
#include <tuple>

#include "cad/db/dwg/DwgEncoder.h"
#include "cad/db/dwg/DwgValues.h"

namespace cad::db::dwg {

bool DwgEncoder::encodeObject(EncodedRecord& r, const DwgItem& item, int type) {
    BitWriter& d = r.data;
    BitWriter& h = r.handles;
    switch (type) {
        case 0x2A:
            dictionary(r, item, type, false);
            return true;
        case 0x48: {
            commonObject(r, item, type);
            std::vector<std::uint64_t> members;
            for (const auto& [c, v] : item.tags) {
                if (c == 340) members.push_back(parseHandle(v));
            }
            d.text(item.text(300));
            d.bitShort(static_cast<std::int16_t>(item.integer(70)));
            d.bitShort(static_cast<std::int16_t>(item.integer(71, 1)));
            d.bitLong(static_cast<std::int32_t>(members.size()));
            for (const std::uint64_t m : members) h.handle(kHardPointer, m);
            return true;
        }
        case 0x4F: {
            commonObject(r, item, type);
            BitWriter values;
            bool inData = false;
            bool cloningFlag = false;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const int c = item.tags[i].first;
                const std::string& v = item.tags[i].second;
                if (c == 100) {
                    inData = v == "AcDbXrecord";
                    cloningFlag = inData;
                    continue;
                }
                // The cloning flag comes first after the marker; any later 280 is data.
                if (cloningFlag && c == 280) {
                    cloningFlag = false;
                    continue;
                }
                cloningFlag = false;
                if (!inData) continue;
                values.rawShort(static_cast<std::int16_t>(c));
                const auto little64 = [&values](std::uint64_t n) {
                    for (int b = 0; b < 8; ++b) values.rawChar(static_cast<std::uint8_t>(n >> (8 * b)));
                };
                switch (xrecordValueOf(c)) {
                    case XrecordValue::Text: {
                        const std::string bytes = sys::fromCaretForm(v);
                        values.rawShort(static_cast<std::int16_t>(bytes.size()));
                        values.rawChar(static_cast<std::uint8_t>(codePage_));
                        values.bytes(bytes);
                        break;
                    }
                    case XrecordValue::Point: {
                        ge::Point3d p{std::strtod(v.c_str(), nullptr), 0, 0};
                        if (i + 1 < item.tags.size() && item.tags[i + 1].first == c + 10) {
                            p.y = std::strtod(item.tags[++i].second.c_str(), nullptr);
                        }
                        if (i + 1 < item.tags.size() && item.tags[i + 1].first == c + 20) {
                            p.z = std::strtod(item.tags[++i].second.c_str(), nullptr);
                        }
                        values.point3Raw(p);
                        break;
                    }
                    case XrecordValue::Real: values.rawDouble(std::strtod(v.c_str(), nullptr)); break;
                    case XrecordValue::Short:
                        values.rawShort(static_cast<std::int16_t>(std::strtol(v.c_str(), nullptr, 10)));
                        break;
                    case XrecordValue::Long:
                        values.rawLong(static_cast<std::int32_t>(std::strtoll(v.c_str(), nullptr, 10)));
                        break;
                    case XrecordValue::Char:
                        values.rawChar(static_cast<std::uint8_t>(std::strtol(v.c_str(), nullptr, 10)));
                        break;
                    case XrecordValue::Int64:
                        little64(static_cast<std::uint64_t>(std::strtoll(v.c_str(), nullptr, 10)));
                        break;
                    case XrecordValue::Binary: {
                        const std::string bytes = bytesFromHex(v);
                        values.rawChar(static_cast<std::uint8_t>(std::min<std::size_t>(bytes.size(), 255)));
                        values.bytes(std::string_view(bytes).substr(0, 255));
                        break;
                    }
                    case XrecordValue::Handle:
                    case XrecordValue::Unknown: little64(parseHandle(v)); break;
                }
            }
            d.bitLong(static_cast<std::int32_t>(values.bytes().size()));
            d.bytes(values.bytes());
            if (r2000_) d.bitShort(static_cast<std::int16_t>(item.integer(280, 1)));
            return true;
        }
        case 0x49: {
            commonObject(r, item, type);
            d.text(item.text(2));
            d.text(item.text(3));
            d.bitShort(static_cast<std::int16_t>(mlineStyleFlagsToDwg(item.integer(70))));
            d.bitShort(static_cast<std::int16_t>(item.integer(62, 256)));
            d.bitDouble(item.real(51, 90.0) * kRadians);
            d.bitDouble(item.real(52, 90.0) * kRadians);
            // Elements: 49 offset, 62 colour, 6 linetype, after the 71 count.
            std::vector<std::tuple<double, int, std::string>> elements;
            bool counting = false;
            for (const auto& [c, v] : item.tags) {
                if (c == 71) counting = true;
                if (!counting) continue;
                if (c == 49) elements.emplace_back(std::strtod(v.c_str(), nullptr), 256, "BYLAYER");
                if (c == 62 && !elements.empty()) std::get<1>(elements.back()) = std::atoi(v.c_str());
                if (c == 6 && !elements.empty()) std::get<2>(elements.back()) = v;
            }
            d.rawChar(static_cast<std::uint8_t>(elements.size()));
            for (const auto& [offset, color, linetype] : elements) {
                d.bitDouble(offset);
                d.bitShort(static_cast<std::int16_t>(color));
                const std::string upper = sys::asciiUpper(linetype);
                int index = 32767;
                if (upper == "BYBLOCK") {
                    index = 32766;
                } else if (upper != "BYLAYER") {
                    const auto& order = linetypeOrder_;
                    const auto at = std::find(order.begin(), order.end(),
                                              nameToHandle("LTYPE", linetype));
                    if (at != order.end()) index = static_cast<int>(at - order.begin());
                }
                d.bitShort(static_cast<std::int16_t>(index));
            }
            return true;
        }
        case 0x50:
            commonObject(r, item, type);
            return true;
        case 0x52: {
            if (!r2000_) return false;
            commonObject(r, item, type);
            constexpr std::string_view plot = "AcDbPlotSettings", layout = "AcDbLayout";
            d.text(item.textIn(plot, 1));
            d.text(item.textIn(plot, 2));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 70, 688)));
            for (int code = 40; code <= 45; ++code) d.bitDouble(item.realIn(plot, code));
            d.text(item.textIn(plot, 4));
            d.bitDouble(item.realIn(plot, 46));
            d.bitDouble(item.realIn(plot, 47));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 72, 1)));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 73)));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 74, 5)));
            d.bitDouble(item.realIn(plot, 48));
            d.bitDouble(item.realIn(plot, 49));
            d.bitDouble(item.realIn(plot, 140));
            d.bitDouble(item.realIn(plot, 141));
            d.text(item.textIn(plot, 6));
            d.bitDouble(item.realIn(plot, 142, 1.0));
            d.bitDouble(item.realIn(plot, 143, 1.0));
            d.text(item.textIn(plot, 7));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(plot, 75)));
            d.bitDouble(item.realIn(plot, 147, 1.0));
            d.bitDouble(item.realIn(plot, 148));
            d.bitDouble(item.realIn(plot, 149));
            d.text(item.textIn(layout, 1));
            d.bitLong(item.integerIn(layout, 71));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(layout, 70, 1)));
            d.point3Bit(item.pointIn(layout, 13));
            d.point2Raw(item.pointIn(layout, 10));
            d.point2Raw(item.pointIn(layout, 11, {12, 9, 0}));
            d.point3Bit(item.pointIn(layout, 12));
            d.point3Bit(item.pointIn(layout, 16, {1, 0, 0}));
            d.point3Bit(item.pointIn(layout, 17, {0, 1, 0}));
            d.bitDouble(item.realIn(layout, 146));
            d.bitShort(static_cast<std::int16_t>(item.integerIn(layout, 76)));
            d.point3Bit(item.pointIn(layout, 14));
            d.point3Bit(item.pointIn(layout, 15));
            const auto handleIn = [&](int code) {
                const std::string* v = item.findIn(layout, code);
                return v ? parseHandle(*v) : 0;
            };
            h.handle(kSoftPointer, handleIn(330));
            h.handle(kSoftPointer, handleIn(331));
            h.handle(kHardPointer, handleIn(346));
            h.handle(kHardPointer, handleIn(345));
            return true;
        }
        case 500: {
            commonObject(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(280)));
            d.text(item.text(1));
            return true;
        }
        case 501:
            dictionary(r, item, type, true);
            return true;
        case 502:
            commonObject(r, item, type);
            d.bitShort(0);
            d.text(item.text(300));
            d.bitDouble(item.real(140, 1.0));
            d.bitDouble(item.real(141, 1.0));
            d.bit(item.integer(290) != 0);
            return true;
        case 503: {
            commonObject(r, item, type);
            std::vector<std::pair<std::uint64_t, std::uint64_t>> pairs;  // entity, sort key
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                if (item.tags[i].first == 331) pairs.emplace_back(parseHandle(item.tags[i].second), 0);
                if (item.tags[i].first == 5 && !pairs.empty()) {
                    pairs.back().second = parseHandle(item.tags[i].second);
                }
            }
            std::uint64_t block = 0;
            for (const auto& [c, v] : item.tags) {
                if (c == 330) {
                    block = parseHandle(v);
                    break;
                }
            }
            h.handle(kSoftPointer, block);
            d.bitLong(static_cast<std::int32_t>(pairs.size()));
            for (const auto& [entity, key] : pairs) {
                d.handle(0, key);
                h.handle(kSoftPointer, entity);
            }
            return true;
        }
        default:
            return false;
    }
}

// An image's file, or the link between it and an image that shows it.
void DwgEncoder::imageDefinition(EncodedRecord& r, const DwgItem& item, int type) {
    commonObject(r, item, type);
    if (classNameOf(type) == "IMAGEDEF_REACTOR") {
        r.data.bitLong(item.integer(90, 2));
        return;
    }
    r.data.bitLong(item.integer(90));
    r.data.point2Raw(item.point(10));
    r.data.text(item.text(1));
    r.data.bit(item.integer(280, 1) != 0);
    r.data.rawChar(static_cast<std::uint8_t>(item.integer(281)));
    r.data.point2Raw(item.point(11, {1, 1, 0}));
}

// Keys and their objects; R13 and R14 dictionaries have no flags, 2000 ones their cloning and
// whether they own their entries. One with a default links it last.
void DwgEncoder::dictionary(EncodedRecord& r, const DwgItem& item, int type, bool withDefault) {
    commonObject(r, item, type);
    std::vector<std::pair<std::string, std::uint64_t>> entries;
    for (std::size_t i = 0; i < item.tags.size(); ++i) {
        if (item.tags[i].first != 3) continue;
        std::uint64_t target = 0;
        if (i + 1 < item.tags.size() &&
            (item.tags[i + 1].first == 350 || item.tags[i + 1].first == 360)) {
            target = parseHandle(item.tags[i + 1].second);
        }
        entries.emplace_back(sys::fromCaretForm(item.tags[i].second), target);
    }
    r.data.bitLong(static_cast<std::int32_t>(entries.size()));
    if (r2000_) {
        r.data.bitShort(static_cast<std::int16_t>(item.integer(281, 1)));
        r.data.rawChar(static_cast<std::uint8_t>(item.integer(280)));
    } else {
        r.data.rawChar(0);
    }
    for (const auto& entry : entries) r.data.text(entry.first);
    for (const auto& entry : entries) r.handles.handle(kSoftOwner, entry.second);
    if (withDefault) r.handles.handle(kHardPointer, item.handleOf(340));
}

}  // namespace cad::db::dwg
