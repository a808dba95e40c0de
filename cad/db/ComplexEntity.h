// Entities that own a run of sub-entities written after them and closed by a SEQEND: a block
// reference with its attributes, a POLYLINE with its vertices.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "cad/db/Entity.h"
#include "cad/db/OpenMode.h"

namespace cad::db {

class ComplexEntity : public Entity {
public:
    // For the reader: attaches a sub-entity or the SEQEND read after this entity, both already
    // in the database. The writer writes the sub-entities, then the SEQEND, after this entity.
    ErrorStatus attachSubentity(ObjectId id);
    ErrorStatus attachSequenceEnd(ObjectId id);
    const std::vector<ObjectId>& subentityIds() const { return subentities_; }
    // Null until the first sub-entity is appended (or one is read).
    ObjectId sequenceEndId() const { return sequenceEnd_; }

    // The common entity fields; derived classes call it first in their dxfFields. The file
    // places the sub-entities after this entity rather than naming them, but cloning and the
    // audit must see what the entity owns.
    void dxfFields(DxfFiler& filer) override;
    void ownedObjects(std::vector<ObjectId>& owned) const override;
    // The copy takes copies of the sub-entities along, transformed with it; they join the
    // database when the copy does.
    ErrorStatus getTransformedCopy(const ge::Matrix3d& xform,
                                   std::unique_ptr<Entity>& copy) const override;

protected:
    ComplexEntity() = default;
    // Ids are copied as they are (the cloner remaps them); sub-entities held by an object
    // outside the database are copied.
    ComplexEntity(const ComplexEntity& other);

    // Adds a sub-entity owned by this entity (and the SEQEND when it is the first). Outside a
    // database the sub-entity is held until this entity is added; `id` is then null.
    ErrorStatus appendSubentity(std::unique_ptr<Entity> subentity, ObjectId& id);
    // Calls fn on every sub-entity not erased, opened in `mode` (or held, outside a database),
    // stopping at the first error.
    ErrorStatus forEachSubentity(OpenMode mode,
                                 const std::function<ErrorStatus(Entity&)>& fn) const;
    void addedToDatabase() override;

private:
    ErrorStatus makeResident(std::unique_ptr<Entity> subentity, ObjectId& id);

    std::vector<ObjectId> subentities_;
    ObjectId sequenceEnd_;
    std::vector<std::unique_ptr<Entity>> held_;
};

}  // namespace cad::db
