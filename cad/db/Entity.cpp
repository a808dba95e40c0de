// The common entity part: the AcDbEntity subclass, property setters, database defaults,
// extents boxes, and the default transformed copy and explode.
#include "cad/db/Entity.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"

namespace cad::db {

namespace {

template <class T>
std::optional<T> headerNumber(const Database& db, std::string_view name) {
    const std::optional<std::string> text = db.header().text(name);
    if (!text) return std::nullopt;
    T value{};
    const char* first = text->data();
    while (first != text->data() + text->size() && *first == ' ') ++first;
    const auto [ptr, ec] = std::from_chars(first, text->data() + text->size(), value);
    if (ec != std::errc{}) return std::nullopt;
    return value;
}

}  // namespace

void Extents3d::addPoint(const ge::Point3d& p) {
    minPoint = {std::min(minPoint.x, p.x), std::min(minPoint.y, p.y), std::min(minPoint.z, p.z)};
    maxPoint = {std::max(maxPoint.x, p.x), std::max(maxPoint.y, p.y), std::max(maxPoint.z, p.z)};
}

void Extents3d::addExtents(const Extents3d& other) {
    if (other.isEmpty()) return;
    addPoint(other.minPoint);
    addPoint(other.maxPoint);
}

ErrorStatus Entity::setLayer(ObjectId layer) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (layer.isNull()) return ErrorStatus::eNullObjectId;
    layer_ = layer;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setColorIndex(std::int16_t index) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (index < kColorByBlock || index > kColorByLayer) return ErrorStatus::eInvalidInput;
    colorIndex_ = index;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setTrueColor(std::int32_t rgb) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (rgb < -1 || rgb > 0xFFFFFF) return ErrorStatus::eInvalidInput;
    trueColor_ = rgb;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setLinetype(ObjectId linetype) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (linetype.isNull()) return ErrorStatus::eNullObjectId;
    linetype_ = linetype;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setLinetypeScale(double scale) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!(scale > 0.0)) return ErrorStatus::eInvalidInput;
    linetypeScale_ = scale;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setVisibility(bool visible) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    visible_ = visible;
    return ErrorStatus::eOk;
}

ErrorStatus Entity::setLineWeight(std::int16_t weight) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (weight < -3 || weight > 211) return ErrorStatus::eInvalidInput;
    lineWeight_ = weight;
    return ErrorStatus::eOk;
}

void Entity::setDatabaseDefaults(const Database& db) {
    layer_ = db.clayer();
    // New entities follow their layer's linetype; $CELTYPE naming another one is rare in the
    // drawings the module writes into and is not looked up.
    linetype_ = db.byLayerLinetype();
    colorIndex_ = headerNumber<std::int16_t>(db, "$CECOLOR").value_or(kColorByLayer);
    linetypeScale_ = headerNumber<double>(db, "$CELTSCALE").value_or(1.0);
    lineWeight_ = headerNumber<std::int16_t>(db, "$CELWEIGHT").value_or(-1);
}

void Entity::setPropertiesFrom(const Entity& other) {
    layer_ = other.layer_;
    linetype_ = other.linetype_;
    colorIndex_ = other.colorIndex_;
    trueColor_ = other.trueColor_;
    linetypeScale_ = other.linetypeScale_;
    visible_ = other.visible_;
    lineWeight_ = other.lineWeight_;
}

void Entity::dxfFields(DxfFiler& filer) {
    filer.subclass("AcDbEntity");
    std::int16_t paperSpace = paperSpace_ ? 1 : 0;
    filer.int16(67, paperSpace, 0);
    filer.symbol(8, layer_, DxfFiler::SymbolTable::Layer);
    // ByLayer is not written; an entity that never had a linetype counts as ByLayer too.
    const Database* db = database();
    const ObjectId byLayer =
        db != nullptr && !linetype_.isNull() ? db->byLayerLinetype() : ObjectId::kNull;
    filer.symbol(6, linetype_, DxfFiler::SymbolTable::Linetype, byLayer);
    filer.int16(62, colorIndex_, kColorByLayer);
    if (filer.atLeast(DxfVersion::R2000)) filer.int16(370, lineWeight_, -1);
    filer.real(48, linetypeScale_, 1.0);
    std::int16_t invisible = visible_ ? 0 : 1;
    filer.int16(60, invisible, 0);
    if (filer.atLeast(DxfVersion::R2004)) filer.int32(420, trueColor_, -1);
    if (filer.isReading()) {
        paperSpace_ = paperSpace != 0;
        visible_ = invisible == 0;
    }
}

std::unique_ptr<Entity> Entity::detachedClone() const {
    std::unique_ptr<DbObject> object = clone();
    std::unique_ptr<Entity> copy(dynamic_cast<Entity*>(object.get()));
    if (!copy) return nullptr;
    object.release();
    copy->setOwnerId(ObjectId::kNull);
    copy->setExtensionDictionary(ObjectId::kNull);
    const std::vector<ObjectId> reactors = copy->persistentReactors();
    for (ObjectId reactor : reactors) copy->removePersistentReactor(reactor);
    return copy;
}

ErrorStatus Entity::getTransformedCopy(const ge::Matrix3d& xform,
                                       std::unique_ptr<Entity>& copy) const {
    copy.reset();
    std::unique_ptr<Entity> result = detachedClone();
    if (!result) return ErrorStatus::eNotApplicable;
    if (ErrorStatus es = result->transformBy(xform); es != ErrorStatus::eOk) return es;
    copy = std::move(result);
    return ErrorStatus::eOk;
}

ErrorStatus Entity::explode(std::vector<std::unique_ptr<Entity>>&) const {
    return ErrorStatus::eNotApplicable;
}

}  // namespace cad::db
