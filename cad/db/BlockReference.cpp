// BlockReference: the INSERT layout, the block transform and its decomposition after a
// transform, extents and explode through the block's entities.
#include "cad/db/BlockReference.h"

#include <cmath>

#include "cad/db/Attribute.h"
#include "cad/db/AttributeDefinition.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/DxfAngle.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/PlaneMapping.h"

namespace cad::db {

namespace {

// A block that (through damage) contains a reference to itself must not recurse forever.
constexpr int kMaxNesting = 64;
thread_local int nesting = 0;

struct NestingGuard {
    NestingGuard() { ++nesting; }
    ~NestingGuard() { --nesting; }
    NestingGuard(const NestingGuard&) = delete;
    NestingGuard& operator=(const NestingGuard&) = delete;
    bool tooDeep() const { return nesting > kMaxNesting; }
};

ge::Vector3d column(const ge::Matrix3d& m, int c) {
    return {m(0, c), m(1, c), m(2, c)};
}

bool isShown(const Entity& entity) {
    if (!entity.isVisible()) return false;
    const auto* attribute = dynamic_cast<const AttributeBase*>(&entity);
    if (attribute == nullptr) return true;
    // A definition inside a block shows only when constant; an attribute unless invisible.
    if (dynamic_cast<const AttributeDefinition*>(&entity) != nullptr)
        return attribute->isConstant();
    return !attribute->isInvisible();
}

}  // namespace

BlockReference::BlockReference(const ge::Point3d& position, ObjectId blockTableRecord)
    : block_(blockTableRecord), position_(position) {}

ErrorStatus BlockReference::setBlockTableRecord(ObjectId block) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (block.isNull()) return ErrorStatus::eNullObjectId;
    block_ = block;
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::setPosition(const ge::Point3d& position) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    position_ = position;
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::setScaleFactors(const ge::Scale3d& scale) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (scale.sx == 0.0 || scale.sy == 0.0 || scale.sz == 0.0) return ErrorStatus::eInvalidInput;
    scale_ = scale;
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::setRotation(double radians) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    rotation_ = normalizedAngle(radians);
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::setNormal(const ge::Vector3d& normal) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (normal.isZeroLength()) return ErrorStatus::eInvalidInput;
    normal_ = normal.normal();
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::setArray(std::int16_t columns, std::int16_t rows, double columnSpacing,
                                     double rowSpacing) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (columns < 1 || rows < 1) return ErrorStatus::eInvalidInput;
    columns_ = columns;
    rows_ = rows;
    columnSpacing_ = columnSpacing;
    rowSpacing_ = rowSpacing;
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::appendAttribute(std::unique_ptr<Attribute> attribute, ObjectId& id) {
    return appendSubentity(std::move(attribute), id);
}

std::string_view BlockReference::className() const {
    return isMInsert() ? "AcDbMInsertBlock" : "AcDbBlockReference";
}

void BlockReference::dxfFields(DxfFiler& filer) {
    ComplexEntity::dxfFields(filer);
    ge::Point3d position = ge::Matrix3d::worldToPlane(normal_) * position_;
    double rotation = degreesFromRadians(rotation_);
    if (filer.isReading()) {
        // The marker says whether the file holds an array, which is not known before the
        // fields are read: the fields are looked for under both, and only one is there.
        for (std::string_view marker : {"AcDbMInsertBlock", "AcDbBlockReference"}) {
            filer.subclass(marker);
            referenceFields(filer, position, rotation);
        }
        position_ = ge::Matrix3d::planeToWorld(normal_) * position;
        rotation_ = normalizedAngle(radiansFromDegrees(rotation));
        return;
    }
    filer.subclass(className());
    referenceFields(filer, position, rotation);
}

void BlockReference::referenceFields(DxfFiler& filer, ge::Point3d& ocsPosition,
                                     double& rotationDegrees) {
    std::int16_t attributesFollow = subentityIds().empty() ? 0 : 1;
    filer.int16(66, attributesFollow, 0);
    filer.symbol(2, block_, DxfFiler::SymbolTable::Block);
    filer.point(10, ocsPosition);
    filer.real(41, scale_.sx, 1.0);
    filer.real(42, scale_.sy, 1.0);
    filer.real(43, scale_.sz, 1.0);
    filer.real(50, rotationDegrees, 0.0);
    filer.int16(70, columns_, 1);
    filer.int16(71, rows_, 1);
    filer.real(44, columnSpacing_, 0.0);
    filer.real(45, rowSpacing_, 0.0);
    filer.vector(210, normal_, ge::Vector3d::kZAxis);
}

ge::Matrix3d BlockReference::cellTransform(const ge::Point3d& origin, int row, int column) const {
    const ge::Vector3d offset(column * columnSpacing_, row * rowSpacing_, 0.0);
    return ge::Matrix3d::translation(position_.asVector()) * ge::Matrix3d::planeToWorld(normal_) *
           ge::Matrix3d::rotation(rotation_, ge::Vector3d::kZAxis) *
           ge::Matrix3d::translation(offset) * ge::Matrix3d::scaling(scale_) *
           ge::Matrix3d::translation(-origin.asVector());
}

ge::Matrix3d BlockReference::blockTransform() const {
    ge::Point3d origin;
    if (auto block = open<BlockTableRecord>(block_, OpenMode::ForRead)) origin = block->origin();
    return cellTransform(origin, 0, 0);
}

ErrorStatus BlockReference::blockEntities(std::vector<ObjectId>& ids, ge::Point3d& origin) const {
    auto block = open<BlockTableRecord>(block_, OpenMode::ForRead);
    if (!block) return block.openStatus();
    ids = block->entityIds();
    origin = block->origin();
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::transformBy(const ge::Matrix3d& xform) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    const PlaneMapping mapping(xform, normal_);
    if (!mapping.isValid()) return ErrorStatus::eInvalidInput;

    // The block's axes after the transform, in the new object coordinate system; they must
    // still be a rotation about the normal times per-axis factors.
    const ge::Matrix3d frame = ge::Matrix3d::worldToPlane(mapping.newNormal()) * xform *
                               ge::Matrix3d::planeToWorld(normal_) *
                               ge::Matrix3d::rotation(rotation_, ge::Vector3d::kZAxis) *
                               ge::Matrix3d::scaling(scale_);
    const ge::Vector3d c1 = column(frame, 0), c2 = column(frame, 1), c3 = column(frame, 2);
    constexpr double kRelative = 1e-9;
    const double l1 = c1.length(), l2 = c2.length(), l3 = c3.length();
    if (std::abs(c1.dotProduct(c2)) > kRelative * l1 * l2 || std::abs(c1.z) > kRelative * l1 ||
        std::abs(c2.z) > kRelative * l2 || std::hypot(c3.x, c3.y) > kRelative * l3)
        return ErrorStatus::eNotApplicable;

    // The sign pattern of the factors is kept unless the transform mirrors; then the X factor
    // changes sign, as the host puts a mirror on X.
    const double det = c1.x * c2.y - c1.y * c2.x;
    double xSign = scale_.sx < 0.0 ? -1.0 : 1.0;
    if ((det < 0.0) != (scale_.sx * scale_.sy < 0.0)) xSign = -xSign;
    const ge::Vector3d base = (c1 * xSign).normal();
    const ge::Vector3d up(-base.y, base.x, 0.0);
    const ge::Scale3d scale(xSign * l1, c2.dotProduct(up), c3.z);

    if (ErrorStatus es =
            forEachSubentity(OpenMode::ForWrite, [&](Entity& e) { return e.transformBy(xform); });
        es != ErrorStatus::eOk)
        return es;
    columnSpacing_ *= scale.sx / scale_.sx;
    rowSpacing_ *= scale.sy / scale_.sy;
    rotation_ = normalizedAngle(std::atan2(base.y, base.x));
    scale_ = scale;
    position_ = xform * position_;
    normal_ = mapping.newNormal();
    return ErrorStatus::eOk;
}

ErrorStatus BlockReference::getGeomExtents(Extents3d& extents) const {
    extents = Extents3d{};
    NestingGuard guard;
    if (guard.tooDeep()) return ErrorStatus::eNotApplicable;
    std::vector<ObjectId> ids;
    ge::Point3d origin;
    if (ErrorStatus es = blockEntities(ids, origin); es != ErrorStatus::eOk) return es;
    for (ObjectId id : ids) {
        auto entity = open<Entity>(id, OpenMode::ForRead);
        if (!entity) return entity.openStatus();
        if (!isShown(*entity)) continue;
        for (int row = 0; row < rows_; ++row) {
            for (int col = 0; col < columns_; ++col) {
                std::unique_ptr<Entity> placed;
                ErrorStatus es =
                    entity->getTransformedCopy(cellTransform(origin, row, col), placed);
                // Geometry the engine cannot move (kept raw, or a nested shear) adds nothing.
                if (es == ErrorStatus::eNotApplicable) continue;
                Extents3d part;
                if (es == ErrorStatus::eOk) es = placed->getGeomExtents(part);
                // A failure deeper down (a block nested in itself) ends the whole walk, so
                // a damaged drawing cannot make it branch without end.
                if (es != ErrorStatus::eOk) return es;
                extents.addExtents(part);
            }
        }
    }
    return forEachSubentity(OpenMode::ForRead, [&](Entity& attribute) {
        Extents3d part;
        if (isShown(attribute) && attribute.getGeomExtents(part) == ErrorStatus::eOk)
            extents.addExtents(part);
        return ErrorStatus::eOk;
    });
}

ErrorStatus BlockReference::explode(std::vector<std::unique_ptr<Entity>>& pieces) const {
    std::vector<ObjectId> ids;
    ge::Point3d origin;
    if (ErrorStatus es = blockEntities(ids, origin); es != ErrorStatus::eOk) return es;
    std::vector<std::unique_ptr<Entity>> result;
    for (ObjectId id : ids) {
        auto entity = open<Entity>(id, OpenMode::ForRead);
        if (!entity) return entity.openStatus();
        for (int row = 0; row < rows_; ++row) {
            for (int col = 0; col < columns_; ++col) {
                std::unique_ptr<Entity> piece;
                if (ErrorStatus es =
                        entity->getTransformedCopy(cellTransform(origin, row, col), piece);
                    es != ErrorStatus::eOk)
                    return es;
                result.push_back(std::move(piece));
            }
        }
    }
    for (auto& piece : result) pieces.push_back(std::move(piece));
    return ErrorStatus::eOk;
}

}  // namespace cad::db
