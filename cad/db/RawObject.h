// An object of a type the engine does not model (plot style dictionaries, materials, visual
// styles, application objects): its tags after the common part are kept as read and written
// back unchanged. Walking filers see its handle references through DxfFiler::rawTags, so a
// cloned copy points at the clones.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cad/db/DbObject.h"

namespace cad::db {

class RawObject : public DbObject {
public:
    // The names as the file gave them: the record type and, from the CLASSES section or the
    // last subclass marker, the class.
    RawObject(std::string dxfName, std::string className, std::vector<RawTag> tags = {});

    std::string_view dxfName() const override { return dxfName_; }
    std::string_view className() const override { return className_; }

    const std::vector<RawTag>& tags() const { return tags_; }

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;
    // The objects its owner references (350-369) name: a raw dictionary's entries go with it.
    void ownedObjects(std::vector<ObjectId>& owned) const override;

private:
    RawObject(const RawObject&) = default;

    std::string dxfName_;
    std::string className_;
    std::vector<RawTag> tags_;
};

// The objects that owner references (soft 350-359, hard 360-369) among raw tags name in `db`;
// handles that name no object are left out. Shared by the raw objects and raw entities.
void ownedByRawTags(const std::vector<RawTag>& tags, Database* db, std::vector<ObjectId>& owned);

}  // namespace cad::db
