// The annotation entities of DWG records: dimensions, hatches, paragraph texts, leaders,
// tolerances and viewports, each written as the DXF tags of the same entity.
#include <vector>

#include "cad/db/dwg/DwgObjectDecoder.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {

bool DwgObjectDecoder::annotationFields(DwgRecord& r) {
    const bool r2k = r2000();
    switch (r.type) {
        case 0x14: case 0x15: case 0x16: case 0x17: case 0x18: case 0x19: case 0x1A:
            dimensionFields(r);
            return true;
        case 0x22: {
            const ge::Point3d center = data_.point3Bit();
            const double width = data_.bitDouble();
            const double height = data_.bitDouble();
            marker(r, "AcDbViewport");
            point(r, 10, center);
            real(r, 40, width);
            real(r, 41, height);
            integer(r, 68, 1);
            integer(r, 69, ++viewports_);
            if (!r2k) {
                ref();  // the viewport's entity header; the view itself is in its extended data
                return true;
            }
            const ge::Point3d target = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            const double twist = data_.bitDouble();
            const double viewHeight = data_.bitDouble();
            const double lens = data_.bitDouble();
            const double front = data_.bitDouble();
            const double back = data_.bitDouble();
            const double snapAngle = data_.bitDouble();
            const ge::Point3d viewCenter = data_.point2Raw();
            const ge::Point3d snapBase = data_.point2Raw();
            const ge::Point3d snapSpacing = data_.point2Raw();
            const ge::Point3d gridSpacing = data_.point2Raw();
            const int circleZoom = data_.bitShort();
            const std::int32_t frozen = data_.bitLong();
            if (!fitsIn(frozen)) return true;
            const std::int32_t status = data_.bitLong();
            const std::string styleSheet = data_.text();
            const int renderMode = data_.rawChar();
            const bool ucsIcon = data_.bit();
            const bool ucsPerViewport = data_.bit();
            const ge::Point3d ucsOrigin = data_.point3Bit();
            const ge::Point3d ucsX = data_.point3Bit();
            const ge::Point3d ucsY = data_.point3Bit();
            const double elevation = data_.bitDouble();
            const int orthographic = data_.bitShort();
            point(r, 12, viewCenter, false);
            point(r, 13, snapBase, false);
            point(r, 14, snapSpacing, false);
            point(r, 15, gridSpacing, false);
            point(r, 16, direction);
            point(r, 17, target);
            real(r, 42, lens);
            real(r, 43, front);
            real(r, 44, back);
            real(r, 45, viewHeight);
            angle(r, 50, snapAngle);
            angle(r, 51, twist);
            integer(r, 72, circleZoom);
            for (std::int32_t i = 0; i < frozen && !handles_.failed(); ++i) {
                handleTag(r, 331, ref());
            }
            integer(r, 90, status);
            const std::uint64_t clip = ref();
            if (clip != 0) handleTag(r, 340, clip);
            text(r, 1, styleSheet);
            integer(r, 281, renderMode);
            integer(r, 71, ucsPerViewport ? 1 : 0);
            integer(r, 74, ucsIcon ? 1 : 0);
            point(r, 110, ucsOrigin);
            point(r, 111, ucsX);
            point(r, 112, ucsY);
            ref();  // the viewport's entity header
            const std::uint64_t namedUcs = ref();
            const std::uint64_t baseUcs = ref();
            if (namedUcs != 0) handleTag(r, 345, namedUcs);
            if (baseUcs != 0) handleTag(r, 346, baseUcs);
            integer(r, 79, orthographic);
            real(r, 146, elevation);
            return true;
        }
        case 0x2D: {
            data_.bit();
            const int creation = data_.bitShort();
            const int pathType = data_.bitShort();
            const std::int32_t count = data_.bitLong();
            if (!fitsIn(count)) return true;
            std::vector<ge::Point3d> vertices;
            for (std::int32_t i = 0; i < count && !data_.failed(); ++i) {
                vertices.push_back(data_.point3Bit());
            }
            data_.point3Bit();  // the plane's origin, the first vertex again
            const ge::Point3d extrusion = data_.point3Bit();
            const ge::Point3d xDirection = data_.point3Bit();
            const ge::Point3d blockOffset = data_.point3Bit();
            ge::Point3d annotationOffset;
            if (layout_.version != DwgVersion::R13) annotationOffset = data_.point3Bit();
            if (!r2k) data_.bitDouble();
            const double boxHeight = data_.bitDouble();
            const double boxWidth = data_.bitDouble();
            const bool hookOnX = data_.bit();
            const bool arrowhead = data_.bit();
            const std::uint64_t annotation = ref();
            const std::uint64_t style = ref();
            marker(r, "AcDbLeader");
            nameTag(r, 3, style);
            integer(r, 71, arrowhead ? 1 : 0);
            integer(r, 72, pathType);
            integer(r, 73, creation);
            integer(r, 74, hookOnX ? 1 : 0);
            integer(r, 75, 0);
            real(r, 40, boxHeight);
            real(r, 41, boxWidth);
            integer(r, 76, count);
            for (const ge::Point3d& p : vertices) point(r, 10, p);
            if (annotation != 0) handleTag(r, 340, annotation);
            point(r, 210, extrusion);
            point(r, 211, xDirection);
            point(r, 212, blockOffset);
            point(r, 213, annotationOffset);
            return true;
        }
        case 0x2E: {
            if (!r2k) {
                data_.bitShort();
                data_.bitDouble();
                data_.bitDouble();
            }
            const ge::Point3d insertion = data_.point3Bit();
            const ge::Point3d xDirection = data_.point3Bit();
            const ge::Point3d extrusion = data_.point3Bit();
            const std::string value = data_.text();
            const std::uint64_t style = ref();
            marker(r, "AcDbFcf");
            nameTag(r, 3, style);
            point(r, 10, insertion);
            text(r, 1, value);
            point(r, 210, extrusion);
            point(r, 11, xDirection);
            return true;
        }
        case 0x2C: {
            const ge::Point3d insertion = data_.point3Bit();
            const ge::Vector3d extrusion = data_.vector3Bit();
            const ge::Point3d xAxis = data_.point3Bit();
            const double width = data_.bitDouble();
            const double height = data_.bitDouble();
            const int attachment = data_.bitShort();
            const int direction = data_.bitShort();
            data_.bitDouble();  // extents of the text as last drawn
            data_.bitDouble();
            const std::string value = data_.text();
            int spacingStyle = 1;
            double spacingFactor = 1.0;
            if (r2k) {
                spacingStyle = data_.bitShort();
                spacingFactor = data_.bitDouble();
                data_.bit();
            }
            const std::uint64_t style = ref();
            marker(r, "AcDbMText");
            point(r, 10, insertion);
            real(r, 40, height);
            real(r, 41, width);
            integer(r, 71, attachment);
            integer(r, 72, direction);
            // Long texts are split: 3 for each leading piece of 250 bytes, 1 for the rest.
            const std::string caret = sys::toCaretForm(value);
            std::size_t at = 0;
            while (caret.size() - at > 250) {
                r.tags.push_back(DwgTag::ofText(3, caret.substr(at, 250)));
                at += 250;
            }
            r.tags.push_back(DwgTag::ofText(1, caret.substr(at)));
            nameTag(r, 7, style);
            extrusionTags(r, extrusion);
            point(r, 11, xAxis);
            // Line spacing as most texts have it (at least, single) is left to the default.
            if (r2k && (spacingStyle != 1 || spacingFactor != 1.0)) {
                integer(r, 73, spacingStyle);
                real(r, 44, spacingFactor);
            }
            return true;
        }
        case 0x4E: hatchFields(r); return true;
        default: break;
    }
    if (r.type >= 500 && r.dxfName == "HATCH") {
        hatchFields(r);
        return true;
    }
    if (r.type >= 500 && (r.dxfName == "IMAGE" || r.dxfName == "WIPEOUT")) {
        rasterFields(r, r.dxfName == "WIPEOUT");
        return true;
    }
    return false;
}

void DwgObjectDecoder::dimensionFields(DwgRecord& r) {
    const bool r2k = r2000();
    const ge::Vector3d extrusion = data_.vector3Bit();
    ge::Point3d textMiddle = data_.point2Raw();
    const double elevation = data_.bitDouble();
    textMiddle.z = elevation;
    const int flags1 = data_.rawChar();
    const std::string userText = data_.text();
    const double textRotation = data_.bitDouble();
    const double horizontal = data_.bitDouble();
    data_.bitDouble();  // the scale and rotation of the block's insertion, not in DXF
    data_.bitDouble();
    data_.bitDouble();
    data_.bitDouble();
    int attachment = 5, spacingStyle = 1;
    double spacingFactor = 1.0, measurement = 0.0;
    if (r2k) {
        attachment = data_.bitShort();
        spacingStyle = data_.bitShort();
        spacingFactor = data_.bitDouble();
        measurement = data_.bitDouble();
    }
    ge::Point3d clone = data_.point2Raw();
    clone.z = elevation;

    int type = 0;
    const char* subclass = nullptr;
    const char* second = nullptr;
    ge::Point3d definition, p13, p14, p15, p16;
    double leaderLength = 0.0, extensionRotation = 0.0, rotation = 0.0;
    bool has13 = false, has14 = false, has15 = false, has16 = false;
    switch (r.type) {
        case 0x14: {
            definition = data_.point3Bit();
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            if (data_.rawChar() & 1) type |= 64;
            type |= 6;
            subclass = "AcDbOrdinateDimension";
            has13 = has14 = true;
            break;
        }
        case 0x15:
        case 0x16:
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            definition = data_.point3Bit();
            extensionRotation = data_.bitDouble();
            if (r.type == 0x15) rotation = data_.bitDouble();
            type |= r.type == 0x15 ? 0 : 1;
            subclass = "AcDbAlignedDimension";
            if (r.type == 0x15) second = "AcDbRotatedDimension";
            has13 = has14 = true;
            break;
        case 0x17:
            definition = data_.point3Bit();
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            p15 = data_.point3Bit();
            type |= 5;
            subclass = "AcDb3PointAngularDimension";
            has13 = has14 = has15 = true;
            break;
        case 0x18: {
            const ge::Point3d arc = data_.point2Raw();
            p16 = {arc.x, arc.y, elevation};
            p13 = data_.point3Bit();
            p14 = data_.point3Bit();
            p15 = data_.point3Bit();
            definition = data_.point3Bit();
            type |= 2;
            subclass = "AcDb2LineAngularDimension";
            has13 = has14 = has15 = has16 = true;
            break;
        }
        default:
            definition = data_.point3Bit();
            p15 = data_.point3Bit();
            leaderLength = data_.bitDouble();
            type |= r.type == 0x19 ? 4 : 3;
            subclass = r.type == 0x19 ? "AcDbRadialDimension" : "AcDbDiametricDimension";
            has15 = true;
            break;
    }
    // Bit 0 of the first flags is the opposite of "text where the user put it" (128); bit 1
    // is the 32 of the type, which every dimension with its own block carries.
    if (!(flags1 & 1)) type |= 128;
    if (flags1 & 2) type |= 32;
    const std::uint64_t style = ref();
    const std::uint64_t block = ref();

    marker(r, "AcDbDimension");
    nameTag(r, 2, block);
    point(r, 10, definition);
    point(r, 11, textMiddle);
    if (clone.x != 0.0 || clone.y != 0.0) point(r, 12, clone);
    integer(r, 70, type);
    if (!userText.empty()) text(r, 1, userText);
    if (r2k) {
        integer(r, 71, attachment);
        integer(r, 72, spacingStyle);
        real(r, 41, spacingFactor);
        real(r, 42, measurement);
    }
    if (textRotation != 0.0) angle(r, 53, textRotation);
    if (horizontal != 0.0) angle(r, 51, horizontal);
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    nameTag(r, 3, style);
    marker(r, subclass);
    if (has13) point(r, 13, p13);
    if (has14) point(r, 14, p14);
    if (has15) point(r, 15, p15);
    if (has16) point(r, 16, p16);
    if (r.type == 0x19 || r.type == 0x1A) real(r, 40, leaderLength);
    if (r.type == 0x15 || r.type == 0x16) {
        if (r.type == 0x15) angle(r, 50, rotation);
        if (extensionRotation != 0.0) angle(r, 52, extensionRotation);
    }
    if (second) marker(r, second);
}

void DwgObjectDecoder::hatchFields(DwgRecord& r) {
    const double elevation = data_.bitDouble();
    const ge::Vector3d extrusion = data_.vector3Bit();
    const std::string pattern = data_.text();
    const bool solid = data_.bit();
    const bool associative = data_.bit();
    const std::int32_t paths = data_.bitLong();
    if (!fitsIn(paths)) return;
    marker(r, "AcDbHatch");
    point(r, 10, {0, 0, elevation});
    point(r, 210, {extrusion.x, extrusion.y, extrusion.z});
    text(r, 2, pattern);
    integer(r, 70, solid ? 1 : 0);
    integer(r, 71, associative ? 1 : 0);
    integer(r, 91, paths);
    bool derived = false;
    const auto flat = [&](int code, const ge::Point3d& p) { point(r, code, p, false); };
    for (std::int32_t i = 0; i < paths && !data_.failed(); ++i) {
        const std::int32_t pathFlags = data_.bitLong();
        if (pathFlags & 4) derived = true;
        integer(r, 92, pathFlags);
        if (!(pathFlags & 2)) {
            const std::int32_t edges = data_.bitLong();
            if (!fitsIn(edges)) return;
            integer(r, 93, edges);
            for (std::int32_t e = 0; e < edges && !data_.failed(); ++e) {
                const int kind = data_.rawChar();
                integer(r, 72, kind);
                switch (kind) {
                    case 1:
                        flat(10, data_.point2Raw());
                        flat(11, data_.point2Raw());
                        break;
                    case 2:
                        flat(10, data_.point2Raw());
                        real(r, 40, data_.bitDouble());
                        angle(r, 50, data_.bitDouble());
                        angle(r, 51, data_.bitDouble());
                        integer(r, 73, data_.bit() ? 1 : 0);
                        break;
                    case 3:
                        flat(10, data_.point2Raw());
                        flat(11, data_.point2Raw());
                        real(r, 40, data_.bitDouble());
                        angle(r, 50, data_.bitDouble());
                        angle(r, 51, data_.bitDouble());
                        integer(r, 73, data_.bit() ? 1 : 0);
                        break;
                    case 4: {
                        integer(r, 94, data_.bitLong());
                        const bool rational = data_.bit();
                        integer(r, 73, rational ? 1 : 0);
                        integer(r, 74, data_.bit() ? 1 : 0);
                        const std::int32_t knots = data_.bitLong();
                        const std::int32_t controls = data_.bitLong();
                        if (!fitsIn(knots) || !fitsIn(controls)) return;
                        integer(r, 95, knots);
                        integer(r, 96, controls);
                        for (std::int32_t k = 0; k < knots && !data_.failed(); ++k) {
                            real(r, 40, data_.bitDouble());
                        }
                        for (std::int32_t c = 0; c < controls && !data_.failed(); ++c) {
                            flat(10, data_.point2Raw());
                            if (rational) real(r, 42, data_.bitDouble());
                        }
                        break;
                    }
                    default:
                        data_.fail();
                        return;
                }
            }
        } else {
            const bool bulges = data_.bit();
            const bool closed = data_.bit();
            const std::int32_t vertices = data_.bitLong();
            if (!fitsIn(vertices)) return;
            integer(r, 72, bulges ? 1 : 0);
            integer(r, 73, closed ? 1 : 0);
            integer(r, 93, vertices);
            for (std::int32_t v = 0; v < vertices && !data_.failed(); ++v) {
                flat(10, data_.point2Raw());
                if (bulges) real(r, 42, data_.bitDouble());
            }
        }
        const std::int32_t sources = data_.bitLong();
        if (!fitsIn(sources)) return;
        integer(r, 97, sources);
        for (std::int32_t h = 0; h < sources && !handles_.failed(); ++h) {
            handleTag(r, 330, ref());
        }
    }
    integer(r, 75, data_.bitShort());
    integer(r, 76, data_.bitShort());
    if (!solid) {
        angle(r, 52, data_.bitDouble());
        real(r, 41, data_.bitDouble());
        integer(r, 77, data_.bit() ? 1 : 0);
        const int lines = data_.bitShort();
        integer(r, 78, lines);
        for (int l = 0; l < lines && !data_.failed(); ++l) {
            angle(r, 53, data_.bitDouble());
            real(r, 43, data_.bitDouble());
            real(r, 44, data_.bitDouble());
            real(r, 45, data_.bitDouble());
            real(r, 46, data_.bitDouble());
            const int dashes = data_.bitShort();
            integer(r, 79, dashes);
            for (int d = 0; d < dashes && !data_.failed(); ++d) real(r, 49, data_.bitDouble());
        }
    }
    if (derived) real(r, 47, data_.bitDouble());
    const std::int32_t seeds = data_.bitLong();
    if (!fitsIn(seeds)) return;
    integer(r, 98, seeds);
    for (std::int32_t i = 0; i < seeds && !data_.failed(); ++i) flat(10, data_.point2Raw());
}

// An image or a wipeout: where its pixels lie (the corner, one pixel's width and height as
// vectors, the size in pixels), how it shows, and the clip outline in pixels; a wipeout is an
// image of no picture.
void DwgObjectDecoder::rasterFields(DwgRecord& r, bool wipeout) {
    const std::int32_t version = data_.bitLong();
    const ge::Point3d corner = data_.point3Bit();
    const ge::Point3d u = data_.point3Bit();
    const ge::Point3d v = data_.point3Bit();
    const ge::Point3d size = data_.point2Raw();
    const int display = data_.bitShort();
    const bool clipping = data_.bit();
    const int brightness = data_.rawChar();
    const int contrast = data_.rawChar();
    const int fade = data_.rawChar();
    const int clipType = data_.bitShort();
    std::int32_t count = 2;  // a rectangle by two corners
    if (clipType != 1) count = data_.bitLong();
    if (!fitsIn(count)) return;
    std::vector<ge::Point3d> clip;
    for (std::int32_t i = 0; i < count && !data_.failed(); ++i) clip.push_back(data_.point2Raw());
    const std::uint64_t definition = ref();
    const std::uint64_t reactor = ref();
    marker(r, "AcDbRasterImage");
    integer(r, 90, version);
    point(r, 10, corner);
    point(r, 11, u);
    point(r, 12, v);
    point(r, 13, size, false);
    if (definition != 0) handleTag(r, 340, definition);
    integer(r, 70, display);
    integer(r, 280, clipping ? 1 : 0);
    integer(r, 281, brightness);
    integer(r, 282, contrast);
    integer(r, 283, fade);
    if (reactor != 0) handleTag(r, 360, reactor);
    integer(r, 71, clipType);
    integer(r, 91, count);
    for (const ge::Point3d& p : clip) point(r, 14, p, false);
    if (wipeout) marker(r, "AcDbWipeout");
}

}  // namespace cad::db::dwg
