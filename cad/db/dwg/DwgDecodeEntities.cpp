// The drawing entities of DWG records: texts, block references, the polylines and their
// vertices, curves, faces and splines, each written as the DXF tags of the same entity.
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "cad/db/dwg/DwgObjectDecoder.h"

namespace cad::db::dwg {

void DwgObjectDecoder::textFields(DwgRecord& r, int kind) {
    double elevation = 0.0;
    ge::Point3d insertion, alignment;
    ge::Vector3d extrusion{0, 0, 1};
    double thickness = 0.0, oblique = 0.0, rotation = 0.0, height = 0.0, width = 1.0;
    int generation = 0, horizontal = 0, vertical = 0;
    bool hasAlignment = true;
    std::string value;
    if (!r2000()) {
        elevation = data_.bitDouble();
        insertion = data_.point2Raw();
        alignment = data_.point2Raw();
        extrusion = data_.vector3Bit();
        thickness = data_.bitDouble();
        oblique = data_.bitDouble();
        rotation = data_.bitDouble();
        height = data_.bitDouble();
        width = data_.bitDouble();
        value = data_.text();
        generation = data_.bitShort();
        horizontal = data_.bitShort();
        vertical = data_.bitShort();
    } else {
        const std::uint8_t flags = data_.rawChar();
        if (!(flags & 0x01)) elevation = data_.rawDouble();
        insertion = data_.point2Raw();
        if (!(flags & 0x02)) {
            alignment = data_.point2Default(insertion);
        } else {
            hasAlignment = false;
        }
        extrusion = data_.extrusion(true);
        thickness = data_.thickness(true);
        if (!(flags & 0x04)) oblique = data_.rawDouble();
        if (!(flags & 0x08)) rotation = data_.rawDouble();
        height = data_.rawDouble();
        if (!(flags & 0x10)) width = data_.rawDouble();
        value = data_.text();
        if (!(flags & 0x20)) generation = data_.bitShort();
        if (!(flags & 0x40)) horizontal = data_.bitShort();
        if (!(flags & 0x80)) vertical = data_.bitShort();
    }
    insertion.z = elevation;
    alignment.z = elevation;
    std::string tag, prompt;
    int attributeFlags = 0, fieldLength = 0;
    if (kind != 0) {
        tag = data_.text();
        fieldLength = data_.bitShort();
        attributeFlags = data_.rawChar();
        if (kind == 2) prompt = data_.text();
    }
    const std::uint64_t style = ref();

    marker(r, "AcDbText");
    if (thickness != 0.0) real(r, 39, thickness);
    point(r, 10, insertion);
    real(r, 40, height);
    text(r, 1, value);
    if (rotation != 0.0) angle(r, 50, rotation);
    if (width != 1.0) real(r, 41, width);
    if (oblique != 0.0) angle(r, 51, oblique);
    nameTag(r, 7, style);
    if (generation != 0) integer(r, 71, generation);
    if (horizontal != 0) integer(r, 72, horizontal);
    if (hasAlignment && (horizontal != 0 || vertical != 0)) point(r, 11, alignment);
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    if (kind == 0) {
        marker(r, "AcDbText");
        if (vertical != 0) integer(r, 73, vertical);
        return;
    }
    // Attributes keep their vertical alignment in their own subclass, as 74.
    if (kind == 1) {
        marker(r, "AcDbAttribute");
    } else {
        marker(r, "AcDbAttributeDefinition");
        text(r, 3, prompt);
    }
    text(r, 2, tag);
    integer(r, 70, attributeFlags);
    if (fieldLength != 0) integer(r, 73, fieldLength);
    if (vertical != 0) integer(r, 74, vertical);
}

void DwgObjectDecoder::insertFields(DwgRecord& r, bool multiple) {
    const ge::Point3d insertion = data_.point3Bit();
    ge::Point3d scale{1, 1, 1};
    if (!r2000()) {
        scale = data_.point3Bit();
    } else {
        switch (data_.twoBits()) {
            case 0:
                scale.x = data_.rawDouble();
                scale.y = data_.defaultDouble(scale.x);
                scale.z = data_.defaultDouble(scale.x);
                break;
            case 1:
                scale.y = data_.defaultDouble(1.0);
                scale.z = data_.defaultDouble(1.0);
                break;
            case 2: scale.x = scale.y = scale.z = data_.rawDouble(); break;
            default: break;
        }
    }
    const double rotation = data_.bitDouble();
    const ge::Vector3d extrusion = data_.vector3Bit();
    const bool hasAttributes = data_.bit();
    int columns = 1, rows = 1;
    double columnSpacing = 0.0, rowSpacing = 0.0;
    if (multiple) {
        columns = data_.bitShort();
        rows = data_.bitShort();
        columnSpacing = data_.bitDouble();
        rowSpacing = data_.bitDouble();
    }
    const std::uint64_t block = ref();
    if (hasAttributes) {
        ref();  // first and last ATTRIB: their owner links tell the same
        ref();
        r.seqend = ref();
    }
    marker(r, multiple ? "AcDbMInsertBlock" : "AcDbBlockReference");
    if (hasAttributes) integer(r, 66, 1);
    nameTag(r, 2, block);
    point(r, 10, insertion);
    if (scale.x != 1.0) real(r, 41, scale.x);
    if (scale.y != 1.0) real(r, 42, scale.y);
    if (scale.z != 1.0) real(r, 43, scale.z);
    if (rotation != 0.0) angle(r, 50, rotation);
    if (multiple) {
        integer(r, 70, columns);
        integer(r, 71, rows);
        real(r, 44, columnSpacing);
        real(r, 45, rowSpacing);
    }
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
}

bool DwgObjectDecoder::entityFields(DwgRecord& r) {
    const bool r2k = r2000();
    switch (r.type) {
        case 0x01: textFields(r, 0); return true;
        case 0x02: textFields(r, 1); return true;
        case 0x03: textFields(r, 2); return true;
        case 0x04:
            r.name = data_.text();
            return true;
        case 0x05:
        case 0x06: return true;
        case 0x07: insertFields(r, false); return true;
        case 0x08: insertFields(r, true); return true;
        case 0x0A: {
            const int flags = data_.rawChar();
            const ge::Point3d p = data_.point3Bit();
            double start = data_.bitDouble(), end = start;
            if (start < 0.0) {
                start = end = -start;
            } else {
                end = data_.bitDouble();
            }
            const double bulge = data_.bitDouble();
            const double tangent = data_.bitDouble();
            marker(r, "AcDbVertex");
            marker(r, "AcDb2dVertex");
            point(r, 10, p);
            if (start != 0.0) real(r, 40, start);
            if (end != 0.0) real(r, 41, end);
            if (bulge != 0.0) real(r, 42, bulge);
            integer(r, 70, flags);
            if (flags & 2) angle(r, 50, tangent);
            return true;
        }
        case 0x0B:
        case 0x0C:
        case 0x0D: {
            const int flags = data_.rawChar();
            const ge::Point3d p = data_.point3Bit();
            marker(r, "AcDbVertex");
            marker(r, r.type == 0x0B   ? "AcDb3dPolylineVertex"
                      : r.type == 0x0C ? "AcDbPolygonMeshVertex"
                                       : "AcDbPolyFaceMeshVertex");
            point(r, 10, p);
            integer(r, 70, flags | (r.type == 0x0B ? 32 : r.type == 0x0C ? 64 : 192));
            return true;
        }
        case 0x0E: {
            marker(r, "AcDbFaceRecord");
            point(r, 10, {});
            integer(r, 70, 128);
            for (int code = 71; code <= 74; ++code) integer(r, code, data_.bitShort());
            return true;
        }
        case 0x0F: {
            const int flags = data_.bitShort();
            const int curve = data_.bitShort();
            const double start = data_.bitDouble();
            const double end = data_.bitDouble();
            const double thickness = data_.thickness(r2k);
            const double elevation = data_.bitDouble();
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDb2dPolyline");
            integer(r, 66, 1);
            point(r, 10, {0, 0, elevation});
            if (thickness != 0.0) real(r, 39, thickness);
            integer(r, 70, flags);
            if (start != 0.0) real(r, 40, start);
            if (end != 0.0) real(r, 41, end);
            if (curve != 0) integer(r, 75, curve);
            extrusionTags(r, extrusion);
            return true;
        }
        case 0x10: {
            const int spline = data_.rawChar();
            const int closed = data_.rawChar();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDb3dPolyline");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, 8 | (closed & 1) | ((spline & 3) ? 4 : 0));
            if (spline & 3) integer(r, 75, (spline & 1) ? 5 : 6);
            return true;
        }
        case 0x1D: {
            const int vertices = data_.bitShort();
            const int faces = data_.bitShort();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDbPolyFaceMesh");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, 64);
            integer(r, 71, vertices);
            integer(r, 72, faces);
            return true;
        }
        case 0x1E: {
            const int flags = data_.bitShort();
            const int curve = data_.bitShort();
            const int m = data_.bitShort(), n = data_.bitShort();
            const int mDensity = data_.bitShort(), nDensity = data_.bitShort();
            ref();
            ref();
            r.seqend = ref();
            marker(r, "AcDbPolygonMesh");
            integer(r, 66, 1);
            point(r, 10, {});
            integer(r, 70, flags | 16);
            integer(r, 71, m);
            integer(r, 72, n);
            integer(r, 73, mDensity);
            integer(r, 74, nDensity);
            integer(r, 75, curve);
            return true;
        }
        case 0x11:
        case 0x12: {
            const ge::Point3d center = data_.point3Bit();
            const double radius = data_.bitDouble();
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbCircle");
            if (thickness != 0.0) real(r, 39, thickness);
            point(r, 10, center);
            real(r, 40, radius);
            extrusionTags(r, extrusion);
            if (r.type == 0x11) {
                const double start = data_.bitDouble();
                const double end = data_.bitDouble();
                marker(r, "AcDbArc");
                angle(r, 50, start);
                angle(r, 51, end);
            }
            return true;
        }
        case 0x13: {
            ge::Point3d start, end;
            if (!r2k) {
                start = data_.point3Bit();
                end = data_.point3Bit();
            } else {
                const bool zeroZ = data_.bit();
                start.x = data_.rawDouble();
                end.x = data_.defaultDouble(start.x);
                start.y = data_.rawDouble();
                end.y = data_.defaultDouble(start.y);
                if (!zeroZ) {
                    start.z = data_.rawDouble();
                    end.z = data_.defaultDouble(start.z);
                }
            }
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbLine");
            if (thickness != 0.0) real(r, 39, thickness);
            point(r, 10, start);
            point(r, 11, end);
            extrusionTags(r, extrusion);
            return true;
        }
        case 0x1B: {
            const ge::Point3d p = data_.point3Bit();
            const double thickness = data_.thickness(r2k);
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            const double xAngle = data_.bitDouble();
            marker(r, "AcDbPoint");
            point(r, 10, p);
            if (thickness != 0.0) real(r, 39, thickness);
            extrusionTags(r, extrusion);
            if (xAngle != 0.0) angle(r, 50, xAngle);
            return true;
        }
        case 0x1C: {
            std::array<ge::Point3d, 4> corners;
            int flags = 0;
            if (!r2k) {
                for (auto& c : corners) c = data_.point3Bit();
                flags = data_.bitShort();
            } else {
                const bool noFlags = data_.bit();
                const bool zeroZ = data_.bit();
                corners[0].x = data_.rawDouble();
                corners[0].y = data_.rawDouble();
                if (!zeroZ) corners[0].z = data_.rawDouble();
                for (int i = 1; i < 4; ++i) {
                    corners[i].x = data_.defaultDouble(corners[i - 1].x);
                    corners[i].y = data_.defaultDouble(corners[i - 1].y);
                    corners[i].z = data_.defaultDouble(corners[i - 1].z);
                }
                if (!noFlags) flags = data_.bitShort();
            }
            marker(r, "AcDbFace");
            for (int i = 0; i < 4; ++i) point(r, 10 + i, corners[i]);
            if (flags != 0) integer(r, 70, flags);
            return true;
        }
        case 0x1F:
        case 0x20: {
            const double thickness = data_.thickness(r2k);
            const double elevation = data_.bitDouble();
            std::array<ge::Point3d, 4> corners;
            for (auto& c : corners) {
                c = data_.point2Raw();
                c.z = elevation;
            }
            const ge::Vector3d extrusion = data_.extrusion(r2k);
            marker(r, "AcDbTrace");
            for (int i = 0; i < 4; ++i) point(r, 10 + i, corners[i]);
            if (thickness != 0.0) real(r, 39, thickness);
            extrusionTags(r, extrusion);
            return true;
        }
        case 0x23: {
            const ge::Point3d center = data_.point3Bit();
            const ge::Point3d major = data_.point3Bit();
            const ge::Vector3d extrusion = data_.vector3Bit();
            const double ratio = data_.bitDouble();
            const double start = data_.bitDouble();
            const double end = data_.bitDouble();
            marker(r, "AcDbEllipse");
            point(r, 10, center);
            point(r, 11, major);
            extrusionTags(r, extrusion);
            real(r, 40, ratio);
            real(r, 41, start);
            real(r, 42, end);
            return true;
        }
        case 0x24: {
            const std::int32_t scenario = data_.bitLong();
            const std::int32_t degree = data_.bitLong();
            int flags = 8;  // planar, as DXF writers mark every spline drawn in a plane
            double knotTolerance = 0.0, controlTolerance = 0.0, fitTolerance = 0.0;
            ge::Point3d startTangent, endTangent;
            std::int32_t knots = 0, controls = 0, fits = 0;
            bool weighted = false;
            if (scenario == 2) {
                fitTolerance = data_.bitDouble();
                startTangent = data_.point3Bit();
                endTangent = data_.point3Bit();
                fits = data_.bitLong();
            } else if (scenario == 1) {
                if (data_.bit()) flags |= 4;
                if (data_.bit()) flags |= 1;
                if (data_.bit()) flags |= 2;
                knotTolerance = data_.bitDouble();
                controlTolerance = data_.bitDouble();
                knots = data_.bitLong();
                controls = data_.bitLong();
                weighted = data_.bit();
            } else {
                data_.fail();
                return true;
            }
            if (!fitsIn(knots) || !fitsIn(controls) || !fitsIn(fits)) return true;
            std::vector<double> knotList, weights;
            std::vector<ge::Point3d> controlPoints, fitPoints;
            for (std::int32_t i = 0; i < knots && !data_.failed(); ++i) {
                knotList.push_back(data_.bitDouble());
            }
            for (std::int32_t i = 0; i < controls && !data_.failed(); ++i) {
                controlPoints.push_back(data_.point3Bit());
                if (weighted) weights.push_back(data_.bitDouble());
            }
            for (std::int32_t i = 0; i < fits && !data_.failed(); ++i) {
                fitPoints.push_back(data_.point3Bit());
            }
            marker(r, "AcDbSpline");
            integer(r, 70, flags);
            integer(r, 71, degree);
            integer(r, 72, knots);
            integer(r, 73, controls);
            integer(r, 74, fits);
            // Splines by fit points store no knot or control tolerance; the usual ones stand.
            real(r, 42, scenario == 2 ? 1e-10 : knotTolerance);
            real(r, 43, scenario == 2 ? 1e-10 : controlTolerance);
            if (scenario == 2) {
                real(r, 44, fitTolerance);
                point(r, 12, startTangent);
                point(r, 13, endTangent);
            }
            for (const double k : knotList) real(r, 40, k);
            for (const double w : weights) real(r, 41, w);
            for (const ge::Point3d& p : controlPoints) point(r, 10, p);
            for (const ge::Point3d& p : fitPoints) point(r, 11, p);
            return true;
        }
        case 0x28:
        case 0x29: {
            const ge::Point3d base = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            marker(r, r.type == 0x28 ? "AcDbRay" : "AcDbXline");
            point(r, 10, base);
            point(r, 11, direction);
            return true;
        }
        case 0x2F: mlineFields(r); return true;
        case 0x4D: lwpolylineFields(r); return true;
        default: break;
    }
    // Built in from 2000; a class of that name before.
    if (r.type >= 500 && r.dxfName == "LWPOLYLINE") {
        lwpolylineFields(r);
        return true;
    }
    return false;
}

// A multiline: its vertices, each with the directions of its segment and its miter, and per
// line of its style the parameters of the segment's dashes and of its fill.
void DwgObjectDecoder::mlineFields(DwgRecord& r) {
    const double scale = data_.bitDouble();
    const int justification = data_.rawChar();
    const ge::Point3d base = data_.point3Bit();
    const ge::Point3d extrusion = data_.point3Bit();
    const int flags = data_.bitShort();  // 1 with vertices, 2 closed, as DXF has them
    const int lines = data_.rawChar();
    const int vertices = data_.bitShort();
    if (!fitsIn(vertices)) return;
    marker(r, "AcDbMline");
    std::vector<DwgTag> fields;
    std::swap(fields, r.tags);
    for (int v = 0; v < vertices && !data_.failed(); ++v) {
        point(r, 11, data_.point3Bit());
        point(r, 12, data_.point3Bit());
        point(r, 13, data_.point3Bit());
        for (int l = 0; l < lines && !data_.failed(); ++l) {
            for (const int code : {74, 75}) {
                const int count = data_.bitShort();
                if (!fitsIn(count)) return;
                integer(r, code, count);
                for (int i = 0; i < count && !data_.failed(); ++i) real(r, code - 33, data_.bitDouble());
            }
        }
    }
    const std::uint64_t style = ref();
    // The head goes before the vertices, which are read first.
    std::swap(fields, r.tags);
    nameTag(r, 2, style);
    if (style != 0) handleTag(r, 340, style);
    real(r, 40, scale);
    integer(r, 70, justification);
    integer(r, 71, flags);
    integer(r, 72, vertices);
    integer(r, 73, lines);
    point(r, 10, base);
    point(r, 210, extrusion);
    r.tags.insert(r.tags.end(), std::make_move_iterator(fields.begin()),
                  std::make_move_iterator(fields.end()));
}

void DwgObjectDecoder::lwpolylineFields(DwgRecord& r) {
    const bool r2k = r2000();
    const int flags = data_.bitShort();
    double constantWidth = 0.0, elevation = 0.0, thickness = 0.0;
    ge::Vector3d extrusion{0, 0, 1};
    if (flags & 4) constantWidth = data_.bitDouble();
    if (flags & 8) elevation = data_.bitDouble();
    if (flags & 2) thickness = data_.bitDouble();
    if (flags & 1) extrusion = data_.vector3Bit();
    const std::int32_t points = data_.bitLong();
    const std::int32_t bulges = (flags & 16) ? data_.bitLong() : 0;
    const std::int32_t widths = (flags & 32) ? data_.bitLong() : 0;
    // Counts beyond what the record could hold are damage, not drawings.
    const auto room = static_cast<std::int64_t>(data_.sizeInBits() / 2);
    if (points < 0 || bulges < 0 || widths < 0 || points > room || bulges > room ||
        widths > room) {
        data_.fail();
        return;
    }
    std::vector<ge::Point3d> vertices;
    for (std::int32_t i = 0; i < points && !data_.failed(); ++i) {
        if (i == 0 || !r2k) {
            vertices.push_back(data_.point2Raw());
        } else {
            vertices.push_back(data_.point2Default(vertices.back()));
        }
    }
    std::vector<double> bulgeList, startWidths, endWidths;
    for (std::int32_t i = 0; i < bulges && !data_.failed(); ++i) {
        bulgeList.push_back(data_.bitDouble());
    }
    for (std::int32_t i = 0; i < widths && !data_.failed(); ++i) {
        startWidths.push_back(data_.bitDouble());
        endWidths.push_back(data_.bitDouble());
    }
    marker(r, "AcDbPolyline");
    integer(r, 90, points);
    integer(r, 70, ((flags & 512) ? 1 : 0) | ((flags & 256) ? 128 : 0));
    if (flags & 4) real(r, 43, constantWidth);
    if (elevation != 0.0) real(r, 38, elevation);
    if (thickness != 0.0) real(r, 39, thickness);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        point(r, 10, vertices[i], false);
        if (i < startWidths.size()) {
            if (startWidths[i] != 0.0) real(r, 40, startWidths[i]);
            if (endWidths[i] != 0.0) real(r, 41, endWidths[i]);
        }
        if (i < bulgeList.size() && bulgeList[i] != 0.0) real(r, 42, bulgeList[i]);
    }
    extrusionTags(r, extrusion);
}

}  // namespace cad::db::dwg
