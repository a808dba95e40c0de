// The header variables section of R13 to R2000 DWG files, in the order the format stores them.
#include "cad/db/dwg/DwgHeaderVariables.h"

#include <charconv>
#include <cmath>

#include "cad/db/dwg/BitReader.h"
#include "cad/sys/CaretText.h"

namespace cad::db::dwg {
namespace {

class Variables {
public:
    Variables(BitReader& reader, DwgHeaderVariables& out) : r_(reader), out_(out) {}

    void integer(const char* name, int code, std::int64_t value) {
        out_.variables.push_back({name, {DwgTag::ofInteger(code, value)}});
    }
    void real(const char* name, int code, double value) {
        out_.variables.push_back({name, {DwgTag::ofReal(code, value)}});
    }
    void point(const char* name, const ge::Point3d& p, bool withZ = true) {
        DwgHeaderVariable variable{name, {DwgTag::ofReal(10, p.x), DwgTag::ofReal(20, p.y)}};
        if (withZ) variable.tags.push_back(DwgTag::ofReal(30, p.z));
        out_.variables.push_back(std::move(variable));
    }
    void nameOf(const char* name, int code, std::uint64_t handle) {
        if (handle != 0) out_.variables.push_back({name, {DwgTag::ofName(code, handle)}});
    }
    void text(const char* name, int code, const std::string& value) {
        out_.variables.push_back({name, {DwgTag::ofText(code, sys::toCaretForm(value))}});
    }

    // Reads and keeps, or reads and skips (name null).
    void bit(const char* name, int code) {
        const bool value = r_.bit();
        if (name) integer(name, code, value ? 1 : 0);
    }
    void bitShort(const char* name, int code) {
        const std::int16_t value = r_.bitShort();
        if (name) integer(name, code, value);
    }
    void bitDouble(const char* name, int code) {
        const double value = r_.bitDouble();
        if (name) real(name, code, value);
    }
    void skipBits(int count) {
        for (int i = 0; i < count; ++i) r_.bit();
    }
    void skipShorts(int count) {
        for (int i = 0; i < count; ++i) r_.bitShort();
    }
    void skipDoubles(int count) {
        for (int i = 0; i < count; ++i) r_.bitDouble();
    }
    void skipPoints(int count) {
        for (int i = 0; i < count; ++i) r_.point3Bit();
    }

private:
    BitReader& r_;
    DwgHeaderVariables& out_;
};

}  // namespace

DwgHeaderVariables readHeaderVariables(std::string_view file, const DwgFileLayout& layout) {
    DwgHeaderVariables out;
    const auto start = static_cast<std::uint64_t>(layout.headerOffset);
    if (layout.headerOffset < 0 || start > file.size() || file.size() - start < 20) return out;
    std::uint32_t size = 0;
    for (int i = 3; i >= 0; --i) {
        size = (size << 8) | static_cast<std::uint8_t>(file[start + 16 + i]);
    }
    if (size > file.size() - start - 20) return out;
    BitReader r(file.substr(start + 20, size));
    Variables v(r, out);
    const bool r2000 = layout.version == DwgVersion::R2000;
    const bool r14 = !r2000;

    v.skipDoubles(4);
    for (int i = 0; i < 4; ++i) r.text();
    r.bitLong();
    r.bitLong();
    if (r14) r.bitShort();
    r.handle();  // the current viewport's entity header
    v.bit("$DIMASO", 70);
    v.bit("$DIMSHO", 70);
    if (r14) v.skipBits(1);  // DIMSAV
    v.bit("$PLINEGEN", 70);
    v.bit("$ORTHOMODE", 70);
    v.bit("$REGENMODE", 70);
    v.bit("$FILLMODE", 70);
    v.bit("$QTEXTMODE", 70);
    v.bit("$PSLTSCALE", 70);
    v.bit("$LIMCHECK", 70);
    if (r14) v.skipBits(1);  // BLIPMODE
    v.bit("$USRTIMER", 70);
    v.bit("$SKPOLY", 70);
    v.bit("$ANGDIR", 70);
    v.bit("$SPLFRAME", 70);
    if (r14) v.skipBits(2);  // ATTREQ, ATTDIA
    v.bit("$MIRRTEXT", 70);
    v.bit("$WORLDVIEW", 70);
    if (r14) v.skipBits(1);  // WIREFRAME
    v.bit("$TILEMODE", 70);
    v.bit("$PLIMCHECK", 70);
    v.bit("$VISRETAIN", 70);
    if (r14) v.skipBits(1);  // DELOBJ
    v.bit("$DISPSILH", 70);
    v.skipBits(1);  // PELLIPSE
    v.bitShort("$PROXYGRAPHICS", 70);
    if (r14) v.skipShorts(1);  // DRAGMODE
    v.bitShort("$TREEDEPTH", 70);
    v.bitShort("$LUNITS", 70);
    v.bitShort("$LUPREC", 70);
    v.bitShort("$AUNITS", 70);
    v.bitShort("$AUPREC", 70);
    if (r14) v.skipShorts(1);  // OSMODE
    v.bitShort("$ATTMODE", 70);
    if (r14) v.skipShorts(1);  // COORDS
    v.bitShort("$PDMODE", 70);
    if (r14) v.skipShorts(1);  // PICKSTYLE
    for (const char* name : {"$USERI1", "$USERI2", "$USERI3", "$USERI4", "$USERI5"}) {
        v.bitShort(name, 70);
    }
    v.bitShort("$SPLINESEGS", 70);
    v.bitShort("$SURFU", 70);
    v.bitShort("$SURFV", 70);
    v.bitShort("$SURFTYPE", 70);
    v.bitShort("$SURFTAB1", 70);
    v.bitShort("$SURFTAB2", 70);
    v.bitShort("$SPLINETYPE", 70);
    v.bitShort("$SHADEDGE", 70);
    v.bitShort("$SHADEDIF", 70);
    v.bitShort("$UNITMODE", 70);
    v.bitShort("$MAXACTVP", 70);
    v.bitShort("$ISOLINES", 70);
    v.bitShort("$CMLJUST", 70);
    v.bitShort("$TEXTQLTY", 70);
    v.bitDouble("$LTSCALE", 40);
    v.bitDouble("$TEXTSIZE", 40);
    v.bitDouble("$TRACEWID", 40);
    v.bitDouble("$SKETCHINC", 40);
    v.bitDouble("$FILLETRAD", 40);
    v.bitDouble("$THICKNESS", 40);
    r.bitDouble();  // ANGBASE
    v.bitDouble("$PDSIZE", 40);
    v.bitDouble("$PLINEWID", 40);
    for (const char* name : {"$USERR1", "$USERR2", "$USERR3", "$USERR4", "$USERR5"}) {
        v.bitDouble(name, 40);
    }
    v.bitDouble("$CHAMFERA", 40);
    v.bitDouble("$CHAMFERB", 40);
    v.bitDouble("$CHAMFERC", 40);
    v.bitDouble("$CHAMFERD", 40);
    v.bitDouble("$FACETRES", 40);
    v.bitDouble("$CMLSCALE", 40);
    v.bitDouble("$CELTSCALE", 40);
    r.text();  // MENUNAME
    for (int i = 0; i < 8; ++i) r.bitLong();  // TDCREATE, TDUPDATE, TDINDWG, TDUSRTIMER
    const std::int16_t color = r.bitShort();
    out.handseed = r.handle().value;
    const std::uint64_t layer = r.handle().value;
    const std::uint64_t textStyle = r.handle().value;
    const std::uint64_t linetype = r.handle().value;
    const std::uint64_t dimStyle = r.handle().value;
    r.handle();  // CMLSTYLE
    if (r2000) v.bitDouble("$PSVPSCALE", 40);
    v.skipPoints(3);  // paper space INSBASE, EXTMIN, EXTMAX
    r.point2Raw();
    r.point2Raw();
    r.bitDouble();
    v.skipPoints(3);
    r.handle();
    if (r2000) {
        r.handle();
        r.bitShort();
        r.handle();
        v.skipPoints(6);
    }
    v.point("$INSBASE", r.point3Bit());
    v.point("$EXTMIN", r.point3Bit());
    v.point("$EXTMAX", r.point3Bit());
    v.point("$LIMMIN", r.point2Raw(), false);
    v.point("$LIMMAX", r.point2Raw(), false);
    v.real("$ELEVATION", 40, r.bitDouble());
    v.point("$UCSORG", r.point3Bit());
    v.point("$UCSXDIR", r.point3Bit());
    v.point("$UCSYDIR", r.point3Bit());
    r.handle();  // UCSNAME
    if (r2000) {
        r.handle();
        r.bitShort();
        r.handle();
        v.skipPoints(6);
        r.text();  // DIMPOST
        r.text();  // DIMAPOST
    }
    if (r14) {
        v.skipBits(11);
        r.rawChar();
        r.rawChar();
        v.skipBits(2);
        r.rawChar();
        r.rawChar();
        r.rawChar();
        v.skipBits(1);
        for (int i = 0; i < 4; ++i) r.rawChar();
        v.skipShorts(6);
        r.handle();  // DIMTXSTY
    }
    v.bitDouble("$DIMSCALE", 40);
    v.bitDouble("$DIMASZ", 40);
    v.bitDouble("$DIMEXO", 40);
    v.bitDouble("$DIMDLI", 40);
    v.bitDouble("$DIMEXE", 40);
    v.skipDoubles(4);  // DIMRND, DIMDLE, DIMTP, DIMTM
    if (r2000) {
        v.skipBits(6);
        v.skipShorts(3);
    }
    v.bitDouble("$DIMTXT", 40);
    v.bitDouble("$DIMCEN", 40);
    v.skipDoubles(6);  // DIMTSZ to DIMGAP
    if (r14) {
        for (int i = 0; i < 5; ++i) r.text();
    } else {
        r.bitDouble();
        r.bit();
        r.bitShort();
        v.skipBits(4);
    }
    v.skipShorts(3);  // DIMCLRD, DIMCLRE, DIMCLRT
    if (r2000) {
        v.skipShorts(11);
        v.skipBits(2);
        v.skipShorts(4);
        v.skipBits(1);
        v.skipShorts(1);
        for (int i = 0; i < 5; ++i) r.handle();
        v.skipShorts(2);
    }
    for (int i = 0; i < 9; ++i) r.handle();  // the symbol tables
    r.handle();                              // viewport entity headers
    r.handle();                              // ACAD_GROUP
    r.handle();                              // ACAD_MLINESTYLE
    out.namedObjects = r.handle().value;
    if (r2000) {
        r.bitShort();
        r.bitShort();
        r.text();
        r.text();
        r.handle();
        r.handle();
        r.handle();
        const std::int32_t flags = r.bitLong();
        v.integer("$LWDISPLAY", 290, (flags & 0x200) ? 1 : 0);
        v.bitShort("$INSUNITS", 70);
    }
    if (r.failed()) {
        out = DwgHeaderVariables{};
        return out;
    }
    v.integer("$CECOLOR", 62, color);
    v.nameOf("$CLAYER", 8, layer);
    v.nameOf("$TEXTSTYLE", 7, textStyle);
    v.nameOf("$CELTYPE", 6, linetype);
    v.nameOf("$DIMSTYLE", 2, dimStyle);
    out.complete = true;
    return out;
}

}  // namespace cad::db::dwg
