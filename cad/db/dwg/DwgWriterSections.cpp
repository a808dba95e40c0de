// The header variables and classes sections of the DWG files the writer makes, each framed
// by its start and end sentinels, with its size and check value.
#include "cad/db/dwg/DwgEncoder.h"

#include "cad/db/dwg/DwgCrc.h"
#include "cad/db/dwg/DwgValues.h"

namespace cad::db::dwg {
namespace {

constexpr unsigned char kHeaderStart[16] = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                            0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};
constexpr unsigned char kHeaderEnd[16] = {0x30, 0x84, 0xE0, 0xDC, 0x02, 0x21, 0xC7, 0x56,
                                          0xA0, 0x83, 0x97, 0x47, 0xB1, 0x92, 0xCC, 0xA0};
constexpr unsigned char kClassesStart[16] = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                             0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};
constexpr unsigned char kClassesEnd[16] = {0x72, 0x5E, 0x3B, 0x47, 0x3B, 0x56, 0x07, 0x3A,
                                           0x3F, 0x23, 0x0B, 0xA0, 0x18, 0x30, 0x49, 0x75};

// A section between its sentinels: its size, its bytes and their check value.
std::string framed(const unsigned char (&start)[16], const std::string& bytes,
                   const unsigned char (&end)[16]) {
    std::string out(reinterpret_cast<const char*>(start), 16);
    std::string sized;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    for (int i = 0; i < 4; ++i) sized += static_cast<char>(size >> (8 * i));
    sized += bytes;
    const std::uint16_t crc = dwgCrc16(sized, 0xC0C1);
    out += sized;
    out += static_cast<char>(crc & 0xFF);
    out += static_cast<char>(crc >> 8);
    out.append(reinterpret_cast<const char*>(end), 16);
    return out;
}

}  // namespace

std::string DwgEncoder::headerSection() {
    BitWriter w;
    w.bitDouble(412148564080.0);
    w.bitDouble(1.0);
    w.bitDouble(1.0);
    w.bitDouble(1.0);
    w.text("m");
    w.text({});
    w.text({});
    w.text({});
    w.bitLong(24);
    w.bitLong(0);
    if (!r2000_) w.bitShort(0);
    w.handle(kHardPointer, 0);
    const auto flag = [&](std::string_view name, int fallback) { w.bit(headerInt(name, fallback) != 0); };
    const auto small = [&](std::string_view name, int fallback) {
        w.bitShort(static_cast<std::int16_t>(headerInt(name, fallback)));
    };
    const auto number = [&](std::string_view name, double fallback) {
        w.bitDouble(headerReal(name, fallback));
    };
    flag("$DIMASO", 1);
    flag("$DIMSHO", 1);
    if (!r2000_) w.bit(false);  // DIMSAV
    flag("$PLINEGEN", 0);
    flag("$ORTHOMODE", 0);
    flag("$REGENMODE", 1);
    flag("$FILLMODE", 1);
    flag("$QTEXTMODE", 0);
    flag("$PSLTSCALE", 1);
    flag("$LIMCHECK", 0);
    if (!r2000_) w.bit(false);  // BLIPMODE
    flag("$USRTIMER", 1);
    flag("$SKPOLY", 0);
    flag("$ANGDIR", 0);
    flag("$SPLFRAME", 0);
    if (!r2000_) {
        w.bit(true);   // ATTREQ
        w.bit(false);  // ATTDIA
    }
    flag("$MIRRTEXT", 1);
    flag("$WORLDVIEW", 1);
    if (!r2000_) w.bit(false);  // WIREFRAME
    flag("$TILEMODE", 1);
    flag("$PLIMCHECK", 0);
    flag("$VISRETAIN", 1);
    if (!r2000_) w.bit(true);  // DELOBJ
    flag("$DISPSILH", 0);
    w.bit(false);  // PELLIPSE
    small("$PROXYGRAPHICS", 1);
    if (!r2000_) w.bitShort(2);  // DRAGMODE
    small("$TREEDEPTH", 3020);
    small("$LUNITS", 2);
    small("$LUPREC", 4);
    small("$AUNITS", 0);
    small("$AUPREC", 0);
    if (!r2000_) w.bitShort(0);  // OSMODE
    small("$ATTMODE", 1);
    if (!r2000_) w.bitShort(1);  // COORDS
    small("$PDMODE", 0);
    if (!r2000_) w.bitShort(0);  // PICKSTYLE
    for (const char* name : {"$USERI1", "$USERI2", "$USERI3", "$USERI4", "$USERI5"}) small(name, 0);
    small("$SPLINESEGS", 8);
    small("$SURFU", 6);
    small("$SURFV", 6);
    small("$SURFTYPE", 6);
    small("$SURFTAB1", 6);
    small("$SURFTAB2", 6);
    small("$SPLINETYPE", 6);
    small("$SHADEDGE", 3);
    small("$SHADEDIF", 70);
    small("$UNITMODE", 0);
    small("$MAXACTVP", 64);
    small("$ISOLINES", 4);
    small("$CMLJUST", 0);
    small("$TEXTQLTY", 50);
    number("$LTSCALE", 1.0);
    number("$TEXTSIZE", 2.5);
    number("$TRACEWID", 1.0);
    number("$SKETCHINC", 1.0);
    number("$FILLETRAD", 0.0);
    number("$THICKNESS", 0.0);
    w.bitDouble(0.0);  // ANGBASE
    number("$PDSIZE", 0.0);
    number("$PLINEWID", 0.0);
    for (const char* name : {"$USERR1", "$USERR2", "$USERR3", "$USERR4", "$USERR5"}) number(name, 0.0);
    number("$CHAMFERA", 0.0);
    number("$CHAMFERB", 0.0);
    number("$CHAMFERC", 0.0);
    number("$CHAMFERD", 0.0);
    number("$FACETRES", 0.5);
    number("$CMLSCALE", 1.0);
    number("$CELTSCALE", 1.0);
    w.text("acad");
    for (int i = 0; i < 8; ++i) w.bitLong(0);
    w.bitShort(static_cast<std::int16_t>(headerInt("$CECOLOR", 256, 62)));
    w.handle(0, handseed_ + 1);
    w.handle(kHardPointer, nameToHandle("LAYER", headerText("$CLAYER", 8, "0")));
    w.handle(kHardPointer, nameToHandle("STYLE", headerText("$TEXTSTYLE", 7, "Standard")));
    w.handle(kHardPointer, nameToHandle("LTYPE", headerText("$CELTYPE", 6, "ByLayer")));
    w.handle(kHardPointer, nameToHandle("DIMSTYLE", headerText("$DIMSTYLE", 2, "Standard")));
    w.handle(kHardPointer, 0);  // CMLSTYLE
    if (r2000_) w.bitDouble(0.0);  // PSVPSCALE
    const ge::Point3d zero{};
    // The named system and the orthographic ones of a space: none of them kept.
    const auto orthographicUcs = [&] {
        w.handle(kHardPointer, 0);
        if (!r2000_) return;
        w.handle(kHardPointer, 0);
        w.bitShort(0);
        w.handle(kHardPointer, 0);
        for (int i = 0; i < 6; ++i) w.point3Bit(zero);
    };
    w.point3Bit(zero);
    w.point3Bit({1e20, 1e20, 1e20});
    w.point3Bit({-1e20, -1e20, -1e20});
    w.point2Raw(zero);
    w.point2Raw({12, 9, 0});
    w.bitDouble(0.0);
    w.point3Bit(zero);
    w.point3Bit({1, 0, 0});
    w.point3Bit({0, 1, 0});
    orthographicUcs();
    w.point3Bit(headerPoint("$INSBASE", zero));
    w.point3Bit(headerPoint("$EXTMIN", {1e20, 1e20, 1e20}));
    w.point3Bit(headerPoint("$EXTMAX", {-1e20, -1e20, -1e20}));
    w.point2Raw(headerPoint("$LIMMIN", zero));
    w.point2Raw(headerPoint("$LIMMAX", {420, 297, 0}));
    number("$ELEVATION", 0.0);
    w.point3Bit(headerPoint("$UCSORG", zero));
    w.point3Bit(headerPoint("$UCSXDIR", {1, 0, 0}));
    w.point3Bit(headerPoint("$UCSYDIR", {0, 1, 0}));
    orthographicUcs();
    if (r2000_) {
        w.text({});  // DIMPOST
        w.text({});  // DIMAPOST
    } else {
        // The dimension variables R14 keeps in its own order and forms.
        for (int i = 0; i < 11; ++i) w.bit(i == 2 || i == 3);
        w.rawChar(2);  // DIMALTD
        w.rawChar(0);  // DIMZIN
        w.bit(false);
        w.bit(false);
        w.rawChar(1);  // DIMTOLJ
        w.rawChar(0);  // DIMJUST
        w.rawChar(3);  // DIMFIT
        w.bit(false);
        for (int i = 0; i < 4; ++i) w.rawChar(0);
        for (const int v : {2, 0, 4, 4, 2, 2}) w.bitShort(static_cast<std::int16_t>(v));
        w.handle(kHardPointer, nameToHandle("STYLE", "Standard"));
    }
    number("$DIMSCALE", 1.0);
    number("$DIMASZ", 2.5);
    number("$DIMEXO", 0.625);
    number("$DIMDLI", 3.75);
    number("$DIMEXE", 1.25);
    for (int i = 0; i < 4; ++i) w.bitDouble(0.0);
    if (r2000_) {
        for (int i = 0; i < 6; ++i) w.bit(i == 2 || i == 3);
        w.bitShort(0);
        w.bitShort(0);
        w.bitShort(0);
    }
    number("$DIMTXT", 2.5);
    number("$DIMCEN", 2.5);
    w.bitDouble(0.0);   // DIMTSZ
    w.bitDouble(25.4);  // DIMALTF
    w.bitDouble(1.0);   // DIMLFAC
    w.bitDouble(0.0);   // DIMTVP
    w.bitDouble(1.0);   // DIMTFAC
    w.bitDouble(0.625); // DIMGAP
    if (!r2000_) {
        for (int i = 0; i < 5; ++i) w.text({});  // DIMPOST to DIMBLK2
    } else {
        w.bitDouble(0.0);  // DIMALTRND
        w.bit(false);
        w.bitShort(2);
        w.bit(false);
        w.bit(false);
        w.bit(false);
        w.bit(false);
    }
    w.bitShort(0);
    w.bitShort(0);
    w.bitShort(0);
    if (r2000_) {
        for (const int v : {0, 4, 4, 2, 2, 0, 0, 2, 46, 0, 0}) w.bitShort(static_cast<std::int16_t>(v));
        w.bit(false);
        w.bit(false);
        for (int i = 0; i < 4; ++i) w.bitShort(0);
        w.bit(false);
        w.bitShort(3);
        for (int i = 0; i < 5; ++i) w.handle(kHardPointer, 0);
        w.bitShort(-2);
        w.bitShort(-2);
    }
    for (const char* table : {"BLOCK_RECORD", "LAYER", "STYLE", "LTYPE", "VIEW", "UCS", "VPORT",
                              "APPID", "DIMSTYLE"}) {
        w.handle(kHardOwner, tables_[table].control);
    }
    w.handle(kHardOwner, 0);  // viewport entity headers
    std::uint64_t root = 0, groups = 0, layouts = 0, mlineStyles = 0, plotSettings = 0, plotStyles = 0;
    for (const DwgItem& item : items_) {
        if (item.type != "DICTIONARY" || item.owner != 0) continue;
        root = item.handle;
        for (std::size_t i = 0; i + 1 < item.tags.size(); ++i) {
            if (item.tags[i].first != 3) continue;
            const std::string& key = item.tags[i].second;
            const std::uint64_t target = parseHandle(item.tags[i + 1].second);
            if (key == "ACAD_GROUP") groups = target;
            if (key == "ACAD_LAYOUT") layouts = target;
            if (key == "ACAD_MLINESTYLE") mlineStyles = target;
            if (key == "ACAD_PLOTSETTINGS") plotSettings = target;
            if (key == "ACAD_PLOTSTYLENAME") plotStyles = target;
        }
        break;
    }
    w.handle(kHardPointer, groups);
    w.handle(kHardPointer, mlineStyles);
    w.handle(kHardOwner, root);
    if (r2000_) {
        w.bitShort(1);
        w.bitShort(70);
        w.text({});
        w.text({});
        w.handle(kHardPointer, layouts);
        w.handle(kHardPointer, plotSettings);
        w.handle(kHardPointer, plotStyles);
        w.bitLong(lineweightIndex(-1) | (headerInt("$LWDISPLAY", 0, 290) ? 0x200 : 0));
        small("$INSUNITS", 0);
        w.bitShort(0);  // plot style by layer
        w.text({});
        w.text({});
    }
    w.handle(kHardPointer, paperSpace_);
    w.handle(kHardPointer, modelSpace_);
    w.handle(kHardPointer, nameToHandle("LTYPE", "ByLayer"));
    w.handle(kHardPointer, nameToHandle("LTYPE", "ByBlock"));
    w.handle(kHardPointer, nameToHandle("LTYPE", "Continuous"));
    w.alignToByte();
    return framed(kHeaderStart, w.bytes(), kHeaderEnd);
}

std::string DwgEncoder::classesSection() {
    BitWriter w;
    for (const auto& [name, number] : classes_) {
        w.bitShort(static_cast<std::int16_t>(number));
        w.bitShort(0);
        w.text("ObjectDBX Classes");
        w.text(name == "DICTIONARYVAR"         ? "AcDbDictionaryVar"
               : name == "ACDBDICTIONARYWDFLT" ? "AcDbDictionaryWithDefault"
               : name == "SCALE"               ? "AcDbScale"
               : name == "SORTENTSTABLE"       ? "AcDbSortentsTable"
               : name == "LWPOLYLINE"          ? "AcDbPolyline"
               : name == "HATCH"               ? "AcDbHatch"
               : name == "XRECORD"             ? "AcDbXrecord"
               : name == "ACDBPLACEHOLDER"     ? "AcDbPlaceHolder"
               : name == "IMAGE"               ? "AcDbRasterImage"
               : name == "WIPEOUT"             ? "AcDbWipeout"
               : name == "IMAGEDEF"            ? "AcDbRasterImageDef"
               : name == "IMAGEDEF_REACTOR"    ? "AcDbRasterImageDefReactor"
                                               : "AcDbObject");
        w.text(name);
        w.bit(false);
        w.bitShort(isEntityClass(name) ? 0x1F2 : 0x1F3);
    }
    w.alignToByte();
    return framed(kClassesStart, w.bytes(), kClassesEnd);
}

}  // namespace cad::db::dwg
