// A group: a named, ordered selection of entities kept in the drawing's group dictionary.
// Each member carries the group among its persistent reactors, as the host's members do.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/DbObject.h"

namespace cad::db {

class Group : public DbObject {
public:
    Group() = default;
    explicit Group(std::string description, bool selectable = true);

    std::string_view dxfName() const override { return "GROUP"; }
    std::string_view className() const override { return "AcDbGroup"; }

    // The group's key in the group dictionary.
    ErrorStatus getName(std::string& name) const;
    const std::string& description() const { return description_; }
    ErrorStatus setDescription(std::string description);
    bool isSelectable() const { return selectable_ != 0; }
    ErrorStatus setSelectable(bool selectable);
    // Unnamed groups ("*A<n>") are listed only when the user asks for them.
    bool isAnonymous() const { return unnamed_ != 0; }
    ErrorStatus setAnonymous();

    // Appends a member; eDuplicateKey when it is one already, eWasErased for an erased one.
    // A group in a database becomes a persistent reactor of the member.
    ErrorStatus append(ObjectId id);
    ErrorStatus remove(ObjectId id);
    ErrorStatus clear();
    bool has(ObjectId id) const;
    std::size_t numEntities() const;
    // Live members in order.
    std::vector<ObjectId> allEntityIds() const;

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

protected:
    // Members appended before the group was in a database learn of it now.
    void addedToDatabase() override;

private:
    Group(const Group&) = default;

    std::string description_;
    std::int16_t unnamed_ = 0;
    std::int16_t selectable_ = 1;
    std::vector<ObjectId> members_;  // in order, erased ones included
};

// Adds `group` to the database's group dictionary under `name`. The name "*" gives the group
// the first free "*A<n>" and marks it anonymous. eDuplicateKey when the name is taken;
// eKeyNotFound when the drawing has no group dictionary.
ErrorStatus addGroup(Database& db, std::unique_ptr<Group> group, std::string_view name,
                     ObjectId& id);

}  // namespace cad::db
