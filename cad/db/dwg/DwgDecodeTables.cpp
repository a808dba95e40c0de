// The symbol tables of DWG records: each table's control object with its records, and the
// records themselves (blocks, layers, text styles, linetypes, views, viewports, coordinate
// systems, applications, dimension styles) as the DXF tags of the same records.
#include <vector>

#include "cad/db/dwg/DwgObjectDecoder.h"
#include "cad/db/dwg/DwgValues.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {

void DwgObjectDecoder::tableEntryStart(DwgRecord& r, const char* subclass, int& flags) {
    r.name = data_.text();
    const bool referenced = data_.bit();
    data_.bitShort();  // xref index + 1
    const bool dependent = data_.bit();
    flags = (referenced ? 64 : 0) | (dependent ? 16 : 0);
    marker(r, "AcDbSymbolTableRecord");
    marker(r, subclass);
}

// The coordinate system a view or viewport keeps: origin, axes, elevation, orthographic type,
// then its links; a view links its base system first, a viewport its named one.
void DwgObjectDecoder::ucsFields(DwgRecord& r, bool namedFirst) {
    point(r, 110, data_.point3Bit());
    point(r, 111, data_.point3Bit());
    point(r, 112, data_.point3Bit());
    real(r, 146, data_.bitDouble());
    integer(r, 79, data_.bitShort());
    ref();  // external reference block
    const std::uint64_t first = ref();
    const std::uint64_t second = ref();
    const std::uint64_t named = namedFirst ? first : second;
    const std::uint64_t base = namedFirst ? second : first;
    if (named != 0) handleTag(r, 345, named);
    if (base != 0) handleTag(r, 346, base);
}

bool DwgObjectDecoder::tableFields(DwgRecord& r) {
    const bool r2k = r2000();
    switch (r.type) {
        case 0x45:
            dimensionStyleFields(r);
            return true;
        case 0x30: case 0x32: case 0x34: case 0x38: case 0x3C: case 0x3E: case 0x40:
        case 0x42: case 0x44: {
            const std::int32_t count = data_.bitLong();
            for (std::int32_t i = 0; i < count && !handles_.failed(); ++i) {
                r.entries.push_back(ref());
            }
            if (r.type == 0x30 || r.type == 0x38) {
                // *MODEL_SPACE and *PAPER_SPACE, or BYLAYER and BYBLOCK, follow the counted
                // records.
                r.entries.push_back(ref());
                r.entries.push_back(ref());
            }
            return true;
        }
        case 0x31: {
            int flags = 0;
            tableEntryStart(r, "AcDbBlockTableRecord", flags);
            const bool anonymous = data_.bit();
            const bool hasAttributes = data_.bit();
            const bool isXref = data_.bit();
            const bool overlaid = data_.bit();
            if (r2k) data_.bit();  // loaded
            r.basePoint = data_.point3Bit();
            r.xrefPath = data_.text();
            std::string preview;
            std::uint64_t inserts = 0;
            if (r2k) {
                while (data_.rawChar() != 0 && !data_.failed()) ++inserts;
                data_.text();  // description
                const auto previewSize = static_cast<std::uint32_t>(data_.bitLong());
                preview = data_.bytes(previewSize);
            }
            r.blockFlags = flags | (anonymous ? 1 : 0) | (hasAttributes ? 2 : 0) |
                           (isXref ? 4 : 0) | (overlaid ? 8 : 0);
            ref();  // the null link every table record has before its own
            r.blockEntity = ref();
            if (!isXref && !overlaid) {
                ref();
                ref();
            }
            r.endblkEntity = ref();
            std::uint64_t layout = 0;
            if (r2k) {
                for (std::uint64_t i = 0; i < inserts && !handles_.failed(); ++i) ref();
                layout = ref();
            }
            // The DXF names of the two space blocks are spelt so, in every writer.
            std::string blockName = r.name;
            if (blockName == "*MODEL_SPACE") blockName = "*Model_Space";
            if (blockName.rfind("*PAPER_SPACE", 0) == 0) {
                blockName = "*Paper_Space" + blockName.substr(12);
            }
            r.name = blockName;
            text(r, 2, blockName);
            if (layout != 0) handleTag(r, 340, layout);
            binaryTags(r, 310, preview);
            return true;
        }
        case 0x33: {
            int flags = 0;
            tableEntryStart(r, "AcDbLayerTableRecord", flags);
            bool off = false, plot = true;
            int lineweight = -3;
            if (!r2k) {
                if (data_.bit()) flags |= 1;
                off = !data_.bit();
                if (data_.bit()) flags |= 2;
                if (data_.bit()) flags |= 4;
            } else {
                const int values = data_.bitShort();
                if (values & 1) flags |= 1;
                off = values & 2;
                if (values & 4) flags |= 2;
                if (values & 8) flags |= 4;
                plot = values & 16;
                lineweight = lineweightFromIndex((values & 0x3E0) >> 5);
            }
            int color = data_.color();
            ref();  // external reference block
            std::uint64_t plotStyle = 0;
            if (r2k) plotStyle = ref();
            const std::uint64_t linetype = ref();
            if (color < 0) {
                off = true;
                color = -color;
            }
            text(r, 2, r.name);
            integer(r, 70, flags);
            integer(r, 62, off ? -color : color);
            nameTag(r, 6, linetype);
            if (r2k) {
                if (!plot) integer(r, 290, 0);
                integer(r, 370, lineweight);
                if (plotStyle != 0) handleTag(r, 390, plotStyle);
            }
            return true;
        }
        case 0x35: {
            int flags = 0;
            tableEntryStart(r, "AcDbTextStyleTableRecord", flags);
            if (data_.bit()) flags |= 4;
            if (data_.bit()) flags |= 1;
            const double fixedHeight = data_.bitDouble();
            const double width = data_.bitDouble();
            const double oblique = data_.bitDouble();
            const int generation = data_.rawChar();
            const double lastHeight = data_.bitDouble();
            const std::string font = data_.text();
            const std::string bigFont = data_.text();
            text(r, 2, r.name);
            integer(r, 70, flags);
            real(r, 40, fixedHeight);
            real(r, 41, width);
            angle(r, 50, oblique);
            integer(r, 71, generation);
            real(r, 42, lastHeight);
            text(r, 3, font);
            if (!bigFont.empty()) text(r, 4, bigFont);
            return true;
        }
        case 0x39: {
            int flags = 0;
            tableEntryStart(r, "AcDbLinetypeTableRecord", flags);
            // The two linetypes every drawing has are stored in capitals; DXF spells them so.
            if (r.name == "BYLAYER") r.name = "ByLayer";
            if (r.name == "BYBLOCK") r.name = "ByBlock";
            const std::string description = data_.text();
            const double length = data_.bitDouble();
            const int alignment = data_.rawChar();
            const int dashes = data_.rawChar();
            text(r, 2, r.name);
            integer(r, 70, flags);
            text(r, 3, description);
            integer(r, 72, alignment);
            integer(r, 73, dashes);
            real(r, 40, length);
            struct Dash {
                double length, x, y, scale, rotation;
                int shape, flags;
            };
            std::vector<Dash> list;
            for (int i = 0; i < dashes && !data_.failed(); ++i) {
                Dash d{};
                d.length = data_.bitDouble();
                d.shape = data_.bitShort();
                d.x = data_.rawDouble();
                d.y = data_.rawDouble();
                d.scale = data_.bitDouble();
                d.rotation = data_.bitDouble();
                d.flags = data_.bitShort();
                list.push_back(d);
            }
            ref();  // external reference block
            for (const Dash& d : list) {
                const std::uint64_t shapeFile = ref();
                real(r, 49, d.length);
                integer(r, 74, d.flags);
                if (d.flags & 6) {
                    integer(r, 75, d.shape);
                    if (shapeFile != 0) handleTag(r, 340, shapeFile);
                    real(r, 46, d.scale);
                    angle(r, 50, d.rotation);
                    real(r, 44, d.x);
                    real(r, 45, d.y);
                }
            }
            return true;
        }
        case 0x3D:
        case 0x41: {
            const bool vport = r.type == 0x41;
            int flags = 0;
            tableEntryStart(r, vport ? "AcDbViewportTableRecord" : "AcDbViewTableRecord", flags);
            const double height = data_.bitDouble();
            const double second = data_.bitDouble();  // a view's width; a viewport's width
            const ge::Point3d center = data_.point2Raw();
            const ge::Point3d target = data_.point3Bit();
            const ge::Point3d direction = data_.point3Bit();
            const double twist = data_.bitDouble();
            const double lens = data_.bitDouble();
            const double front = data_.bitDouble();
            const double back = data_.bitDouble();
            int mode = 0;
            if (data_.bit()) mode |= 1;
            if (data_.bit()) mode |= 2;
            if (data_.bit()) mode |= 4;
            if (!data_.bit()) mode |= 16;
            int renderMode = 0;
            if (r2k) renderMode = data_.rawChar();
            text(r, 2, r.name);
            if (!vport) {
                if (data_.bit()) flags |= 1;
                integer(r, 70, flags);
                real(r, 40, height);
                point(r, 10, center, false);
                real(r, 41, second);
                point(r, 11, direction);
                point(r, 12, target);
                real(r, 42, lens);
                real(r, 43, front);
                real(r, 44, back);
                angle(r, 50, twist);
                integer(r, 71, mode);
                if (r2k) {
                    integer(r, 281, renderMode);
                    const bool ucs = data_.bit();
                    integer(r, 72, ucs ? 1 : 0);
                    if (ucs) ucsFields(r, false);
                }
                return true;
            }
            // A viewport stores its width where DXF keeps the ratio of width to height.
            const double aspect = height != 0.0 ? second / height : 1.0;
            const ge::Point3d lowerLeft = data_.point2Raw();
            const ge::Point3d upperRight = data_.point2Raw();
            if (data_.bit()) mode |= 8;
            const int circleZoom = data_.bitShort();
            const int fastZoom = data_.bit() ? 1 : 0;
            int ucsIcon = data_.bit() ? 1 : 0;
            if (data_.bit()) ucsIcon |= 2;
            const int gridOn = data_.bit() ? 1 : 0;
            const ge::Point3d gridSpacing = data_.point2Raw();
            const int snapOn = data_.bit() ? 1 : 0;
            const int snapStyle = data_.bit() ? 1 : 0;
            const int isoPair = data_.bitShort();
            const double snapRotation = data_.bitDouble();
            const ge::Point3d snapBase = data_.point2Raw();
            const ge::Point3d snapSpacing = data_.point2Raw();
            integer(r, 70, flags);
            point(r, 10, lowerLeft, false);
            point(r, 11, upperRight, false);
            point(r, 12, center, false);
            point(r, 13, snapBase, false);
            point(r, 14, snapSpacing, false);
            point(r, 15, gridSpacing, false);
            point(r, 16, direction);
            point(r, 17, target);
            real(r, 40, height);
            real(r, 41, aspect);
            real(r, 42, lens);
            real(r, 43, front);
            real(r, 44, back);
            angle(r, 50, snapRotation);
            angle(r, 51, twist);
            integer(r, 71, mode);
            integer(r, 72, circleZoom);
            integer(r, 73, fastZoom);
            integer(r, 74, ucsIcon);
            integer(r, 75, snapOn);
            integer(r, 76, gridOn);
            integer(r, 77, snapStyle);
            integer(r, 78, isoPair);
            if (r2k) {
                integer(r, 281, renderMode);
                data_.bit();
                integer(r, 65, data_.bit() ? 1 : 0);
                ucsFields(r, true);
            }
            return true;
        }
        case 0x3F: {
            int flags = 0;
            tableEntryStart(r, "AcDbUCSTableRecord", flags);
            const ge::Point3d origin = data_.point3Bit();
            const ge::Point3d xAxis = data_.point3Bit();
            const ge::Point3d yAxis = data_.point3Bit();
            text(r, 2, r.name);
            integer(r, 70, flags);
            point(r, 10, origin);
            point(r, 11, xAxis);
            point(r, 12, yAxis);
            if (r2k) {
                real(r, 146, data_.bitDouble());
                integer(r, 79, data_.bitShort());
                data_.bitShort();
            }
            return true;
        }
        case 0x43: {
            int flags = 0;
            tableEntryStart(r, "AcDbRegAppTableRecord", flags);
            text(r, 2, r.name);
            integer(r, 70, flags);
            return true;
        }
        default: return false;
    }
}

void DwgObjectDecoder::dimensionStyleFields(DwgRecord& r) {
    int flags = 0;
    tableEntryStart(r, "AcDbDimStyleTableRecord", flags);
    std::vector<DwgTag> values;
    const auto flag = [&](int code) { values.push_back(DwgTag::ofInteger(code, data_.bit() ? 1 : 0)); };
    const auto byte = [&](int code) { values.push_back(DwgTag::ofInteger(code, data_.rawChar())); };
    const auto small = [&](int code) {
        values.push_back(DwgTag::ofInteger(code, data_.bitShort()));
    };
    const auto number = [&](int code) {
        values.push_back(DwgTag::ofReal(code, data_.bitDouble()));
    };
    const auto words = [&](int code) {
        values.push_back(DwgTag::ofText(code, sys::toCaretForm(data_.text())));
    };
    if (!r2000()) {
        for (const int code : {71, 72, 73, 74, 75, 76, 170, 172, 173, 174, 175}) flag(code);
        byte(171);
        byte(78);
        flag(281);
        flag(282);
        byte(283);
        byte(280);
        byte(287);
        flag(288);
        byte(284);
        byte(285);
        byte(286);
        byte(77);
        for (const int code : {270, 275, 271, 272, 273, 274}) small(code);
        for (const int code : {40, 41, 42, 43, 44, 45, 46, 47, 48, 140, 141, 142, 143, 144,
                               145, 146, 147}) {
            number(code);
        }
        for (const int code : {3, 4, 5, 6, 7}) words(code);
        for (const int code : {176, 177, 178}) small(code);
    } else {
        words(3);
        words(4);
        for (const int code : {40, 41, 42, 43, 44, 45, 46, 47, 48}) number(code);
        for (const int code : {71, 72, 73, 74, 75, 76}) flag(code);
        for (const int code : {77, 78, 79}) small(code);
        for (const int code : {140, 141, 142, 143, 144, 145, 146, 147, 148}) number(code);
        flag(170);
        small(171);
        for (const int code : {172, 173, 174, 175}) flag(code);
        for (const int code : {176, 177, 178, 179, 271, 272, 273, 274, 275, 276, 277, 278,
                               279, 280}) {
            small(code);
        }
        flag(281);
        flag(282);
        for (const int code : {283, 284, 285, 286}) small(code);
        flag(288);
        small(289);  // the fit of text and arrows; DIMFIT before R2000
        small(371);
        small(372);
    }
    data_.bit();
    ref();  // external reference block
    const std::uint64_t textStyle = ref();
    std::uint64_t blocks[4] = {};
    if (r2000()) {
        for (std::uint64_t& block : blocks) block = ref();
    }
    text(r, 2, r.name);
    integer(r, 70, flags);
    for (DwgTag& value : values) {
        r.tags.push_back(std::move(value));
    }
    if (textStyle != 0) handleTag(r, 340, textStyle);
    for (int i = 0; i < 4; ++i) {
        if (blocks[i] != 0) handleTag(r, 341 + i, blocks[i]);
    }
}

}  // namespace cad::db::dwg
