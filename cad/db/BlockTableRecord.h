// A block definition: a named, ordered collection of entities with a base point. Model space
// and paper space are block table records too, each tied to its layout. In a DXF file the
// record's data is split between the BLOCK_RECORD (tables) and its BLOCK and ENDBLK (blocks
// section), which are objects of their own owned by the record (BlockBegin, BlockEnd).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cad/db/SymbolTableRecord.h"
#include "cad/ge/Point3d.h"

namespace cad::db {

class Entity;

class BlockTableRecord : public SymbolTableRecord {
public:
    // Block flags (70 of the BLOCK), beside the flags every record has.
    static constexpr std::int16_t kAnonymous = 1;
    static constexpr std::int16_t kHasAttributes = 2;
    static constexpr std::int16_t kExternal = 4;
    static constexpr std::int16_t kOverlay = 8;

    static constexpr std::string_view kModelSpace = "*Model_Space";
    static constexpr std::string_view kPaperSpace = "*Paper_Space";

    BlockTableRecord() = default;

    std::string_view dxfName() const override { return "BLOCK_RECORD"; }
    std::string_view className() const override { return "AcDbBlockTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::BlockRecord; }

    // Adds the entity to the database, owned by this record, at the end of its entities. An
    // entity without a layer gets the database's current settings first, as in the host.
    ErrorStatus appendEntity(std::unique_ptr<Entity> entity, ObjectId& id);
    // Lists an entity already in the database (read from a file, cloned) whose owner is this
    // record.
    ErrorStatus appendEntity(ObjectId entityId);
    // Live entities in drawing order.
    std::vector<ObjectId> entityIds() const;
    const std::vector<ObjectId>& allEntityIds() const { return entities_; }

    bool isAnonymous() const { return (flags() & kAnonymous) != 0; }
    bool isFromExternalReference() const { return (flags() & kExternal) != 0; }
    bool isFromOverlayReference() const { return (flags() & kOverlay) != 0; }
    // Model space or a paper space: tied to a layout (or, in files before layouts existed,
    // named so).
    bool isLayout() const;
    // True when an attribute definition is among the live entities.
    bool hasAttributeDefinitions() const;

    const ge::Point3d& origin() const { return origin_; }
    ErrorStatus setOrigin(const ge::Point3d& origin);
    // The block's description (4 of the BLOCK).
    const std::string& comments() const { return comments_; }
    ErrorStatus setComments(std::string comments);
    // The drawing an external reference loads (1 of the BLOCK).
    const std::string& pathName() const { return pathName_; }
    ErrorStatus setPathName(std::string path);

    ObjectId layoutId() const { return layout_; }
    ErrorStatus setLayoutId(ObjectId layout);
    // The units the block was drawn in (70 of the BLOCK_RECORD): 0 unitless, 4 millimetres...
    std::int16_t insertUnits() const { return insertUnits_; }
    ErrorStatus setInsertUnits(std::int16_t units);
    bool explodable() const { return explodable_ != 0; }
    ErrorStatus setExplodable(bool explodable);
    // 0: any scale, 1: uniform scale only (281).
    std::int16_t blockScaling() const { return blockScaling_; }
    ErrorStatus setBlockScaling(std::int16_t scaling);

    // The preview the host shows in its block lists: the bytes of a bitmap as stored in the
    // file (310 chunks); empty when the block has none.
    const std::string& previewIcon() const { return preview_; }
    bool hasPreviewIcon() const { return !preview_.empty(); }
    ErrorStatus setPreviewIcon(std::string bytes);

    // The BLOCK and ENDBLK of this record. setBlockBegin takes over what the BLOCK carried
    // when it was read (origin, flags, description, path; the name when the record has
    // none, as in R12 files, which have no BLOCK_RECORD table).
    ObjectId blockBeginId() const { return blockBegin_; }
    ObjectId blockEndId() const { return blockEnd_; }
    ErrorStatus setBlockBegin(ObjectId blockBegin);
    ErrorStatus setBlockEnd(ObjectId blockEnd);

    // The live block references (INSERT) of this block anywhere in the database.
    ErrorStatus getBlockReferenceIds(std::vector<ObjectId>& ids) const;

    void dxfFields(DxfFiler& filer) override;
    // A copy of the data; entities, BLOCK and ENDBLK still name the source objects until the
    // cloner remaps them (walking filers see them as hard-owner references).
    std::unique_ptr<DbObject> clone() const override;
    void ownedObjects(std::vector<ObjectId>& owned) const override;

protected:
    ErrorStatus completeNewRecord() override;

private:
    BlockTableRecord(const BlockTableRecord&) = default;

    std::vector<ObjectId> entities_;  // drawing order, erased ones included
    ObjectId blockBegin_;
    ObjectId blockEnd_;
    ObjectId layout_;
    ge::Point3d origin_;
    std::string comments_;
    std::string pathName_;
    std::string preview_;
    std::int16_t insertUnits_ = 0;
    std::int16_t explodable_ = 1;
    std::int16_t blockScaling_ = 0;
};

}  // namespace cad::db
