// Keeping placed parts in step with their library: the linked parts of a drawing found with the
// BOM attributes they carry, compared with their records as the library drawings hold them now,
// and their attributes brought up to date. Free of Qt; VNKSYNC shows the outcome.
#pragma once

#include <string>
#include <vector>

#include "cad/db/ObjectId.h"
#include "vantor/placement/PartLink.h"
#include "vantor/store/PartRecord.h"
#include "vantor/ui/PartFields.h"

namespace cad::db {
class Database;
}

namespace vantor {

class LibraryDrawingCache;

// An attribute holding one catalogue field of a placed part.
struct CarriedAttribute {
    cad::db::ObjectId attribute;
    PartFields::Id field;
    std::string text;
};

struct LinkedPart {
    cad::db::ObjectId carrier;  // the reference with the link (a marker of an exploded part)
    std::string blockName;
    PartLink link;
    // The part's own attributes, those of the markers placed beside it and of the markers
    // inside its block, for every attribute whose tag names a field (QTY names none).
    std::vector<CarriedAttribute> attributes;
};

enum class PartSyncState { Current, Changed, DrawingMissing, DrawingUnreadable, RecordDeleted };

struct FieldChange {
    PartFields::Id field;
    std::string carried;
    std::string current;
};

struct PartSyncEntry {
    LinkedPart part;
    PartSyncState state = PartSyncState::Current;
    PartRecord record;                 // as the library holds it now; empty when gone
    std::vector<FieldChange> changes;  // one per field that differs, in field order

    bool gone() const { return state != PartSyncState::Current && state != PartSyncState::Changed; }
};

// Every block reference of the drawing's layouts that carries a link, in layout and drawing
// order.
std::vector<LinkedPart> findLinkedParts(cad::db::Database& db);

// Each part compared with its record, read through the cache (a library drawing is read once
// for all its parts, and never written).
std::vector<PartSyncEntry> compareWithRecords(std::vector<LinkedPart> parts,
                                              LibraryDrawingCache& libraries);

// Gives every attribute of the changed entries its record's text; parts whose record is gone are
// left as they are. Answers how many attributes changed.
int updateCarriedAttributes(const std::vector<PartSyncEntry>& entries);

// What VNKSYNC lists: the parts that changed or whose record is gone, as texts.
struct PartSyncRow {
    std::string handle;  // the carrier's, as typed at a handle prompt
    std::string block;
    std::string name;     // the carried Korean name, else the record's
    std::string drawing;  // the library drawing's file name
    std::string group;
    std::string state;
    std::string changes;  // "SPEC: M10x40 → M10x45, WEIGHT: 0.033 → 0.035"
    bool updatable = false;
};

struct PartSyncList {
    int linked = 0;  // parts checked
    int changed = 0;
    int gone = 0;
    std::vector<PartSyncRow> rows;
};

PartSyncList makeSyncList(const std::vector<PartSyncEntry>& entries);
std::string partSyncStateText(PartSyncState state);

}  // namespace vantor
