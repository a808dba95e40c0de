// The annotation entities as DWG records: viewports, dimensions, hatches, leaders, tolerances
// and paragraph texts.
#include <cmath>

#include "cad/db/dwg/DwgEncoder.h"

namespace cad::db::dwg {

bool DwgEncoder::encodeAnnotation(EncodedRecord& r, const DwgItem& item, int type) {
    BitWriter& d = r.data;
    BitWriter& h = r.handles;
    const auto extrusion = [&] { return item.point(210, {0, 0, 1}); };
    switch (type) {
        case 0x22: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41));
            if (!r2000_) {
                h.handle(kHardPointer, 0);  // viewport entity header
                return true;
            }
            d.point3Bit(item.point(17));
            d.point3Bit(item.point(16, {0, 0, 1}));
            d.bitDouble(item.real(51) * kRadians);
            d.bitDouble(item.real(45, item.real(41)));
            d.bitDouble(item.real(42, 50.0));
            d.bitDouble(item.real(43));
            d.bitDouble(item.real(44));
            d.bitDouble(item.real(50) * kRadians);
            d.point2Raw(item.point(12));
            d.point2Raw(item.point(13));
            d.point2Raw(item.point(14, {10, 10, 0}));
            d.point2Raw(item.point(15, {10, 10, 0}));
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 100)));
            std::vector<std::uint64_t> frozen;
            for (const auto& [c, v] : item.tags) {
                if (c == 331) frozen.push_back(parseHandle(v));
            }
            d.bitLong(static_cast<std::int32_t>(frozen.size()));
            d.bitLong(item.integer(90));
            d.text(item.text(1));
            d.rawChar(static_cast<std::uint8_t>(item.integer(281)));
            d.bit(item.integer(74) != 0);
            d.bit(item.integer(71) != 0);
            ucsData(d, item);
            for (const std::uint64_t layer : frozen) h.handle(kHardPointer, layer);
            h.handle(kSoftPointer, item.handleOf(340));
            h.handle(kHardPointer, 0);  // viewport entity header
            h.handle(kHardPointer, item.handleOf(345));
            h.handle(kHardPointer, item.handleOf(346));
            return true;
        }
        case 0x14: case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A: {
            commonEntity(r, item, type);
            const int flags = item.integer(70);
            const ge::Point3d middle = item.point(11);
            d.point3Bit(extrusion());
            d.point2Raw(middle);
            d.bitDouble(middle.z);
            d.rawChar(static_cast<std::uint8_t>(((flags & 128) ? 0 : 1) | ((flags & 32) ? 2 : 0)));
            d.text(item.text(1));
            d.bitDouble(item.real(53) * kRadians);
            d.bitDouble(item.real(51) * kRadians);
            d.bitDouble(1.0);
            d.bitDouble(1.0);
            d.bitDouble(1.0);
            d.bitDouble(0.0);
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(71, 5)));
                d.bitShort(static_cast<std::int16_t>(item.integer(72, 1)));
                d.bitDouble(item.real(41, 1.0));
                d.bitDouble(item.real(42));
            }
            d.point2Raw(item.point(12));
            switch (type) {
                case 0x14:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.rawChar((flags & 64) ? 1 : 0);
                    break;
                case 0x15:
                case 0x16:
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(10));
                    d.bitDouble(item.real(52) * kRadians);
                    if (type == 0x15) d.bitDouble(item.real(50) * kRadians);
                    break;
                case 0x17:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(15));
                    break;
                case 0x18:
                    d.point2Raw(item.point(16));
                    d.point3Bit(item.point(13));
                    d.point3Bit(item.point(14));
                    d.point3Bit(item.point(15));
                    d.point3Bit(item.point(10));
                    break;
                default:
                    d.point3Bit(item.point(10));
                    d.point3Bit(item.point(15));
                    d.bitDouble(item.real(40));
                    break;
            }
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            h.handle(kHardPointer, nameToHandle("BLOCK_RECORD", item.text(2)));
            return true;
        }
        case 0x4E: {
            commonEntity(r, item, type);
            std::size_t start = 0;
            while (start < item.tags.size() &&
                   !(item.tags[start].first == 100 && item.tags[start].second == "AcDbHatch")) {
                ++start;
            }
            DwgItemCursor t(item.tags, start + 1);
            const double elevation = t.point(10).z;
            const ge::Point3d normal = t.next(210) ? t.point(210) : ge::Point3d{0, 0, 1};
            d.bitDouble(elevation);
            d.point3Bit(normal);
            d.text(item.text(2));
            t.seek(70);
            const bool solid = t.integer(70) != 0;
            d.bit(solid);
            d.bit(t.integer(71) != 0);
            const long paths = t.integer(91);
            d.bitLong(static_cast<std::int32_t>(paths));
            bool derived = false;
            for (long p = 0; p < paths; ++p) {
                t.seek(92);
                const long pathFlags = t.integer(92);
                if (pathFlags & 4) derived = true;
                d.bitLong(static_cast<std::int32_t>(pathFlags));
                if (!(pathFlags & 2)) {
                    const long edges = t.integer(93);
                    d.bitLong(static_cast<std::int32_t>(edges));
                    for (long e = 0; e < edges; ++e) {
                        const long kind = t.integer(72);
                        d.rawChar(static_cast<std::uint8_t>(kind));
                        if (kind == 1) {
                            d.point2Raw(t.point(10, false));
                            d.point2Raw(t.point(11, false));
                        } else if (kind == 2) {
                            d.point2Raw(t.point(10, false));
                            d.bitDouble(t.real(40));
                            d.bitDouble(t.real(50) * kRadians);
                            d.bitDouble(t.real(51) * kRadians);
                            d.bit(t.integer(73, 1) != 0);
                        } else if (kind == 3) {
                            d.point2Raw(t.point(10, false));
                            d.point2Raw(t.point(11, false));
                            d.bitDouble(t.real(40));
                            d.bitDouble(t.real(50) * kRadians);
                            d.bitDouble(t.real(51) * kRadians);
                            d.bit(t.integer(73, 1) != 0);
                        } else {
                            d.bitLong(static_cast<std::int32_t>(t.integer(94, 3)));
                            const bool rational = t.integer(73) != 0;
                            d.bit(rational);
                            d.bit(t.integer(74) != 0);
                            const long knots = t.integer(95);
                            const long controls = t.integer(96);
                            d.bitLong(static_cast<std::int32_t>(knots));
                            d.bitLong(static_cast<std::int32_t>(controls));
                            for (long k = 0; k < knots; ++k) d.bitDouble(t.real(40));
                            for (long c = 0; c < controls; ++c) {
                                d.point2Raw(t.point(10, false));
                                if (rational) d.bitDouble(t.real(42, 1.0));
                            }
                            // Fit data (97 and on) came after 2000; it is not kept.
                            if (t.next(97)) {
                                const long fitCount = t.integer(97);
                                for (long f = 0; f < fitCount; ++f) t.point(11, false);
                                t.point(12, false);
                                t.point(13, false);
                            }
                        }
                    }
                } else {
                    const bool bulges = t.integer(72) != 0;
                    d.bit(bulges);
                    d.bit(t.integer(73) != 0);
                    const long vertices = t.integer(93);
                    d.bitLong(static_cast<std::int32_t>(vertices));
                    for (long v = 0; v < vertices; ++v) {
                        d.point2Raw(t.point(10, false));
                        const double bulge = t.real(42);
                        if (bulges) d.bitDouble(bulge);
                    }
                }
                const long sources = t.integer(97);
                d.bitLong(static_cast<std::int32_t>(sources));
                for (long s = 0; s < sources; ++s) h.handle(kSoftPointer, t.handle(330));
            }
            t.seek(75);
            d.bitShort(static_cast<std::int16_t>(t.integer(75)));
            d.bitShort(static_cast<std::int16_t>(t.integer(76, 1)));
            if (!solid) {
                d.bitDouble(t.real(52) * kRadians);
                d.bitDouble(t.real(41, 1.0));
                d.bit(t.integer(77) != 0);
                const long lines = t.integer(78);
                d.bitShort(static_cast<std::int16_t>(lines));
                for (long l = 0; l < lines; ++l) {
                    d.bitDouble(t.real(53) * kRadians);
                    d.bitDouble(t.real(43));
                    d.bitDouble(t.real(44));
                    d.bitDouble(t.real(45));
                    d.bitDouble(t.real(46));
                    const long dashes = t.integer(79);
                    d.bitShort(static_cast<std::int16_t>(dashes));
                    for (long k = 0; k < dashes; ++k) d.bitDouble(t.real(49));
                }
            }
            if (derived) d.bitDouble(t.real(47));
            t.seek(98);
            const long seeds = t.integer(98);
            d.bitLong(static_cast<std::int32_t>(seeds));
            for (long k = 0; k < seeds; ++k) d.point2Raw(t.point(10, false));
            return true;
        }
        case 0x2D: {
            commonEntity(r, item, type);
            std::vector<ge::Point3d> vertices;
            for (const auto& [c, v] : item.tags) {
                const double value = std::strtod(v.c_str(), nullptr);
                if (c == 10) vertices.push_back({value, 0, 0});
                if (c == 20 && !vertices.empty()) vertices.back().y = value;
                if (c == 30 && !vertices.empty()) vertices.back().z = value;
            }
            d.bit(false);
            d.bitShort(static_cast<std::int16_t>(item.integer(73, 3)));
            d.bitShort(static_cast<std::int16_t>(item.integer(72)));
            d.bitLong(static_cast<std::int32_t>(vertices.size()));
            for (const ge::Point3d& p : vertices) d.point3Bit(p);
            d.point3Bit(vertices.empty() ? ge::Point3d{} : vertices.front());
            d.point3Bit(extrusion());
            d.point3Bit(item.point(211, {1, 0, 0}));
            d.point3Bit(item.point(212));
            d.point3Bit(item.point(213));
            if (!r2000_) d.bitDouble(0.0);  // the style's gap when it was made
            d.bitDouble(item.real(40));
            d.bitDouble(item.real(41));
            d.bit(item.integer(74) != 0);
            d.bit(item.integer(71, 1) != 0);
            if (!r2000_) {
                d.bitShort(0);
                d.bitDouble(0.0);
                d.bit(false);
                d.bit(false);
                d.bitShort(0);
                d.bitShort(0);
                d.bit(false);
                d.bit(false);
            } else {
                d.bitShort(0);
                d.bit(false);
                d.bit(false);
            }
            h.handle(kHardPointer, item.handleOf(340));
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            return true;
        }
        case 0x2E:
            commonEntity(r, item, type);
            if (!r2000_) {
                d.bitShort(0);
                d.bitDouble(0.0);
                d.bitDouble(0.0);
            }
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.point3Bit(extrusion());
            d.text(item.text(1));
            h.handle(kHardPointer, nameToHandle("DIMSTYLE", item.text(3, "Standard")));
            return true;
        case 0x2C: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(extrusion());
            d.point3Bit(item.point(11, {1, 0, 0}));
            d.bitDouble(item.real(41));
            d.bitDouble(item.real(40, 1.0));
            d.bitShort(static_cast<std::int16_t>(item.integer(71, 1)));
            d.bitShort(static_cast<std::int16_t>(item.integer(72, 1)));
            d.bitDouble(0.0);
            d.bitDouble(0.0);
            std::string value;
            for (const auto& [c, v] : item.tags) {
                if (c == 3) value += v;
            }
            value += item.find(1) ? *item.find(1) : std::string();
            d.text(sys::fromCaretForm(value));
            if (r2000_) {
                d.bitShort(static_cast<std::int16_t>(item.integer(73, 1)));
                d.bitDouble(item.real(44, 1.0));
                d.bit(false);
            }
            h.handle(kHardPointer, nameToHandle("STYLE", item.text(7, "Standard")));
            return true;
        }
        default:
            return false;
    }
}

void DwgEncoder::raster(EncodedRecord& r, const DwgItem& item, int type) {
    commonEntity(r, item, type);
    BitWriter& d = r.data;
    d.bitLong(item.integer(90));
    d.point3Bit(item.point(10));
    d.point3Bit(item.point(11, {1, 0, 0}));
    d.point3Bit(item.point(12, {0, 1, 0}));
    d.point2Raw(item.point(13, {1, 1, 0}));
    d.bitShort(static_cast<std::int16_t>(item.integer(70, 7)));
    d.bit(item.integer(280) != 0);
    d.rawChar(static_cast<std::uint8_t>(item.integer(281, 50)));
    d.rawChar(static_cast<std::uint8_t>(item.integer(282, 50)));
    d.rawChar(static_cast<std::uint8_t>(item.integer(283)));
    std::vector<ge::Point3d> clip;
    for (const auto& [c, v] : item.tags) {
        if (c == 14) clip.push_back({std::strtod(v.c_str(), nullptr), 0, 0});
        if (c == 24 && !clip.empty()) clip.back().y = std::strtod(v.c_str(), nullptr);
    }
    // A rectangle is stored by its two corners, any other outline point by point.
    const bool rectangle = item.integer(71, 1) == 1 && clip.size() == 2;
    d.bitShort(rectangle ? 1 : 2);
    if (!rectangle) d.bitLong(static_cast<std::int32_t>(clip.size()));
    for (const ge::Point3d& p : clip) d.point2Raw(p);
    r.handles.handle(kHardPointer, item.handleOf(340));
    r.handles.handle(kHardOwner, item.handleOf(360));
}

}  // namespace cad::db::dwg
