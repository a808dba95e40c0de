// Reading: the tables with their records, the blocks and the entities with their runs of
// sub-entities.
#include "cad/db/ComplexEntity.h"
#include "cad/db/Entity.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/dxf/DatabaseLoader.h"

namespace cad::db::dxf {

bool DatabaseLoader::readTables(const Section& section) {
    ObjectId table;
    bool skipping = false;  // the records of a table we cannot place
    return eachItem(section, [&](TagSpan item) {
        const std::string_view type = typeOf(item);
        if (type == "TABLE") {
            skipping = false;
            table = ObjectId::kNull;
            std::optional<SymbolTableKind> kind;
            for (const Tag& tag : item) {
                if (tag.code == 2) {
                    kind = symbolTableKindFromName(trimBlanks(tag.value));
                    break;
                }
            }
            if (!kind) {
                skipping = true;
                issue(kIssueBadTableRecord,
                      placeText(place_, item.front().line) +
                          ": a table of unknown kind was dropped with its records",
                      ReadingFiler::handleOf(item));
                return true;
            }
            ObjectId& known = tableId(*kind);
            if (!known.isNull()) {
                table = known;  // a table given twice: its records join the first
                return true;
            }
            auto object = readItem(item, Placement::Object);
            if (!object) return false;
            table = known = store(std::move(object), item, ObjectId::kNull);
        } else if (type == "ENDTAB") {
            table = ObjectId::kNull;
            skipping = false;
        } else if (!skipping) {
            if (table.isNull()) {
                return fail(item.front().line, "expected 0 TABLE before 0 " + std::string(type));
            }
            const ObjectId id = readAndStore(item, Placement::Object, table);
            if (id.isNull()) return false;
            listRecord(table, id, item);
        }
        return true;
    });
}

void DatabaseLoader::listRecord(ObjectId table, ObjectId id, TagSpan item) {
    std::string name;
    bool nameless = false;
    if (auto record = open<SymbolTableRecord>(id, OpenMode::ForRead)) {
        name = record->name();
        // Only text styles go without a name (those that load shape files); any other
        // record is known and written by its name.
        nameless = name.empty() && record->tableKind() != SymbolTableKind::TextStyle;
    }
    ErrorStatus es = ErrorStatus::eInvalidKey;
    if (!nameless) {
        if (auto t = open<SymbolTable>(table, OpenMode::ForWrite)) es = t->add(id);
    }
    if (es == ErrorStatus::eOk) return;
    drop(id);
    issue(kIssueBadTableRecord,
          placeText(place_, item.front().line) + ": " + std::string(typeOf(item)) + " " +
              inQuotes(name) +
              (nameless                           ? " has no name"
               : es == ErrorStatus::eDuplicateKey ? " repeats a name of its table"
                                                  : " does not belong in its table") +
              "; it was dropped",
          id.handle());
}

bool DatabaseLoader::readBlocks(const Section& section) {
    OpenRecord current;
    ObjectId recordId;
    std::optional<std::uint32_t> blockStart;  // where the open block starts
    bool dropping = false;                    // the entities of a block defined twice
    Sequence sequence;
    const bool read = eachItem(section, [&](TagSpan item) {
        const std::string_view type = typeOf(item);
        if (type == "BLOCK") {
            if (blockStart) {
                return fail(item.front().line, "expected 0 ENDBLK before 0 BLOCK: the block at " +
                                                   placeText(place_, *blockStart) + " has no end");
            }
            blockStart = item.front().line;
            recordId = lookUp(SymbolKind::Block, blockName(item));
            BlockTableRecord* record = current.get(recordId);
            if (record == nullptr) return fail(item.front().line, "cannot open the block");
            auto begin = readItem(item, Placement::Entity);
            if (!begin) return false;
            const ObjectId id = store(std::move(begin), item, recordId);
            dropping = record->blockBeginId().isValid();
            if (dropping) {
                drop(id);
                issue(kIssueBadTableRecord,
                      placeText(place_, item.front().line) + ": block " + inQuotes(record->name()) +
                          " is defined twice; the second definition was dropped",
                      id.handle());
            } else {
                record->setBlockBegin(id);
            }
        } else if (type == "ENDBLK") {
            if (!blockStart) return fail(item.front().line, "expected 0 BLOCK before 0 ENDBLK");
            endSequence(sequence);
            blockStart.reset();
            auto end = readItem(item, Placement::Entity);
            if (!end) return false;
            const ObjectId id = store(std::move(end), item, recordId);
            BlockTableRecord* record = current.get(recordId);
            if (dropping || record == nullptr) {
                drop(id);
            } else {
                record->setBlockEnd(id);
            }
        } else {
            if (!blockStart) {
                return fail(item.front().line, "expected 0 BLOCK before 0 " + std::string(type));
            }
            return readEntity(item, recordId, current, sequence, dropping);
        }
        return true;
    });
    if (read && blockStart) {
        return fail(*blockStart, "the block has no end: expected 0 ENDBLK before 0 ENDSEC");
    }
    return read;
}

// Closes a run of sub-entities; a run the file did not close gets its SEQEND.
void DatabaseLoader::endSequence(Sequence& sequence) {
    if (sequence.parent.isNull()) return;
    auto parent = open<ComplexEntity>(sequence.parent, OpenMode::ForWrite);
    if (parent && !parent->subentityIds().empty() && parent->sequenceEndId().isNull()) {
        const ObjectId end = make(MadeTags("SEQEND", {{8, "0"}}), sequence.parent);
        if (!end.isNull()) parent->attachSequenceEnd(end);
    }
    sequence = Sequence{};
}

bool DatabaseLoader::readSubentity(TagSpan item, std::string_view type, Sequence& sequence,
                                   bool dropping) {
    const bool isEnd = type == "SEQEND";
    if (sequence.parent.isNull() || (!isEnd && type != sequence.childType)) {
        issue(kIssueStraySubentity,
              placeText(place_, item.front().line) + ": " + std::string(type) + " follows no " +
                  (type == "VERTEX" ? "POLYLINE" : "INSERT") + "; it was dropped",
              ReadingFiler::handleOf(item));
        return true;
    }
    const ObjectId id = readAndStore(item, Placement::Entity, sequence.parent);
    if (id.isNull()) return false;
    auto parent = open<ComplexEntity>(sequence.parent, OpenMode::ForWrite);
    if (dropping || !parent) {
        parent.close();
        drop(id);
    } else if (isEnd) {
        parent->attachSequenceEnd(id);
    } else {
        parent->attachSubentity(id);
    }
    if (isEnd) sequence = Sequence{};
    return true;
}

// Reads an entity into `owner` (null: model or paper space, as the entity says).
bool DatabaseLoader::readEntity(TagSpan item, ObjectId owner, OpenRecord& current,
                                Sequence& sequence, bool dropping) {
    const std::string_view type = typeOf(item);
    if (type == "ATTRIB" || type == "VERTEX" || type == "SEQEND")
        return readSubentity(item, type, sequence, dropping);
    endSequence(sequence);
    auto object = readItem(item, Placement::Entity);
    if (!object) return false;
    const auto* entity = dynamic_cast<const Entity*>(object.get());
    if (entity == nullptr) {
        issue(kIssueStraySubentity,
              placeText(place_, item.front().line) + ": " + std::string(type) +
                  " is not an entity; it was dropped",
              ReadingFiler::handleOf(item));
        return true;
    }
    if (owner.isNull()) owner = entityOwner(*entity);
    // Only these two own sub-entities; asked by name, since a failing cast is slow and
    // nearly every entity would fail it.
    const bool complex = type == "INSERT" || type == "POLYLINE";
    const ObjectId id = store(std::move(object), item, owner);
    if (dropping) {
        drop(id);
        return true;
    }
    if (BlockTableRecord* record = current.get(owner)) record->appendEntity(id);
    if (complex) sequence = Sequence{id, type == "INSERT" ? "ATTRIB" : "VERTEX"};
    return true;
}

// An entity of the ENTITIES section belongs to the block record its owner names, or, when
// that names none (R12 files have no owners), to model or paper space by its 67 flag.
ObjectId DatabaseLoader::entityOwner(const Entity& entity) {
    const Handle owner = filer_.ownerHandle();
    if (!owner.isNull()) {
        ObjectId id;
        if (db_.getObjectId(id, false, owner) == ErrorStatus::eOk && id.isValid() &&
            dynamic_cast<const BlockTableRecord*>(id.slot()->object.get()) != nullptr) {
            return id;
        }
    }
    return entity.isInPaperSpace() ? ids_.paperSpace : ids_.modelSpace;
}

bool DatabaseLoader::readEntities(const Section& section) {
    OpenRecord current;
    Sequence sequence;
    const bool read = eachItem(section, [&](TagSpan item) {
        return readEntity(item, ObjectId::kNull, current, sequence, false);
    });
    if (!read) return false;
    current.record.close();
    endSequence(sequence);
    return true;
}

}  // namespace cad::db::dxf
