// Block table records: the entity list, the BLOCK/ENDBLK pair, layout link and preview.
#include "cad/db/BlockTableRecord.h"

#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/BlockReference.h"
#include "cad/db/Database.h"
#include "cad/db/DxfFiler.h"
#include "cad/db/Entity.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {

ErrorStatus BlockTableRecord::appendEntity(std::unique_ptr<Entity> entity, ObjectId& id) {
    id = ObjectId::kNull;
    if (!entity) return ErrorStatus::eNullObjectId;
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (entity->layerId().isNull()) entity->setDatabaseDefaults(*db);
    if (ErrorStatus es = db->addObject(std::move(entity), id, objectId()); es != ErrorStatus::eOk)
        return es;
    entities_.push_back(id);
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::appendEntity(ObjectId entityId) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    if (entityId.isNull()) return ErrorStatus::eNullObjectId;
    if (entityId.database() != db) return ErrorStatus::eWrongDatabase;
    const auto* entity = dynamic_cast<const Entity*>(entityId.slot()->object.get());
    if (entity == nullptr) return ErrorStatus::eWrongObjectType;
    if (entity->ownerId() != objectId()) {
        auto owned = open<Entity>(entityId, OpenMode::ForWrite, true);
        if (!owned) return owned.openStatus();
        owned->setOwnerId(objectId());
    }
    // No search for a second listing: the reader lists millions of entities this way.
    entities_.push_back(entityId);
    return ErrorStatus::eOk;
}

std::vector<ObjectId> BlockTableRecord::entityIds() const {
    std::vector<ObjectId> live;
    live.reserve(entities_.size());
    for (ObjectId id : entities_) {
        if (id.isLive()) live.push_back(id);
    }
    return live;
}

bool BlockTableRecord::isLayout() const {
    if (!layout_.isNull()) return true;
    const std::string& n = name();
    return equalNames(n, kModelSpace) ||
           (n.size() >= kPaperSpace.size() &&
            equalNames(std::string_view(n).substr(0, kPaperSpace.size()), kPaperSpace));
}

bool BlockTableRecord::hasAttributeDefinitions() const {
    for (ObjectId id : entities_) {
        if (id.isLive() && id.slot()->object->dxfName() == "ATTDEF") return true;
    }
    return false;
}

ErrorStatus BlockTableRecord::setOrigin(const ge::Point3d& origin) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    origin_ = origin;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setComments(std::string comments) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    comments_ = std::move(comments);
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setPathName(std::string path) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    pathName_ = std::move(path);
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setLayoutId(ObjectId layout) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    layout_ = layout;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setInsertUnits(std::int16_t units) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (units < 0 || units > 24) return ErrorStatus::eInvalidInput;
    insertUnits_ = units;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setExplodable(bool explodable) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    explodable_ = explodable ? 1 : 0;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setBlockScaling(std::int16_t scaling) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (scaling != 0 && scaling != 1) return ErrorStatus::eInvalidInput;
    blockScaling_ = scaling;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setPreviewIcon(std::string bytes) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    preview_ = std::move(bytes);
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setBlockBegin(ObjectId blockBegin) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (blockBegin.isNull()) return ErrorStatus::eNullObjectId;
    const auto* begin = dynamic_cast<const BlockBegin*>(blockBegin.slot()->object.get());
    if (begin == nullptr) return ErrorStatus::eWrongObjectType;
    const BlockBegin::Data& data = begin->asRead();
    if (name().empty()) assignName(data.name);
    setFlags(data.flags);
    origin_ = data.origin;
    pathName_ = data.pathName;
    comments_ = data.comments;
    blockBegin_ = blockBegin;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::setBlockEnd(ObjectId blockEnd) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (blockEnd.isNull()) return ErrorStatus::eNullObjectId;
    if (dynamic_cast<const BlockEnd*>(blockEnd.slot()->object.get()) == nullptr)
        return ErrorStatus::eWrongObjectType;
    blockEnd_ = blockEnd;
    return ErrorStatus::eOk;
}

ErrorStatus BlockTableRecord::completeNewRecord() {
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    auto frame = [&](std::unique_ptr<Entity> part, ObjectId& id) {
        if (!id.isNull()) return ErrorStatus::eOk;
        if (!db->layerZero().isNull()) part->setLayer(db->layerZero());
        return db->addObject(std::move(part), id, objectId());
    };
    if (ErrorStatus es = frame(std::make_unique<BlockBegin>(), blockBegin_); es != ErrorStatus::eOk)
        return es;
    return frame(std::make_unique<BlockEnd>(), blockEnd_);
}

ErrorStatus BlockTableRecord::getBlockReferenceIds(std::vector<ObjectId>& ids) const {
    ids.clear();
    Database* db = database();
    if (db == nullptr) return ErrorStatus::eNotInDatabase;
    // A scan: references are rare questions (purge, redefinition), not worth a back-link
    // list in every record that the reader and the cloner would have to keep right.
    for (ObjectId id : db->objectIds()) {
        if (id.isErased()) continue;
        const auto* reference = dynamic_cast<const BlockReference*>(id.slot()->object.get());
        if (reference != nullptr && reference->blockTableRecord() == objectId()) ids.push_back(id);
    }
    return ErrorStatus::eOk;
}

void BlockTableRecord::dxfFields(DxfFiler& filer) {
    SymbolTableRecord::dxfFields(filer);
    filer.subclass("AcDbBlockTableRecord");
    nameField(filer);
    if (filer.atLeast(DxfVersion::R2000)) {
        if (!filer.isWriting() || !layout_.isNull()) filer.reference(340, layout_);
        filer.int16(70, insertUnits_);
        filer.int16(280, explodable_);
        filer.int16(281, blockScaling_);
        if (!filer.isWriting() || !preview_.empty()) filer.binary(310, preview_);
    }
    // The file does not list what a block holds (the blocks section does, by position), but
    // cloning and the audit must see what the record owns.
    if (filer.mode() == DxfFiler::Mode::Walking) {
        filer.reference(360, blockBegin_);
        for (ObjectId& id : entities_) filer.reference(360, id);
        filer.reference(360, blockEnd_);
    }
}

std::unique_ptr<DbObject> BlockTableRecord::clone() const {
    return std::unique_ptr<DbObject>(new BlockTableRecord(*this));
}

void BlockTableRecord::ownedObjects(std::vector<ObjectId>& owned) const {
    if (!blockBegin_.isNull()) owned.push_back(blockBegin_);
    for (ObjectId id : entities_) {
        if (!id.isNull()) owned.push_back(id);
    }
    if (!blockEnd_.isNull()) owned.push_back(blockEnd_);
}

}  // namespace cad::db
