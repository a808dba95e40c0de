// The drawing entities as DWG records: texts, block references, polylines and their vertices,
// curves, faces and splines.
#include <array>
#include <cmath>

#include "cad/db/dwg/DwgEncoder.h"

namespace cad::db::dwg {

bool DwgEncoder::encodeEntity(EncodedRecord& r, const DwgItem& item, int type) {
    BitWriter& d = r.data;
    BitWriter& h = r.handles;
    const auto extrusion = [&] { return item.point(210, {0, 0, 1}); };
    switch (type) {
        case 0x01:
        case 0x02:
        case 0x03: {
            commonEntity(r, item, type);
            const ge::Point3d insertion = item.point(10);
            const std::string* alignX = item.find(11);
            const ge::Point3d alignment = item.point(11, insertion);
            const double oblique = item.real(51) * kRadians;
            const double rotation = item.real(50) * kRadians;
            const double width = item.real(41, 1.0);
            const int generation = item.integer(71);
            const int horizontal = item.integer(72);
            const std::string* verticalTag =
                type == 0x02 ? item.findIn("AcDbAttribute", 74)
                             : item.findIn("AcDbAttributeDefinition", 74);
            // TEXT carries its vertical alignment in a second AcDbText segment, attributes in
            // their own.
            int vertical = 0;
            if (type == 0x01) {
                int seen = 0;
                for (const auto& [c, v] : item.tags) {
                    if (c == 100 && v == "AcDbText") ++seen;
                    if (seen == 2 && c == 73) vertical = static_cast<int>(std::strtol(v.c_str(), nullptr, 10));
                }
            } else if (verticalTag) {
                vertical = static_cast<int>(std::strtol(verticalTag->c_str(), nullptr, 10));
            }
            if (!r2000_) {
                d.bitDouble(insertion.z);
                d.point2Raw(insertion);
                d.point2Raw(alignX ? alignment : insertion);
                d.point3Bit(extrusion());
                d.bitDouble(item.real(39));
                d.bitDouble(oblique);
                d.bitDouble(rotation);
                d.bitDouble(item.real(40, 1.0));
                d.bitDouble(width);
                d.text(item.text(1));
                d.bitShort(static_cast<std::int16_t>(generation));
                d.bitShort(static_cast<std::int16_t>(horizontal));
                d.bitShort(static_cast<std::int16_t>(vertical));
            }
            std::uint8_t flags = 0;
            if (insertion.z == 0.0) flags |= 0x01;
            if (!alignX) flags |= 0x02;
            if (oblique == 0.0) flags |= 0x04;
            if (rotation == 0.0) flags |= 0x08;
            if (width == 1.0) flags |= 0x10;
            if (generation == 0) flags |= 0x20;
            if (horizontal == 0) flags |= 0x40;
            if (vertical == 0) flags |= 0x80;
            if (r2000_) {
                d.rawChar(flags);
                if (!(flags & 0x01)) d.rawDouble(insertion.z);
                d.point2Raw(insertion);
                if (!(flags & 0x02)) {
                    d.defaultDouble(alignment.x, insertion.x);
                    d.defaultDouble(alignment.y, insertion.y);
                }
                d.extrusion(extrusion());
                d.thickness(item.real(39));
                if (!(flags & 0x04)) d.rawDouble(oblique);
                if (!(flags & 0x08)) d.rawDouble(rotation);
                d.rawDouble(item.real(40, 1.0));
                if (!(flags & 0x10)) d.rawDouble(width);
                d.text(item.text(1));
                if (!(flags & 0x20)) d.bitShort(static_cast<std::int16_t>(generation));
                if (!(flags & 0x40)) d.bitShort(static_cast<std::int16_t>(horizontal));
                if (!(flags & 0x80)) d.bitShort(static_cast<std::int16_t>(vertical));
            }
            if (type != 0x01) {
                d.text(item.text(2));
                d.bitShort(0);
                d.rawChar(static_cast<std::uint8_t>(item.integer(70)));
                if (type == 0x03) d.text(item.text(3));
            }
            std::uint64_t style = nameToHandle("STYLE", item.text(7, "Standard"));
            h.handle(kHardPointer, style);
            return true;
        }
        case 0x04:
            commonEntity(r, item, type);
            d.text(item.text(2));
            return true;
        case 0x05:
        case 0x06:
            commonEntity(r, item, type);
            return true;
        case 0x07: {
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            const double sx = item.real(41, 1.0), sy = item.real(42, 1.0), sz = item.real(43, 1.0);
            if (!r2000_) {
                d.point3Bit({sx, sy, sz});
            } else if (sx == 1.0 && sy == 1.0 && sz == 1.0) {
                d.twoBits(3);
            } else if (sx == 1.0) {
                d.twoBits(1);
                d.defaultDouble(sy, 1.0);
                d.defaultDouble(sz, 1.0);
            } else if (sx == sy && sx == sz) {
                d.twoBits(2);
                d.rawDouble(sx);
            } else {
                d.twoBits(0);
                d.rawDouble(sx);
                d.defaultDouble(sy, sx);
                d.defaultDouble(sz, sx);
            }
            d.bitDouble(item.real(50) * kRadians);
            d.point3Bit(extrusion());
            const auto [attributes, seqend] = childrenOf(item, "ATTRIB");
            const bool hasAttributes = !attributes.empty() && seqend != 0;
            d.bit(hasAttributes);
            h.handle(kHardPointer, nameToHandle("BLOCK_RECORD", item.text(2)));
            if (hasAttributes) {
                h.handle(kSoftPointer, attributes.front());
                h.handle(kSoftPointer, attributes.back());
                h.handle(kHardOwner, seqend);
            }
            return true;
        }
        case 0x0A: {
            commonEntity(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(70)));
            d.point3Bit(item.point(10));
            const double start = item.real(40), end = item.real(41);
            if (start == end && start != 0.0) {
                d.bitDouble(-start);
            } else {
                d.bitDouble(start);
                d.bitDouble(end);
            }
            d.bitDouble(item.real(42));
            d.bitDouble(item.real(50) * kRadians);
            return true;
        }
        case 0x0B:
        case 0x0C:
        case 0x0D:
            // The kind of vertex is its type here, not a flag.
            commonEntity(r, item, type);
            d.rawChar(static_cast<std::uint8_t>(item.integer(70) & ~(32 | 64 | 128)));
            d.point3Bit(item.point(10));
            return true;
        case 0x0E:
            commonEntity(r, item, type);
            for (int code = 71; code <= 74; ++code) {
                d.bitShort(static_cast<std::int16_t>(item.integer(code)));
            }
            return true;
        case 0x1D:
        case 0x1E: {
            commonEntity(r, item, type);
            if (type == 0x1D) {
                d.bitShort(static_cast<std::int16_t>(item.integer(71)));
                d.bitShort(static_cast<std::int16_t>(item.integer(72)));
            } else {
                d.bitShort(static_cast<std::int16_t>(item.integer(70) & ~16));
                d.bitShort(static_cast<std::int16_t>(item.integer(75)));
                for (int code = 71; code <= 74; ++code) {
                    d.bitShort(static_cast<std::int16_t>(item.integer(code)));
                }
            }
            vertexLinks(r, item);
            return true;
        }
        case 0x0F:
        case 0x10: {
            commonEntity(r, item, type);
            const int flags = item.integer(70);
            if (type == 0x0F) {
                d.bitShort(static_cast<std::int16_t>(flags));
                d.bitShort(static_cast<std::int16_t>(item.integer(75)));
                d.bitDouble(item.real(40));
                d.bitDouble(item.real(41));
                d.thickness(item.real(39));
                d.bitDouble(item.point(10).z);
                d.extrusion(extrusion());
            } else {
                const int curve = item.integer(75);
                d.rawChar(static_cast<std::uint8_t>(curve == 5 ? 1 : curve == 6 ? 2 : 0));
                d.rawChar(static_cast<std::uint8_t>(flags & 1));
            }
            vertexLinks(r, item);
            return true;
        }
        case 0x11:
        case 0x12:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.bitDouble(item.real(40));
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            if (type == 0x11) {
                d.bitDouble(item.real(50) * kRadians);
                d.bitDouble(item.real(51) * kRadians);
            }
            return true;
        case 0x13: {
            commonEntity(r, item, type);
            const ge::Point3d start = item.point(10), end = item.point(11);
            const bool zeroZ = start.z == 0.0 && end.z == 0.0;
            if (!r2000_) {
                d.point3Bit(start);
                d.point3Bit(end);
            } else {
                d.bit(zeroZ);
                d.rawDouble(start.x);
                d.defaultDouble(end.x, start.x);
                d.rawDouble(start.y);
                d.defaultDouble(end.y, start.y);
                if (!zeroZ) {
                    d.rawDouble(start.z);
                    d.defaultDouble(end.z, start.z);
                }
            }
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            return true;
        }
        case 0x1B:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.thickness(item.real(39));
            d.extrusion(extrusion());
            d.bitDouble(item.real(50) * kRadians);
            return true;
        case 0x1F:
        case 0x20: {
            commonEntity(r, item, type);
            d.thickness(item.real(39));
            d.bitDouble(item.point(10).z);
            for (int i = 0; i < 4; ++i) d.point2Raw(item.point(10 + i));
            d.extrusion(extrusion());
            return true;
        }
        case 0x1C: {
            commonEntity(r, item, type);
            std::array<ge::Point3d, 4> corners;
            for (int i = 0; i < 4; ++i) corners[i] = item.point(10 + i);
            const int flags = item.integer(70);
            if (!r2000_) {
                for (const ge::Point3d& corner : corners) d.point3Bit(corner);
                d.bitShort(static_cast<std::int16_t>(flags));
                return true;
            }
            d.bit(flags == 0);
            d.bit(corners[0].z == 0.0);
            d.rawDouble(corners[0].x);
            d.rawDouble(corners[0].y);
            if (corners[0].z != 0.0) d.rawDouble(corners[0].z);
            for (int i = 1; i < 4; ++i) {
                d.defaultDouble(corners[i].x, corners[i - 1].x);
                d.defaultDouble(corners[i].y, corners[i - 1].y);
                d.defaultDouble(corners[i].z, corners[i - 1].z);
            }
            if (flags != 0) d.bitShort(static_cast<std::int16_t>(flags));
            return true;
        }
        case 0x24: {
            commonEntity(r, item, type);
            std::vector<double> knots, weights;
            std::vector<ge::Point3d> controls, fits;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const int c = item.tags[i].first;
                const double v = std::strtod(item.tags[i].second.c_str(), nullptr);
                if (c == 40) knots.push_back(v);
                if (c == 41) weights.push_back(v);
                if (c == 10) controls.push_back({v, 0, 0});
                if (c == 20 && !controls.empty()) controls.back().y = v;
                if (c == 30 && !controls.empty()) controls.back().z = v;
                if (c == 11) fits.push_back({v, 0, 0});
                if (c == 21 && !fits.empty()) fits.back().y = v;
                if (c == 31 && !fits.empty()) fits.back().z = v;
            }
            const int flags = item.integer(70);
            const bool byControlPoints = !controls.empty();
            d.bitLong(byControlPoints ? 1 : 2);
            d.bitLong(item.integer(71, 3));
            const bool weighted = weights.size() == controls.size() && !weights.empty();
            if (byControlPoints) {
                d.bit(flags & 4);
                d.bit(flags & 1);
                d.bit(flags & 2);
                d.bitDouble(item.real(42, 1e-10));
                d.bitDouble(item.real(43, 1e-10));
                d.bitLong(static_cast<std::int32_t>(knots.size()));
                d.bitLong(static_cast<std::int32_t>(controls.size()));
                d.bit(weighted);
                for (const double k : knots) d.bitDouble(k);
                for (std::size_t i = 0; i < controls.size(); ++i) {
                    d.point3Bit(controls[i]);
                    if (weighted) d.bitDouble(weights[i]);
                }
            } else {
                d.bitDouble(item.real(44, 1e-10));
                d.point3Bit(item.point(12));
                d.point3Bit(item.point(13));
                d.bitLong(static_cast<std::int32_t>(fits.size()));
                for (const ge::Point3d& p : fits) d.point3Bit(p);
            }
            return true;
        }
        case 0x2F: {
            commonEntity(r, item, type);
            const long lines = item.integer(73);
            long vertices = 0;
            for (const auto& [c, v] : item.tags) vertices += c == 11 ? 1 : 0;
            d.bitDouble(item.real(40, 1.0));
            d.rawChar(static_cast<std::uint8_t>(item.integer(70)));
            d.point3Bit(item.point(10));
            d.point3Bit(extrusion());
            d.bitShort(static_cast<std::int16_t>(item.integer(71, 1)));
            d.rawChar(static_cast<std::uint8_t>(lines));
            d.bitShort(static_cast<std::int16_t>(vertices));
            // Each vertex with its directions, then per line of the style its dash and fill
            // parameters, in the order DXF lays them out.
            std::size_t at = 0;
            while (at < item.tags.size() && item.tags[at].first != 11) ++at;
            DwgItemCursor t(item.tags, at);
            for (long v = 0; v < vertices; ++v) {
                t.seek(11);
                d.point3Bit(t.point(11));
                d.point3Bit(t.point(12));
                d.point3Bit(t.point(13));
                for (long l = 0; l < lines; ++l) {
                    for (const int code : {74, 75}) {
                        const long count = t.integer(code);
                        d.bitShort(static_cast<std::int16_t>(count));
                        for (long i = 0; i < count; ++i) d.bitDouble(t.real(code - 33));
                    }
                }
            }
            h.handle(kHardPointer, item.handleOf(340));
            return true;
        }
        case 0x28:
        case 0x29:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11));
            return true;
        case 0x23:
            commonEntity(r, item, type);
            d.point3Bit(item.point(10));
            d.point3Bit(item.point(11));
            d.point3Bit(extrusion());
            d.bitDouble(item.real(40, 1.0));
            d.bitDouble(item.real(41));
            d.bitDouble(item.real(42, 2 * std::numbers::pi));
            return true;
        case 0x4D: {
            commonEntity(r, item, type);
            std::vector<ge::Point3d> points;
            std::vector<double> bulges, starts, ends;
            bool anyBulge = false, anyWidth = false;
            for (std::size_t i = 0; i < item.tags.size(); ++i) {
                const auto& [c, v] = item.tags[i];
                if (c == 10) {
                    points.push_back({std::strtod(v.c_str(), nullptr), 0, 0});
                    bulges.push_back(0.0);
                    starts.push_back(0.0);
                    ends.push_back(0.0);
                } else if (points.empty()) {
                    continue;
                } else if (c == 20) {
                    points.back().y = std::strtod(v.c_str(), nullptr);
                } else if (c == 42) {
                    bulges.back() = std::strtod(v.c_str(), nullptr);
                    anyBulge = anyBulge || bulges.back() != 0.0;
                } else if (c == 40) {
                    starts.back() = std::strtod(v.c_str(), nullptr);
                    anyWidth = anyWidth || starts.back() != 0.0;
                } else if (c == 41) {
                    ends.back() = std::strtod(v.c_str(), nullptr);
                    anyWidth = anyWidth || ends.back() != 0.0;
                }
            }
            const int dxfFlags = item.integer(70);
            const std::string* constant = item.find(43);
            const double elevation = item.real(38), thickness = item.real(39);
            const ge::Point3d normal = extrusion();
            const bool normalSet = !(normal.x == 0.0 && normal.y == 0.0 && normal.z == 1.0);
            int flags = 0;
            if (normalSet) flags |= 1;
            if (thickness != 0.0) flags |= 2;
            if (constant) flags |= 4;
            if (elevation != 0.0) flags |= 8;
            if (anyBulge) flags |= 16;
            if (anyWidth) flags |= 32;
            if (dxfFlags & 128) flags |= 256;
            if (dxfFlags & 1) flags |= 512;
            d.bitShort(static_cast<std::int16_t>(flags));
            if (flags & 4) d.bitDouble(std::strtod(constant->c_str(), nullptr));
            if (flags & 8) d.bitDouble(elevation);
            if (flags & 2) d.bitDouble(thickness);
            if (flags & 1) d.point3Bit(normal);
            d.bitLong(static_cast<std::int32_t>(points.size()));
            if (flags & 16) d.bitLong(static_cast<std::int32_t>(points.size()));
            if (flags & 32) d.bitLong(static_cast<std::int32_t>(points.size()));
            for (std::size_t i = 0; i < points.size(); ++i) {
                if (i == 0 || !r2000_) {
                    d.point2Raw(points[i]);
                } else {
                    d.defaultDouble(points[i].x, points[i - 1].x);
                    d.defaultDouble(points[i].y, points[i - 1].y);
                }
            }
            if (flags & 16) {
                for (const double b : bulges) d.bitDouble(b);
            }
            if (flags & 32) {
                for (std::size_t i = 0; i < points.size(); ++i) {
                    d.bitDouble(starts[i]);
                    d.bitDouble(ends[i]);
                }
            }
            return true;
        }
        default:
            return false;
    }
}

void DwgEncoder::vertexLinks(EncodedRecord& r, const DwgItem& item) {
    const auto [vertices, seqend] = childrenOf(item, "VERTEX");
    r.handles.handle(kSoftPointer, vertices.empty() ? 0 : vertices.front());
    r.handles.handle(kSoftPointer, vertices.empty() ? 0 : vertices.back());
    r.handles.handle(kHardOwner, seqend);
}

}  // namespace cad::db::dwg
