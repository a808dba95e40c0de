// The content every new drawing starts with (the standard table records, model and paper
// space with their layouts, the named-objects dictionary and the header variables) and the
// accessors of the well-known objects.
#include <memory>
#include <string>
#include <vector>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/DimStyleTableRecord.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Layout.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/RawObject.h"
#include "cad/db/RegAppTableRecord.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/ViewportTableRecord.h"

namespace cad::db {

ObjectId Database::blockTableId() const {
    return ids_.blockTable;
}
ObjectId Database::layerTableId() const {
    return ids_.layerTable;
}
ObjectId Database::linetypeTableId() const {
    return ids_.linetypeTable;
}
ObjectId Database::textStyleTableId() const {
    return ids_.textStyleTable;
}
ObjectId Database::viewTableId() const {
    return ids_.viewTable;
}
ObjectId Database::ucsTableId() const {
    return ids_.ucsTable;
}
ObjectId Database::viewportTableId() const {
    return ids_.viewportTable;
}
ObjectId Database::regAppTableId() const {
    return ids_.regAppTable;
}
ObjectId Database::dimStyleTableId() const {
    return ids_.dimStyleTable;
}
ObjectId Database::namedObjectsDictionaryId() const {
    return ids_.namedObjects;
}
ObjectId Database::groupDictionaryId() const {
    return ids_.groupDictionary;
}
ObjectId Database::layoutDictionaryId() const {
    return ids_.layoutDictionary;
}
ObjectId Database::modelSpaceId() const {
    return ids_.modelSpace;
}
ObjectId Database::paperSpaceId() const {
    return ids_.paperSpace;
}
ObjectId Database::layerZero() const {
    return ids_.layerZero;
}
ObjectId Database::byLayerLinetype() const {
    return ids_.byLayer;
}
ObjectId Database::byBlockLinetype() const {
    return ids_.byBlock;
}
ObjectId Database::continuousLinetype() const {
    return ids_.continuous;
}
ObjectId Database::textStyleStandard() const {
    return ids_.standardStyle;
}

ObjectId Database::clayer() const {
    return ids_.clayer.isNull() ? ids_.layerZero : ids_.clayer;
}

ErrorStatus Database::setClayer(ObjectId layer) {
    if (layer.isNull()) return ErrorStatus::eNullObjectId;
    if (layer.database() != this) return ErrorStatus::eWrongDatabase;
    auto record = open<LayerTableRecord>(layer, OpenMode::ForRead);
    if (!record) return record.openStatus();
    ids_.clayer = layer;
    header_.setText("$CLAYER", 8, record->name());
    return ErrorStatus::eOk;
}

namespace {

RawTag tag(int code, std::string value) {
    return RawTag{code, std::move(value)};
}

std::vector<RawTag> point2d(const char* x, const char* y) {
    return {tag(10, x), tag(20, y)};
}

std::vector<RawTag> point3d(const char* x, const char* y, const char* z) {
    return {tag(10, x), tag(20, y), tag(30, z)};
}

// The header of a new metric drawing in the order the host writes it. $ACADVER and
// $HANDSEED are brought up to date by the writer.
void defaultHeader(HeaderVariables& header, Handle handseed) {
    const char* kHuge = "1e+20";
    const char* kMinusHuge = "-1e+20";
    header.set("$ACADVER", {tag(1, "AC1015")});
    header.set("$ACADMAINTVER", {tag(70, "6")});
    header.set("$DWGCODEPAGE", {tag(3, "ANSI_949")});
    header.set("$INSBASE", point3d("0.0", "0.0", "0.0"));
    header.set("$EXTMIN", point3d(kHuge, kHuge, kHuge));
    header.set("$EXTMAX", point3d(kMinusHuge, kMinusHuge, kMinusHuge));
    header.set("$LIMMIN", point2d("0.0", "0.0"));
    header.set("$LIMMAX", point2d("420.0", "297.0"));
    header.set("$ORTHOMODE", {tag(70, "0")});
    header.set("$REGENMODE", {tag(70, "1")});
    header.set("$FILLMODE", {tag(70, "1")});
    header.set("$QTEXTMODE", {tag(70, "0")});
    header.set("$MIRRTEXT", {tag(70, "1")});
    header.set("$LTSCALE", {tag(40, "1.0")});
    header.set("$ATTMODE", {tag(70, "1")});
    header.set("$TEXTSIZE", {tag(40, "2.5")});
    header.set("$TRACEWID", {tag(40, "1.0")});
    header.set("$TEXTSTYLE", {tag(7, "Standard")});
    header.set("$CLAYER", {tag(8, "0")});
    header.set("$CELTYPE", {tag(6, "ByLayer")});
    header.set("$CECOLOR", {tag(62, "256")});
    header.set("$CELTSCALE", {tag(40, "1.0")});
    header.set("$DIMSTYLE", {tag(2, "Standard")});
    header.set("$LUNITS", {tag(70, "2")});
    header.set("$LUPREC", {tag(70, "4")});
    header.set("$AUNITS", {tag(70, "0")});
    header.set("$AUPREC", {tag(70, "0")});
    header.set("$MENU", {tag(1, ".")});
    header.set("$ELEVATION", {tag(40, "0.0")});
    header.set("$PDMODE", {tag(70, "0")});
    header.set("$PDSIZE", {tag(40, "0.0")});
    header.set("$PLINEWID", {tag(40, "0.0")});
    header.set("$HANDSEED", {tag(5, handseed.toHex())});
    header.set("$TILEMODE", {tag(70, "1")});
    header.set("$PINSBASE", point3d("0.0", "0.0", "0.0"));
    header.set("$PLIMMIN", point2d("0.0", "0.0"));
    header.set("$PLIMMAX", point2d("420.0", "297.0"));
    header.set("$CMLSTYLE", {tag(2, "Standard")});
    header.set("$MEASUREMENT", {tag(70, "1")});
    header.set("$CELWEIGHT", {tag(370, "-1")});
    header.set("$LWDISPLAY", {tag(290, "0")});
    header.set("$INSUNITS", {tag(70, "4")});
    header.set("$PSTYLEMODE", {tag(290, "1")});
    header.set("$EXTNAMES", {tag(290, "1")});
}

// The standard multiline style every drawing from R2000 on carries; the engine does not
// model multilines, so it is kept as the tags the host writes for it.
std::vector<RawTag> standardMlineStyle() {
    return {tag(100, "AcDbMlineStyle"),
            tag(2, "Standard"),
            tag(70, "0"),
            tag(3, ""),
            tag(62, "256"),
            tag(51, "90.0"),
            tag(52, "90.0"),
            tag(71, "2"),
            tag(49, "0.5"),
            tag(62, "256"),
            tag(6, "BYLAYER"),
            tag(49, "-0.5"),
            tag(62, "256"),
            tag(6, "BYLAYER")};
}

template <class Record>
ObjectId addRecord(ObjectId table, std::unique_ptr<Record> record) {
    ObjectId id;
    if (auto t = open<SymbolTable>(table, OpenMode::ForWrite))
        t->add(std::unique_ptr<SymbolTableRecord>(std::move(record)), id);
    return id;
}

template <class Record>
std::unique_ptr<Record> named(std::string_view name) {
    auto record = std::make_unique<Record>();
    record->setName(name);
    return record;
}

ObjectId addLayout(ObjectId layoutDictionary, std::string_view name, std::int16_t tabOrder,
                   std::int16_t plotFlags, ObjectId blockRecord) {
    auto layout = std::make_unique<Layout>();
    layout->setLayoutName(std::string(name));
    layout->setTabOrder(tabOrder);
    layout->setBlockTableRecordId(blockRecord);
    PlotSettings::Values values;
    values.layoutFlags = plotFlags;
    layout->setPlotSettings(values);
    ObjectId id;
    if (auto layouts = open<Dictionary>(layoutDictionary, OpenMode::ForWrite))
        layouts->setAt(name, std::move(layout), id);
    if (auto record = open<BlockTableRecord>(blockRecord, OpenMode::ForWrite))
        record->setLayoutId(id);
    return id;
}

}  // namespace

void Database::buildDefaultDrawing() {
    // Tables first, in the order of the TABLES section, so they get the low handles.
    const std::pair<SymbolTableKind, ObjectId*> tables[] = {
        {SymbolTableKind::Viewport, &ids_.viewportTable},
        {SymbolTableKind::Linetype, &ids_.linetypeTable},
        {SymbolTableKind::Layer, &ids_.layerTable},
        {SymbolTableKind::TextStyle, &ids_.textStyleTable},
        {SymbolTableKind::View, &ids_.viewTable},
        {SymbolTableKind::Ucs, &ids_.ucsTable},
        {SymbolTableKind::RegApp, &ids_.regAppTable},
        {SymbolTableKind::DimStyle, &ids_.dimStyleTable},
        {SymbolTableKind::BlockRecord, &ids_.blockTable},
    };
    for (const auto& [kind, id] : tables)
        addObject(std::make_unique<SymbolTable>(kind), *id, ObjectId::kNull);
    addObject(std::make_unique<Dictionary>(), ids_.namedObjects, ObjectId::kNull);

    // The named-objects dictionary with the entries a new drawing of the host has. The plot
    // style dictionary is a dictionary with a default entry, which the engine keeps raw; its
    // "Normal" placeholder is what layers name as their plot style.
    ObjectId placeholder;
    addObject(std::make_unique<RawObject>("ACDBPLACEHOLDER", "AcDbPlaceHolder"), placeholder,
              ObjectId::kNull);
    ObjectId mlineStyles;
    {
        auto root = open<Dictionary>(ids_.namedObjects, OpenMode::ForWrite);
        root->setAt("ACAD_GROUP", std::make_unique<Dictionary>(), ids_.groupDictionary);
        root->setAt("ACAD_LAYOUT", std::make_unique<Dictionary>(), ids_.layoutDictionary);
        root->setAt("ACAD_MLINESTYLE", std::make_unique<Dictionary>(), mlineStyles);
        ObjectId unused;
        root->setAt("ACAD_PLOTSETTINGS", std::make_unique<Dictionary>(), unused);
        const std::string normal = placeholder.handle().toHex();
        root->setAt(
            "ACAD_PLOTSTYLENAME",
            std::make_unique<RawObject>(
                "ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault",
                std::vector<RawTag>{tag(100, "AcDbDictionary"), tag(281, "1"), tag(3, "Normal"),
                                    tag(350, normal), tag(100, "AcDbDictionaryWithDefault"),
                                    tag(340, normal)}),
            unused);
        if (auto ph = open<DbObject>(placeholder, OpenMode::ForWrite)) ph->setOwnerId(unused);
    }
    if (auto styles = open<Dictionary>(mlineStyles, OpenMode::ForWrite)) {
        ObjectId unused;
        styles->setAt(
            "Standard",
            std::make_unique<RawObject>("MLINESTYLE", "AcDbMlineStyle", standardMlineStyle()),
            unused);
    }

    ids_.byBlock = addRecord(ids_.linetypeTable, named<LinetypeTableRecord>("ByBlock"));
    ids_.byLayer = addRecord(ids_.linetypeTable, named<LinetypeTableRecord>("ByLayer"));
    auto continuous = named<LinetypeTableRecord>("Continuous");
    continuous->setComments("Solid line");
    ids_.continuous = addRecord(ids_.linetypeTable, std::move(continuous));

    auto zero = named<LayerTableRecord>("0");
    zero->setColorIndex(7);
    zero->setLinetypeObjectId(ids_.continuous);
    zero->setPlotStyleNameId(placeholder);
    ids_.layerZero = addRecord(ids_.layerTable, std::move(zero));
    ids_.clayer = ids_.layerZero;

    auto standard = named<TextStyleTableRecord>("Standard");
    standard->setFileName("txt");
    ids_.standardStyle = addRecord(ids_.textStyleTable, std::move(standard));

    auto dimStyle = named<DimStyleTableRecord>("Standard");
    dimStyle->setDimtxsty(ids_.standardStyle);
    addRecord(ids_.dimStyleTable, std::move(dimStyle));
    addRecord(ids_.regAppTable, named<RegAppTableRecord>("ACAD"));

    // The active viewport shows the limits of an A3 sheet.
    auto active = named<ViewportTableRecord>(ViewportTableRecord::kActive);
    active->setCenterPoint({210.0, 148.5});
    active->setHeight(297.0);
    active->setWidth(420.0);
    addRecord(ids_.viewportTable, std::move(active));

    ids_.modelSpace =
        addRecord(ids_.blockTable, named<BlockTableRecord>(BlockTableRecord::kModelSpace));
    ids_.paperSpace =
        addRecord(ids_.blockTable, named<BlockTableRecord>(BlockTableRecord::kPaperSpace));
    addLayout(ids_.layoutDictionary, Layout::kModelName, 0, 1024, ids_.modelSpace);
    addLayout(ids_.layoutDictionary, "Layout1", 1, 0, ids_.paperSpace);

    defaultHeader(header_, handseed_);
}

}  // namespace cad::db
