// ComplexEntity: ownership of sub-entities inside and outside a database.
#include "cad/db/ComplexEntity.h"

#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SequenceEnd.h"

namespace cad::db {

ComplexEntity::ComplexEntity(const ComplexEntity& other)
    : Entity(other), subentities_(other.subentities_), sequenceEnd_(other.sequenceEnd_) {
    held_.reserve(other.held_.size());
    for (const auto& subentity : other.held_) held_.push_back(subentity->detachedClone());
}

ErrorStatus ComplexEntity::attachSubentity(ObjectId id) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (id.isNull()) return ErrorStatus::eNullObjectId;
    subentities_.push_back(id);
    return ErrorStatus::eOk;
}

ErrorStatus ComplexEntity::attachSequenceEnd(ObjectId id) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (id.isNull()) return ErrorStatus::eNullObjectId;
    sequenceEnd_ = id;
    return ErrorStatus::eOk;
}

void ComplexEntity::dxfFields(DxfFiler& filer) {
    Entity::dxfFields(filer);
    if (filer.mode() != DxfFiler::Mode::Walking) return;
    for (ObjectId& id : subentities_) filer.reference(360, id);
    filer.reference(360, sequenceEnd_);
}

void ComplexEntity::ownedObjects(std::vector<ObjectId>& owned) const {
    owned.insert(owned.end(), subentities_.begin(), subentities_.end());
    if (!sequenceEnd_.isNull()) owned.push_back(sequenceEnd_);
}

ErrorStatus ComplexEntity::makeResident(std::unique_ptr<Entity> subentity, ObjectId& id) {
    Database* db = database();
    if (sequenceEnd_.isNull()) {
        auto end = std::make_unique<SequenceEnd>();
        end->setPropertiesFrom(*this);
        if (ErrorStatus es = db->addObject(std::move(end), sequenceEnd_, objectId());
            es != ErrorStatus::eOk)
            return es;
    }
    // Vertices and attributes made without a layer go on their owner's.
    if (subentity->layerId().isNull()) subentity->setPropertiesFrom(*this);
    if (ErrorStatus es = db->addObject(std::move(subentity), id, objectId());
        es != ErrorStatus::eOk)
        return es;
    subentities_.push_back(id);
    return ErrorStatus::eOk;
}

ErrorStatus ComplexEntity::appendSubentity(std::unique_ptr<Entity> subentity, ObjectId& id) {
    id = ObjectId::kNull;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!subentity) return ErrorStatus::eNullObjectId;
    if (subentity->database() != nullptr) return ErrorStatus::eInvalidInput;
    if (database() == nullptr) {
        held_.push_back(std::move(subentity));
        return ErrorStatus::eOk;
    }
    return makeResident(std::move(subentity), id);
}

void ComplexEntity::addedToDatabase() {
    std::vector<std::unique_ptr<Entity>> held = std::move(held_);
    held_.clear();
    for (auto& subentity : held) {
        ObjectId id;
        makeResident(std::move(subentity), id);
    }
}

ErrorStatus ComplexEntity::forEachSubentity(OpenMode mode,
                                            const std::function<ErrorStatus(Entity&)>& fn) const {
    for (const auto& subentity : held_) {
        if (ErrorStatus es = fn(*subentity); es != ErrorStatus::eOk) return es;
    }
    for (ObjectId id : subentities_) {
        if (id.isErased()) continue;
        ObjectPtr<Entity> subentity(id, mode);
        if (!subentity) return subentity.openStatus();
        if (ErrorStatus es = fn(*subentity); es != ErrorStatus::eOk) return es;
    }
    return ErrorStatus::eOk;
}

ErrorStatus ComplexEntity::getTransformedCopy(const ge::Matrix3d& xform,
                                              std::unique_ptr<Entity>& copy) const {
    copy.reset();
    std::unique_ptr<Entity> result = detachedClone();
    auto* complex = dynamic_cast<ComplexEntity*>(result.get());
    if (complex == nullptr) return ErrorStatus::eNotApplicable;
    complex->subentities_.clear();
    complex->sequenceEnd_ = ObjectId::kNull;
    for (ObjectId id : subentities_) {
        if (id.isErased()) continue;
        ObjectPtr<Entity> subentity(id, OpenMode::ForRead);
        if (!subentity) return subentity.openStatus();
        complex->held_.push_back(subentity->detachedClone());
    }
    // One transform for the whole: a polyline moves its vertices in its own plane.
    if (ErrorStatus es = result->transformBy(xform); es != ErrorStatus::eOk) return es;
    copy = std::move(result);
    return ErrorStatus::eOk;
}

}  // namespace cad::db
