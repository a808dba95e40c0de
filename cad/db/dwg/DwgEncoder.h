// Encodes a drawing's DXF structures as DWG 2000 or R14 records: the common part every record
// has here, the fields per family in files of their own (entities, annotations, tables,
// objects), the header variables and classes, and the file around them in DwgWriter.cpp.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cad/db/dwg/BitWriter.h"
#include "cad/db/dwg/DwgItem.h"
#include "cad/db/dxf/DxfStructure.h"
#include "cad/sys/AsciiCase.h"

namespace cad::db::dwg {

// DXF angles are degrees; DWG stores radians.
inline constexpr double kRadians = std::numbers::pi / 180.0;

// Handle codes of the references a record holds.
inline constexpr std::uint8_t kSoftOwner = 2, kHardOwner = 3, kSoftPointer = 4, kHardPointer = 5;

// One record being encoded: its data stream and its handle stream.
struct EncodedRecord {
    BitWriter data;
    BitWriter handles;
    std::size_t sizeAt = 0;  // where the size in bits goes, once known
};

class DwgEncoder {
public:
    DwgEncoder(std::vector<DwgItem>& items, std::vector<std::string>& messages,
               const dxf::DxfStructure& structure, bool r2000)
        : items_(items), messages_(messages), structure_(structure), r2000_(r2000) {}

    // The whole file.
    std::string file();

private:
    struct Table {
        std::uint64_t control = 0;
        std::vector<std::uint64_t> entries;
    };

    std::uint64_t nameToHandle(std::string_view table, const std::string& name) const {
        const auto it = names_.find(std::string(table) + "\n" + sys::asciiUpper(name));
        return it == names_.end() ? 0 : it->second;
    }
    std::string headerText(std::string_view name, int code, std::string fallback = {}) const {
        if (const dxf::HeaderVariable* v = structure_.variable(name)) {
            for (const dxf::Tag& tag : v->tags) {
                if (tag.code == code) return std::string(dxf::trimBlanks(tag.value));
            }
        }
        return fallback;
    }
    double headerReal(std::string_view name, double fallback, int code = 40) const {
        const std::string v = headerText(name, code);
        return v.empty() ? fallback : std::strtod(v.c_str(), nullptr);
    }
    int headerInt(std::string_view name, int fallback, int code = 70) const {
        const std::string v = headerText(name, code);
        return v.empty() ? fallback : static_cast<int>(std::strtol(v.c_str(), nullptr, 10));
    }
    ge::Point3d headerPoint(std::string_view name, const ge::Point3d& fallback) const {
        return {headerReal(name, fallback.x, 10), headerReal(name, fallback.y, 20),
                headerReal(name, fallback.z, 30)};
    }

    void index();
    std::optional<int> typeOf(const DwgItem& item) const;
    bool isEntity(int type) const {
        if (type >= 500) return isEntityClass(classNameOf(type));
        return type < 0x2A || (type >= 0x2B && type <= 0x2F) || type == 0x4D || type == 0x4E;
    }
    static bool isEntityClass(std::string_view name) {
        return name == "LWPOLYLINE" || name == "HATCH" || name == "IMAGE" || name == "WIPEOUT";
    }
    // The DXF name of a class number; empty when no class has it.
    std::string_view classNameOf(int number) const {
        for (const auto& [name, n] : classes_) {
            if (n == number) return name;
        }
        return {};
    }
    // The entities an INSERT or POLYLINE owns of the given type, and its SEQEND.
    std::pair<std::vector<std::uint64_t>, std::uint64_t> childrenOf(const DwgItem& item,
                                                                   std::string_view type);
    // A polyline's links to its first and last vertex and its SEQEND.
    void vertexLinks(EncodedRecord& r, const DwgItem& item);

    // Type, size, handle and extended data: how every record starts.
    void recordStart(EncodedRecord& r, const DwgItem& item, int type, bool entity);
    void commonObject(EncodedRecord& r, const DwgItem& item, int type);
    void commonEntity(EncodedRecord& r, const DwgItem& item, int type);
    void extendedData(BitWriter& w, const DwgItem& item);
    void tableEntryStart(EncodedRecord& r, const DwgItem& item, int flags);
    // The coordinate system of a view, a viewport or a viewport entity.
    void ucsData(BitWriter& d, const DwgItem& item);
    // What views and viewports share after their names: size, view, clipping, mode bits.
    void viewStart(EncodedRecord& r, const DwgItem& item, double width, int center, int target,
                   int direction, int twist);
    // False: a type the encoder does not write (left out and counted).
    bool encode(EncodedRecord& r, const DwgItem& item, int type);
    bool encodeEntity(EncodedRecord& r, const DwgItem& item, int type);
    bool encodeAnnotation(EncodedRecord& r, const DwgItem& item, int type);
    bool encodeTableRecord(EncodedRecord& r, const DwgItem& item, int type);
    bool encodeObject(EncodedRecord& r, const DwgItem& item, int type);
    void dictionary(EncodedRecord& r, const DwgItem& item, int type, bool withDefault);
    void raster(EncodedRecord& r, const DwgItem& item, int type);
    void imageDefinition(EncodedRecord& r, const DwgItem& item, int type);
    // A symbol table's control object, from its TABLE structure; empty for a table DWG lacks.
    std::string control(const DwgItem& table);
    std::string finish(EncodedRecord& r);
    std::string headerSection();
    std::string classesSection();

    std::vector<DwgItem>& items_;
    std::vector<std::string>& messages_;
    const dxf::DxfStructure& structure_;
    std::unordered_map<std::string, std::uint64_t> names_;  // "LAYER\nNAME" -> handle
    std::map<std::string, Table> tables_;                    // by DXF table name
    std::unordered_map<std::uint64_t, const DwgItem*> byHandle_;
    // Entities of each owner in drawing order, for the previous/next links.
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> owned_;
    std::unordered_map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> links_;
    std::unordered_map<std::uint64_t, std::uint64_t> blockOf_;  // BLOCK or ENDBLK -> record
    std::unordered_map<std::uint64_t, std::pair<std::uint64_t, std::uint64_t>> blockEnds_;
    std::uint64_t modelSpace_ = 0, paperSpace_ = 0, handseed_ = 0;
    std::vector<std::pair<std::string, int>> classes_;  // DXF name, number
    std::map<std::string, int> leftOut_;
    std::vector<std::uint64_t> linetypeOrder_;  // the linetype control's counted entries
    bool r2000_ = true;  // false: R14
    int number_ = 0;     // the type number the record carries, when a class gives it
    int codePage_ = 30;
};

}  // namespace cad::db::dwg
