// Finding linked parts, comparing them with their records and updating their attributes.
#include "vantor/placement/PartSync.h"

#include <filesystem>

#include "cad/db/Attribute.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "vantor/placement/BomMark.h"
#include "vantor/store/LibraryDrawingCache.h"
#include "vantor/store/PartRecordStore.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::BlockReference;
using cad::db::BlockTableRecord;
using cad::db::ObjectId;
using cad::db::OpenMode;

namespace {

// The attributes of a reference that hold catalogue fields.
void collectAttributes(ObjectId referenceId, std::vector<CarriedAttribute>& into) {
    auto reference = cad::db::open<BlockReference>(referenceId, OpenMode::ForRead);
    if (!reference) return;
    for (ObjectId id : reference->attributeIds()) {
        auto attribute = cad::db::open<cad::db::Attribute>(id, OpenMode::ForRead);
        if (!attribute) continue;
        if (const PartFields::Field* field = PartFields::byBomTag(attribute->tag()))
            into.push_back({id, field->id, attribute->textString()});
    }
}

std::string blockNameOf(ObjectId block) {
    auto opened = cad::db::open<BlockTableRecord>(block, OpenMode::ForRead);
    return opened ? opened->name() : std::string();
}

LinkedPart linkedPart(cad::db::Database& db, ObjectId carrier, PartLink link,
                      ObjectId markerBlock) {
    LinkedPart part{carrier, {}, std::move(link), {}};
    ObjectId block;
    if (auto reference = cad::db::open<BlockReference>(carrier, OpenMode::ForRead))
        block = reference->blockTableRecord();
    part.blockName = blockNameOf(block);
    collectAttributes(carrier, part.attributes);
    for (cad::db::Handle handle : part.link.companions) {
        ObjectId companion;
        if (db.getObjectId(companion, false, handle) == ErrorStatus::eOk && companion.isLive())
            collectAttributes(companion, part.attributes);
    }
    // Markers the part's block holds itself: their attributes live in the definition.
    if (block != markerBlock && !markerBlock.isNull()) {
        std::vector<ObjectId> entities;
        if (auto opened = cad::db::open<BlockTableRecord>(block, OpenMode::ForRead))
            entities = opened->entityIds();
        for (ObjectId id : entities) {
            auto nested = cad::db::open<BlockReference>(id, OpenMode::ForRead);
            if (!nested || nested->blockTableRecord() != markerBlock) continue;
            nested.close();
            collectAttributes(id, part.attributes);
        }
    }
    return part;
}

ObjectId ownerOf(ObjectId id) {
    auto object = cad::db::open<cad::db::DbObject>(id, OpenMode::ForRead);
    return object ? object->ownerId() : ObjectId{};
}

// The record the link names, read from the library drawing as it is now.
PartSyncState readLinkedRecord(const PartLink& link, LibraryDrawingCache& libraries,
                               PartRecord& record) {
    std::error_code error;
    if (!std::filesystem::exists(link.libraryPath, error)) return PartSyncState::DrawingMissing;
    cad::db::Database* library = libraries.open(link.libraryPath);
    if (library == nullptr) return PartSyncState::DrawingUnreadable;
    ObjectId id;
    if (library->getObjectId(id, false, link.recordHandle) != ErrorStatus::eOk || !id.isLive())
        return PartSyncState::RecordDeleted;
    // A handle that now names something other than the record under its key (a drawing made
    // again from scratch numbers its objects anew): the record is gone.
    std::string key;
    if (auto group = cad::db::open<cad::db::Dictionary>(ownerOf(id), OpenMode::ForRead))
        group->nameAt(id, key);
    if (key != link.recordKey || readPartRecord(id, record) != ErrorStatus::eOk)
        return PartSyncState::RecordDeleted;
    return PartSyncState::Current;
}

}  // namespace

std::vector<LinkedPart> findLinkedParts(cad::db::Database& db) {
    std::vector<ObjectId> blocks;
    ObjectId markerBlock;
    if (auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForRead)) {
        blocks = table->recordIds();
        table->getAt(BomMark::kBlockName, markerBlock);
    }
    std::vector<LinkedPart> parts;
    for (ObjectId blockId : blocks) {
        std::vector<ObjectId> entities;
        {
            auto block = cad::db::open<BlockTableRecord>(blockId, OpenMode::ForRead);
            if (!block || !block->isLayout()) continue;
            entities = block->entityIds();
        }
        for (ObjectId id : entities) {
            std::optional<PartLink> link;
            if (auto reference = cad::db::open<BlockReference>(id, OpenMode::ForRead))
                link = partLinkOf(*reference);
            if (link) parts.push_back(linkedPart(db, id, std::move(*link), markerBlock));
        }
    }
    return parts;
}

std::vector<PartSyncEntry> compareWithRecords(std::vector<LinkedPart> parts,
                                              LibraryDrawingCache& libraries) {
    std::vector<PartSyncEntry> entries;
    entries.reserve(parts.size());
    for (LinkedPart& part : parts) {
        PartSyncEntry entry;
        entry.state = readLinkedRecord(part.link, libraries, entry.record);
        if (entry.state == PartSyncState::Current) {
            for (const PartFields::Field& field : PartFields::all()) {
                for (const CarriedAttribute& carried : part.attributes) {
                    if (carried.field != field.id || carried.text == entry.record.text(field.id))
                        continue;
                    entry.changes.push_back({field.id, carried.text, entry.record.text(field.id)});
                    break;
                }
            }
            if (!entry.changes.empty()) entry.state = PartSyncState::Changed;
        }
        entry.part = std::move(part);
        entries.push_back(std::move(entry));
    }
    return entries;
}

int updateCarriedAttributes(const std::vector<PartSyncEntry>& entries) {
    int updated = 0;
    for (const PartSyncEntry& entry : entries) {
        if (entry.state != PartSyncState::Changed) continue;
        for (const CarriedAttribute& carried : entry.part.attributes) {
            const std::string& text = entry.record.text(carried.field);
            auto attribute =
                cad::db::open<cad::db::Attribute>(carried.attribute, OpenMode::ForRead);
            // A marker in a block is shared by every reference of it: updated once.
            if (!attribute || attribute->textString() == text) continue;
            attribute.close();
            attribute = cad::db::open<cad::db::Attribute>(carried.attribute, OpenMode::ForWrite);
            if (attribute && attribute->setTextString(text) == ErrorStatus::eOk) ++updated;
        }
    }
    return updated;
}

std::string partSyncStateText(PartSyncState state) {
    switch (state) {
        case PartSyncState::Current:
            return "같음";
        case PartSyncState::Changed:
            return "변경됨";
        case PartSyncState::DrawingMissing:
            return "도면 없음";
        case PartSyncState::DrawingUnreadable:
            return "도면을 읽을 수 없음";
        case PartSyncState::RecordDeleted:
            return "레코드 삭제됨";
    }
    return {};
}

PartSyncList makeSyncList(const std::vector<PartSyncEntry>& entries) {
    PartSyncList list;
    list.linked = static_cast<int>(entries.size());
    for (const PartSyncEntry& entry : entries) {
        if (entry.state == PartSyncState::Current) continue;
        PartSyncRow row;
        row.handle = entry.part.carrier.handle().toHex();
        row.block = entry.part.blockName;
        for (const CarriedAttribute& carried : entry.part.attributes)
            if (carried.field == PartFields::KName) {
                row.name = carried.text;
                break;
            }
        if (row.name.empty()) row.name = entry.record.kname;
        row.drawing = std::filesystem::path(entry.part.link.libraryPath).filename().string();
        row.group = entry.part.link.groupName();
        row.state = partSyncStateText(entry.state);
        for (const FieldChange& change : entry.changes) {
            if (!row.changes.empty()) row.changes += ", ";
            row.changes += std::string(PartFields::field(change.field).bomTag) + ": " +
                           change.carried + " → " + change.current;
        }
        row.updatable = entry.state == PartSyncState::Changed;
        (row.updatable ? list.changed : list.gone) += 1;
        list.rows.push_back(std::move(row));
    }
    return list;
}

}  // namespace vantor
