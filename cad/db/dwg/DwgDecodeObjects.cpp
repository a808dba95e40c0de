// The non-graphical objects of DWG records: dictionaries, groups, multiline styles,
// extended records, layouts, scales, draw-order tables and dictionary variables, as the DXF
// tags of the same objects.
#include <vector>

#include "cad/db/dwg/DwgObjectDecoder.h"
#include "cad/db/dwg/DwgValues.h"

namespace cad::db::dwg {

void DwgObjectDecoder::xrecordData(DwgRecord& r, std::size_t byteCount) {
    const std::string bytes = data_.bytes(byteCount);
    BitReader items(bytes);
    while (items.bitPosition() < items.sizeInBits() && !items.failed()) {
        const int code = static_cast<std::uint16_t>(items.rawShort());
        const auto little64 = [&items] {
            std::uint64_t value = 0;
            for (int i = 0; i < 8; ++i) value |= std::uint64_t{items.rawChar()} << (8 * i);
            return value;
        };
        switch (xrecordValueOf(code)) {
            case XrecordValue::Text: {
                const auto length = static_cast<std::uint16_t>(items.rawShort());
                items.rawChar();  // code page
                text(r, code, items.bytes(length));
                break;
            }
            case XrecordValue::Point: point(r, code, items.point3Raw()); break;
            case XrecordValue::Real: real(r, code, items.rawDouble()); break;
            case XrecordValue::Short: integer(r, code, items.rawShort()); break;
            case XrecordValue::Long: integer(r, code, items.rawLong()); break;
            case XrecordValue::Char: integer(r, code, items.rawChar()); break;
            case XrecordValue::Int64: integer(r, code, static_cast<std::int64_t>(little64())); break;
            case XrecordValue::Binary: {
                const std::uint8_t length = items.rawChar();
                r.tags.push_back(DwgTag::ofText(code, hexBytes(items.bytes(length))));
                break;
            }
            case XrecordValue::Handle: handleTag(r, code, little64()); break;
            case XrecordValue::Unknown: items.fail(); break;
        }
    }
    if (items.failed()) data_.fail();
}

bool DwgObjectDecoder::objectFields(DwgRecord& r) {
    const bool r2k = r2000();
    const std::string_view name = r.dxfName;
    switch (r.type) {
        case 0x2A: dictionaryFields(r, false); return true;
        case 0x49: {
            const std::string styleName = data_.text();
            r.name = styleName;  // what multilines name their style by
            const std::string description = data_.text();
            const int stored = data_.bitShort();
            const int flags = mlineStyleFlagsFromDwg(stored);
            const int fill = data_.color();
            const double startAngle = data_.bitDouble();
            const double endAngle = data_.bitDouble();
            const int lines = data_.rawChar();
            marker(r, "AcDbMlineStyle");
            text(r, 2, styleName);
            integer(r, 70, flags);
            text(r, 3, description);
            integer(r, 62, fill);
            angle(r, 51, startAngle);
            angle(r, 52, endAngle);
            integer(r, 71, lines);
            for (int i = 0; i < lines && !data_.failed(); ++i) {
                real(r, 49, data_.bitDouble());
                integer(r, 62, data_.color());
                const int index = static_cast<std::uint16_t>(data_.bitShort());
                // A linetype is named by its place in the linetype table; 32767 and 32766
                // stand for by layer and by block.
                if (index == 32767 || index == 32766) {
                    r.tags.push_back(DwgTag::ofMarker(6, index == 32767 ? "BYLAYER" : "BYBLOCK"));
                } else {
                    r.tags.push_back(DwgTag::ofName(6, kLinetypeIndex | static_cast<std::uint64_t>(index)));
                }
            }
            return true;
        }
        case 0x48: {
            const std::string description = data_.text();
            const int unnamed = data_.bitShort();
            const int selectable = data_.bitShort();
            const std::int32_t count = data_.bitLong();
            marker(r, "AcDbGroup");
            text(r, 300, description);
            integer(r, 70, unnamed);
            integer(r, 71, selectable);
            for (std::int32_t i = 0; i < count && !handles_.failed(); ++i) {
                handleTag(r, 340, ref());
            }
            return true;
        }
        case 0x50:
            return true;
        default: break;
    }
    if (r.type < 500 && r.type != 0x4F && r.type != 0x52) return false;
    if (name == "XRECORD") {
        const auto byteCount = static_cast<std::uint32_t>(data_.bitLong());
        if (byteCount > data_.sizeInBits() / 8) {
            data_.fail();
            return true;
        }
        int cloning = 1;
        marker(r, "AcDbXrecord");
        const std::size_t at = r.tags.size();
        xrecordData(r, byteCount);
        if (r2k) cloning = data_.bitShort();
        r.tags.insert(r.tags.begin() + static_cast<std::ptrdiff_t>(at),
                      DwgTag::ofInteger(280, cloning));
        // Links of the data are kept in the data itself; what follows in the handle stream
        // are the objects the record owns, already named there.
        return true;
    }
    if (name == "ACDBPLACEHOLDER") return true;
    if (name == "LAYOUT") {
        layoutFields(r);
        return true;
    }
    if (name == "SCALE") {
        data_.bitShort();
        const std::string scaleName = data_.text();
        const double paper = data_.bitDouble();
        const double drawing = data_.bitDouble();
        const bool unit = data_.bit();
        marker(r, "AcDbScale");
        integer(r, 70, 0);
        text(r, 300, scaleName);
        real(r, 140, paper);
        real(r, 141, drawing);
        integer(r, 290, unit ? 1 : 0);
        return true;
    }
    if (name == "SORTENTSTABLE") {
        const std::uint64_t block = ref();
        const std::int32_t count = data_.bitLong();
        if (!fitsIn(count)) return true;
        marker(r, "AcDbSortentsTable");
        handleTag(r, 330, block);
        for (std::int32_t i = 0; i < count && !data_.failed() && !handles_.failed(); ++i) {
            // The sort key stands in the data stream, the entity in the handle stream.
            const std::uint64_t sortKey = data_.handle().value;
            handleTag(r, 331, ref());
            handleTag(r, 5, sortKey);
        }
        return true;
    }
    if (name == "IMAGEDEF") {
        // An image's file: its size in pixels, its path, a pixel's size and the unit of that.
        const std::int32_t version = data_.bitLong();
        const ge::Point3d size = data_.point2Raw();
        const std::string path = data_.text();
        const bool loaded = data_.bit();
        const int units = data_.rawChar();
        const ge::Point3d pixel = data_.point2Raw();
        marker(r, "AcDbRasterImageDef");
        integer(r, 90, version);
        text(r, 1, path);
        point(r, 10, size, false);
        point(r, 11, pixel, false);
        integer(r, 280, loaded ? 1 : 0);
        integer(r, 281, units);
        return true;
    }
    if (name == "IMAGEDEF_REACTOR") {
        // Its owner is the image that uses the definition.
        const std::int32_t version = data_.bitLong();
        marker(r, "AcDbRasterImageDefReactor");
        integer(r, 90, version);
        return true;
    }
    if (name == "DICTIONARYVAR") {
        const int schema = data_.rawChar();
        const std::string value = data_.text();
        marker(r, "DictionaryVariables");
        integer(r, 280, schema);
        text(r, 1, value);
        return true;
    }
    if (name == "ACDBDICTIONARYWDFLT") {
        dictionaryFields(r, true);
        return true;
    }
    return false;
}

void DwgObjectDecoder::dictionaryFields(DwgRecord& r, bool withDefault) {
    const std::int32_t count = data_.bitLong();
    int hardOwner = 0, cloning = 1;
    if (layout_.version == DwgVersion::R14) data_.rawChar();
    if (r2000()) {
        cloning = data_.bitShort();
        hardOwner = data_.rawChar();
    }
    std::vector<std::string> keys;
    for (std::int32_t i = 0; i < count && !data_.failed(); ++i) keys.push_back(data_.text());
    marker(r, "AcDbDictionary");
    // The flags came with 2000; R13 and R14 dictionaries have none to give, but one with a
    // default always names its cloning.
    if (hardOwner != 0) integer(r, 280, hardOwner);
    if (r2000() || withDefault) integer(r, 281, cloning);
    for (const std::string& key : keys) {
        const std::uint64_t item = ref();
        text(r, 3, key);
        handleTag(r, hardOwner ? 360 : 350, item);
    }
    if (withDefault) {
        marker(r, "AcDbDictionaryWithDefault");
        handleTag(r, 340, ref());
    }
}

void DwgObjectDecoder::layoutFields(DwgRecord& r) {
    const std::string pageName = data_.text();
    const std::string printer = data_.text();
    const int plotFlags = data_.bitShort();
    double margins[4];
    for (double& margin : margins) margin = data_.bitDouble();
    const double paperWidth = data_.bitDouble();
    const double paperHeight = data_.bitDouble();
    const std::string paperSize = data_.text();
    const double originX = data_.bitDouble();
    const double originY = data_.bitDouble();
    const int paperUnits = data_.bitShort();
    const int rotation = data_.bitShort();
    const int plotType = data_.bitShort();
    double window[4];
    for (double& corner : window) corner = data_.bitDouble();
    const std::string viewName = data_.text();
    const double numerator = data_.bitDouble();
    const double denominator = data_.bitDouble();
    const std::string styleSheet = data_.text();
    const int scaleType = data_.bitShort();
    const double scaleFactor = data_.bitDouble();
    const double imageX = data_.bitDouble();
    const double imageY = data_.bitDouble();

    const std::string layoutName = data_.text();
    const std::int32_t tabOrder = data_.bitLong();
    const int layoutFlags = data_.bitShort();
    const ge::Point3d ucsOrigin = data_.point3Bit();
    const ge::Point3d limitsMin = data_.point2Raw();
    const ge::Point3d limitsMax = data_.point2Raw();
    const ge::Point3d insertionBase = data_.point3Bit();
    const ge::Point3d xAxis = data_.point3Bit();
    const ge::Point3d yAxis = data_.point3Bit();
    const double elevation = data_.bitDouble();
    const int orthographic = data_.bitShort();
    const ge::Point3d extentsMin = data_.point3Bit();
    const ge::Point3d extentsMax = data_.point3Bit();
    const std::uint64_t block = ref();
    const std::uint64_t viewport = ref();
    const std::uint64_t baseUcs = ref();
    const std::uint64_t namedUcs = ref();

    marker(r, "AcDbPlotSettings");
    text(r, 1, pageName);
    text(r, 2, printer);
    text(r, 4, paperSize);
    text(r, 6, viewName);
    for (int i = 0; i < 4; ++i) real(r, 40 + i, margins[i]);
    real(r, 44, paperWidth);
    real(r, 45, paperHeight);
    real(r, 46, originX);
    real(r, 47, originY);
    real(r, 48, window[0]);
    real(r, 49, window[1]);
    real(r, 140, window[2]);
    real(r, 141, window[3]);
    real(r, 142, numerator);
    real(r, 143, denominator);
    integer(r, 70, plotFlags);
    integer(r, 72, paperUnits);
    integer(r, 73, rotation);
    integer(r, 74, plotType);
    text(r, 7, styleSheet);
    integer(r, 75, scaleType);
    real(r, 147, scaleFactor);
    real(r, 148, imageX);
    real(r, 149, imageY);
    marker(r, "AcDbLayout");
    text(r, 1, layoutName);
    integer(r, 70, layoutFlags);
    integer(r, 71, tabOrder);
    point(r, 10, limitsMin, false);
    point(r, 11, limitsMax, false);
    point(r, 12, insertionBase);
    point(r, 14, extentsMin);
    point(r, 15, extentsMax);
    real(r, 146, elevation);
    point(r, 13, ucsOrigin);
    point(r, 16, xAxis);
    point(r, 17, yAxis);
    integer(r, 76, orthographic);
    handleTag(r, 330, block);
    if (viewport != 0) handleTag(r, 331, viewport);
    if (namedUcs != 0) handleTag(r, 345, namedUcs);
    if (baseUcs != 0) handleTag(r, 346, baseUcs);
}

}  // namespace cad::db::dwg
