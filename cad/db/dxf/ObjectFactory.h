// Makes the object a DXF structure describes: the class the engine models for its type, or a
// raw object or entity that keeps the tags of a type it does not model.
#pragma once

#include <memory>
#include <string_view>

#include "cad/db/DbObject.h"
#include "cad/db/dxf/DxfStructure.h"

namespace cad::db::dxf {

class ObjectFactory {
public:
    // Where the structure stands decides what an unknown type is: in BLOCKS and ENTITIES it
    // is drawn, so it becomes a raw entity (listed in its block, with layer and colour); in
    // TABLES and OBJECTS a raw object.
    enum class Placement { Object, Entity };

    // A new object for the record type `dxfName` ("LINE", "DICTIONARY", "LAYER"). `className`
    // names the class of an unknown type (from CLASSES or its last subclass marker). `tags`
    // (the structure, its 0 tag first) decide between the classes of one type: a POLYLINE or
    // VERTEX is 2D or 3D by its flags (70).
    static std::unique_ptr<DbObject> create(std::string_view dxfName, std::string_view className,
                                            Placement placement, TagSpan tags = {});
    // True when `dxfName` is a type the engine models (not kept raw).
    static bool isModelled(std::string_view dxfName);
};

}  // namespace cad::db::dxf
