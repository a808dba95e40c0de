// The types the engine models, by their DXF record names.
#include "cad/db/dxf/ObjectFactory.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "cad/db/Arc.h"
#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Dictionary.h"
#include "cad/db/DimStyleTableRecord.h"
#include "cad/db/Ellipse.h"
#include "cad/db/Group.h"
#include "cad/db/Hatch.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Layout.h"
#include "cad/db/Line.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/MText.h"
#include "cad/db/Point.h"
#include "cad/db/Polyline.h"
#include "cad/db/Polyline2d.h"
#include "cad/db/Polyline3d.h"
#include "cad/db/RawEntity.h"
#include "cad/db/RawObject.h"
#include "cad/db/RegAppTableRecord.h"
#include "cad/db/SequenceEnd.h"
#include "cad/db/Solid.h"
#include "cad/db/Spline.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/Text.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/UcsTableRecord.h"
#include "cad/db/Vertex2d.h"
#include "cad/db/Vertex3d.h"
#include "cad/db/ViewTableRecord.h"
#include "cad/db/ViewportTableRecord.h"
#include "cad/db/Xrecord.h"

namespace cad::db::dxf {
namespace {

using Creator = std::unique_ptr<DbObject> (*)();

template <class T>
std::unique_ptr<DbObject> make() {
    return std::make_unique<T>();
}

// Sorted by name for the binary search below.
constexpr std::pair<std::string_view, Creator> kTypes[] = {
    {"APPID", make<RegAppTableRecord>},
    {"ARC", make<Arc>},
    {"ATTDEF", make<AttributeDefinition>},
    {"ATTRIB", make<Attribute>},
    {"BLOCK", make<BlockBegin>},
    {"BLOCK_RECORD", make<BlockTableRecord>},
    {"CIRCLE", make<Circle>},
    {"DICTIONARY", make<Dictionary>},
    {"DIMSTYLE", make<DimStyleTableRecord>},
    {"ELLIPSE", make<Ellipse>},
    {"ENDBLK", make<BlockEnd>},
    {"GROUP", make<Group>},
    {"HATCH", make<Hatch>},
    {"INSERT", make<BlockReference>},
    {"LAYER", make<LayerTableRecord>},
    {"LAYOUT", make<Layout>},
    {"LINE", make<Line>},
    {"LTYPE", make<LinetypeTableRecord>},
    {"LWPOLYLINE", make<Polyline>},
    {"MTEXT", make<MText>},
    {"POINT", make<Point>},
    {"SEQEND", make<SequenceEnd>},
    {"SOLID", make<Solid>},
    {"SPLINE", make<Spline>},
    {"STYLE", make<TextStyleTableRecord>},
    {"TABLE", make<SymbolTable>},
    {"TEXT", make<Text>},
    {"UCS", make<UcsTableRecord>},
    {"VIEW", make<ViewTableRecord>},
    {"VPORT", make<ViewportTableRecord>},
    {"XRECORD", make<Xrecord>},
};
static_assert(std::is_sorted(std::begin(kTypes), std::end(kTypes),
                             [](const auto& a, const auto& b) { return a.first < b.first; }));

Creator find(std::string_view dxfName) {
    const auto* end = std::end(kTypes);
    const auto* it = std::lower_bound(
        std::begin(kTypes), end, dxfName,
        [](const auto& entry, std::string_view name) { return entry.first < name; });
    return it != end && it->first == dxfName ? it->second : nullptr;
}

// The flags (70) of a POLYLINE or VERTEX, 0 when it has none that parse.
std::int16_t flagsOf(TagSpan tags) {
    for (const Tag& tag : tags) {
        if (tag.code == 70) {
            const auto value = toInt(tag);
            return value ? static_cast<std::int16_t>(*value) : 0;
        }
    }
    return 0;
}

}  // namespace

std::unique_ptr<DbObject> ObjectFactory::create(std::string_view dxfName,
                                                std::string_view className, Placement placement,
                                                TagSpan tags) {
    if (dxfName == "POLYLINE") {
        const std::int16_t flags = flagsOf(tags);
        if ((flags & Polyline2d::k3dKinds) != 0) return std::make_unique<Polyline3d>(flags);
        return std::make_unique<Polyline2d>();
    }
    if (dxfName == "VERTEX") {
        const std::int16_t flags = flagsOf(tags);
        if (Vertex::isVertex3dFlags(flags)) return std::make_unique<Vertex3d>(flags);
        return std::make_unique<Vertex2d>();
    }
    if (const Creator creator = find(dxfName)) return creator();
    if (placement == Placement::Entity) {
        return std::make_unique<RawEntity>(
            std::string(dxfName), className.empty() ? "AcDbEntity" : std::string(className));
    }
    return std::make_unique<RawObject>(std::string(dxfName), std::string(className));
}

bool ObjectFactory::isModelled(std::string_view dxfName) {
    return dxfName == "POLYLINE" || dxfName == "VERTEX" || find(dxfName) != nullptr;
}

}  // namespace cad::db::dxf
