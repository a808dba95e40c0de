// The audit works from one picture of who lists whom (the containers' owned objects and the
// extension dictionaries), taken before anything is repaired, and then checks every live
// object's owner, its references as the reference walker sees them, and the layout links.
#include "cad/db/Audit.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "cad/db/Attribute.h"
#include "cad/db/BlockBegin.h"
#include "cad/db/BlockEnd.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/ComplexEntity.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Entity.h"
#include "cad/db/Layout.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/ReferenceWalker.h"
#include "cad/db/SequenceEnd.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/Vertex.h"

namespace cad::db {
namespace {

using Kind = ReferenceWalker::Kind;
using SymbolKind = DxfFiler::SymbolTable;

// The object of an id, erased or not; null when the id names nothing.
DbObject* objectOf(ObjectId id) {
    return id.isNull() ? nullptr : id.slot()->object.get();
}

template <class T>
T* liveAs(ObjectId id) {
    return id.isLive() ? dynamic_cast<T*>(objectOf(id)) : nullptr;
}

// "LINE 2A" for an object, the bare handle for a reference that names nothing.
std::string describe(ObjectId id) {
    const DbObject* object = objectOf(id);
    if (object == nullptr) return id.handle().toHex();
    return std::string(object->dxfName()) + " " + id.handle().toHex();
}

// Containers whose listing is known in full: for these an owned object they do not list is a
// broken link. Objects kept raw may hold their children under codes the engine cannot read.
bool listsEverythingItOwns(const DbObject& owner) {
    return dynamic_cast<const Dictionary*>(&owner) != nullptr ||
           dynamic_cast<const SymbolTable*>(&owner) != nullptr ||
           dynamic_cast<const BlockTableRecord*>(&owner) != nullptr ||
           dynamic_cast<const ComplexEntity*>(&owner) != nullptr;
}

// An entity that stands in a block's list of its own: not a block's BLOCK or ENDBLK, and not
// a part of a complex entity (attribute, vertex, SEQEND), which only its entity may list.
bool standsAlone(const DbObject& object) {
    return dynamic_cast<const Entity*>(&object) != nullptr &&
           dynamic_cast<const BlockBegin*>(&object) == nullptr &&
           dynamic_cast<const BlockEnd*>(&object) == nullptr &&
           dynamic_cast<const SequenceEnd*>(&object) == nullptr &&
           dynamic_cast<const Attribute*>(&object) == nullptr &&
           dynamic_cast<const Vertex*>(&object) == nullptr;
}

class Auditor {
public:
    // The ids are taken once: repairs add no objects, and sorting them by handle again for
    // every pass would cost more than the passes.
    Auditor(const Database& db, Database* writable)
        : db_(db), writable_(writable), ids_(db.objectIds()) {}

    std::vector<AuditIssue> run() {
        checkWellKnownObjects();
        collectListings();
        for (const ObjectId id : ids_) {
            if (id.isErased()) continue;
            checkOwner(id);
            checkReferences(id);
        }
        checkOwnerCycles();
        checkLayoutLinks();
        return std::move(issues_);
    }

private:
    // Who lists an object: the first live container, and how many listings there are.
    struct Listing {
        ObjectId first;
        ObjectId second;
        int count = 0;
    };

    // A reference to replace when repairing: every visit of `from` under a field of this kind.
    struct Replacement {
        ObjectSlot* from = nullptr;
        bool symbol = false;
        ObjectId to;
        std::size_t issue = 0;
    };

    bool fixing() const { return writable_ != nullptr; }

    AuditIssue& report(int code, std::string message, ObjectId id) {
        issues_.push_back(AuditIssue{code, std::move(message), id.handle(), false});
        return issues_.back();
    }

    void markFixed(std::size_t index, std::string_view howFixed) {
        issues_[index].fixed = true;
        issues_[index].message += "; ";
        issues_[index].message += howFixed;
    }

    // ---- The objects every drawing has ----

    void checkWellKnownObjects() {
        const Database::WellKnownIds& ids = db_.wellKnownIds();
        const std::pair<ObjectId, std::string_view> required[] = {
            {ids.blockTable, "the block table"},
            {ids.layerTable, "the layer table"},
            {ids.linetypeTable, "the linetype table"},
            {ids.textStyleTable, "the text style table"},
            {ids.viewTable, "the view table"},
            {ids.ucsTable, "the UCS table"},
            {ids.viewportTable, "the viewport table"},
            {ids.regAppTable, "the application table"},
            {ids.dimStyleTable, "the dimension style table"},
            {ids.namedObjects, "the named-objects dictionary"},
            {ids.groupDictionary, "the group dictionary"},
            {ids.layoutDictionary, "the layout dictionary"},
            {ids.modelSpace, "*Model_Space"},
            {ids.paperSpace, "*Paper_Space"},
            {ids.layerZero, "layer \"0\""},
            {ids.byLayer, "linetype \"ByLayer\""},
            {ids.byBlock, "linetype \"ByBlock\""},
            {ids.continuous, "linetype \"Continuous\""},
            {ids.standardStyle, "text style \"Standard\""},
        };
        for (const auto& [id, what] : required) {
            if (id.isLive()) continue;
            report(kIssueMissingStandardObject,
                   std::string(what) + (id.isValid() ? " was erased" : " is missing"), id);
        }
    }

    // ---- Owners ----

    void collectListings() {
        std::vector<ObjectId> owned;
        for (const ObjectId id : ids_) {
            if (id.isErased()) continue;
            const DbObject* object = objectOf(id);
            owned.clear();
            object->ownedObjects(owned);
            if (const ObjectId xdict = object->extensionDictionary(); !xdict.isNull())
                owned.push_back(xdict);
            for (const ObjectId child : owned) {
                Listing& listing = listings_[child.slot()];
                if (listing.count == 0) {
                    listing.first = id;
                } else if (listing.count == 1) {
                    listing.second = id;
                }
                ++listing.count;
            }
        }
    }

    const Listing* listingOf(ObjectId id) const {
        const auto it = listings_.find(id.slot());
        return it == listings_.end() ? nullptr : &it->second;
    }

    bool mayHaveNoOwner(ObjectId id) const {
        return id == db_.wellKnownIds().namedObjects ||
               dynamic_cast<const SymbolTable*>(objectOf(id)) != nullptr;
    }

    void checkOwner(ObjectId id) {
        const DbObject& object = *objectOf(id);
        const ObjectId owner = object.ownerId();
        const Listing* listing = listingOf(id);
        const ObjectId lister = listing != nullptr ? listing->first : ObjectId::kNull;

        if (listing != nullptr && listing->count > 1) {
            const ObjectId other = listing->second;
            report(kIssueListedTwice,
                   describe(id) + " is listed by " + describe(lister) +
                       (other == lister ? " twice" : " and by " + describe(other)),
                   id);
        }

        if (owner.isNull()) {
            if (mayHaveNoOwner(id)) return;
            report(kIssueMissingOwner, describe(id) + " has no owner", id);
            if (!lister.isNull()) relink(id, lister, issues_.size() - 1);
            return;
        }
        if (!owner.isLive()) {
            report(kIssueDanglingOwner,
                   describe(id) + ": its owner " + describe(owner) +
                       (owner.isValid() ? " was erased" : " names no object"),
                   id);
            if (!lister.isNull()) {
                relink(id, lister, issues_.size() - 1);
            } else if (owner.isValid()) {
                // Erasing the owner would have taken this object along; nothing reaches it.
                eraseObject(id, issues_.size() - 1);
            }
            return;
        }
        const DbObject& ownerObject = *objectOf(owner);
        if (!listsEverythingItOwns(ownerObject)) return;
        if (listing != nullptr && (listing->first == owner || listing->second == owner)) return;
        report(kIssueOwnerDoesNotList,
               describe(id) + ": its owner " + describe(owner) + " does not list it", id);
        if (!lister.isNull()) {
            relink(id, lister, issues_.size() - 1);
        } else if (standsAlone(object) &&
                   dynamic_cast<const BlockTableRecord*>(&ownerObject) != nullptr) {
            appendToBlock(id, owner, issues_.size() - 1);
        }
    }

    void relink(ObjectId id, ObjectId newOwner, std::size_t issue) {
        if (!fixing()) return;
        auto object = open<DbObject>(id, OpenMode::ForWrite);
        if (!object || object->setOwnerId(newOwner) != ErrorStatus::eOk) return;
        markFixed(issue, "its owner is now " + describe(newOwner));
    }

    void eraseObject(ObjectId id, std::size_t issue) {
        if (!fixing()) return;
        auto object = open<DbObject>(id, OpenMode::ForWrite);
        if (!object || object->erase() != ErrorStatus::eOk) return;
        markFixed(issue, "it was erased");
    }

    void appendToBlock(ObjectId id, ObjectId block, std::size_t issue) {
        if (!fixing()) return;
        auto record = open<BlockTableRecord>(block, OpenMode::ForWrite);
        if (!record || record->appendEntity(id) != ErrorStatus::eOk) return;
        markFixed(issue, "it was appended to its block");
    }

    // A chain of owners that comes back to where it started never reaches the root. Such an
    // object is not repaired: which link of the loop is wrong cannot be told.
    void checkOwnerCycles() {
        // 1: on the chain being followed, 2: known to end outside any loop.
        std::unordered_map<const ObjectSlot*, int> state;
        std::vector<ObjectId> chain;
        for (const ObjectId start : ids_) {
            if (start.isErased()) continue;
            chain.clear();
            ObjectId current = start;
            while (current.isLive() && state[current.slot()] == 0) {
                state[current.slot()] = 1;
                chain.push_back(current);
                current = objectOf(current)->ownerId();
            }
            if (current.isLive() && state[current.slot()] == 1) {
                report(kIssueOwnerCycle,
                       describe(current) + ": its owners lead back to it, never to the root",
                       current);
            }
            for (const ObjectId id : chain) state[id.slot()] = 2;
        }
    }

    // ---- References ----

    void checkReferences(ObjectId id) {
        DbObject& object = *objectOf(id);
        std::vector<Replacement> replacements;
        std::vector<ObjectSlot*> seen;  // each bad reference reported once per object

        if (const ObjectId xdict = object.extensionDictionary();
            !xdict.isNull() && !xdict.isLive()) {
            seen.push_back(xdict.slot());
            report(kIssueDanglingDictionaryEntry,
                   describe(id) + ": its extension dictionary " + describe(xdict) +
                       (xdict.isValid() ? " was erased" : " names no object"),
                   id);
            if (fixing()) {
                if (auto writable = open<DbObject>(id, OpenMode::ForWrite)) {
                    writable->setExtensionDictionary(ObjectId::kNull);
                    markFixed(issues_.size() - 1, "the link was removed");
                }
            }
        }
        if (auto* dictionary = dynamic_cast<Dictionary*>(&object)) {
            checkDictionaryEntries(id, *dictionary, seen);
        }

        const auto consider = [&](const ReferenceWalker::Field& field, ObjectId ref) {
            if (field.kind == Kind::Owner || field.kind == Kind::Arbitrary || ref.isNull()) return;
            const bool named = ref.isValid();
            if (named && (!ref.isErased() ||
                          (field.kind != Kind::HardPointer && field.kind != Kind::Symbol)))
                return;
            for (ObjectSlot* slot : seen) {
                if (slot == ref.slot()) return;
            }
            seen.push_back(ref.slot());
            const std::string what = named ? " names the erased " + describe(ref)
                                           : " names no object (" + describe(ref) + ")";
            if (field.kind == Kind::Symbol) {
                report(
                    kIssueMissingSymbol,
                    describe(id) + ": its " + std::string(DxfFiler::recordWord(field.table)) + what,
                    id);
                if (const ObjectId standard = standardRecord(field.table); !standard.isNull())
                    replacements.push_back({ref.slot(), true, standard, issues_.size() - 1});
                return;
            }
            report(named ? kIssuePointerToErased : kIssueDanglingReference,
                   describe(id) + ": reference " + std::to_string(field.code) + what, id);
            // Entries of a block, table or entity cannot be cleared without leaving a hole in
            // the list; pointers can.
            if (field.kind != Kind::SoftOwner && field.kind != Kind::HardOwner)
                replacements.push_back({ref.slot(), false, ObjectId::kNull, issues_.size() - 1});
        };
        ReferenceWalker finder(
            [&](const ReferenceWalker::Field& field, ObjectId& ref) { consider(field, ref); });
        finder.walk(object);

        if (!fixing() || replacements.empty()) return;
        auto writable = open<DbObject>(id, OpenMode::ForWrite);
        if (!writable) return;
        ReferenceWalker fixer([&](const ReferenceWalker::Field& field, ObjectId& ref) {
            if (field.kind == Kind::Owner || ref.isNull()) return;
            for (const Replacement& r : replacements) {
                if (r.from == ref.slot() && r.symbol == (field.kind == Kind::Symbol)) {
                    ref = r.to;
                    return;
                }
            }
        });
        fixer.walk(*writable);
        for (const Replacement& r : replacements) {
            markFixed(r.issue, r.to.isNull() ? "it was cleared" : "it now names " + describe(r.to));
        }
    }

    void checkDictionaryEntries(ObjectId id, const Dictionary& dictionary,
                                std::vector<ObjectSlot*>& seen) {
        std::vector<std::pair<std::string, std::size_t>> dangling;
        for (const Dictionary::Entry& entry : dictionary.entries()) {
            if (entry.id.isValid() || entry.id.isNull()) continue;
            seen.push_back(entry.id.slot());
            report(kIssueDanglingDictionaryEntry,
                   describe(id) + ": entry \"" + entry.key + "\" names no object (" +
                       describe(entry.id) + ")",
                   id);
            dangling.emplace_back(entry.key, issues_.size() - 1);
        }
        if (!fixing() || dangling.empty()) return;
        auto writable = open<Dictionary>(id, OpenMode::ForWrite);
        if (!writable) return;
        for (const auto& [key, issue] : dangling) {
            if (writable->remove(key) == ErrorStatus::eOk) markFixed(issue, "it was removed");
        }
    }

    // What a reference to a missing record falls back to, as new entities get it.
    ObjectId standardRecord(SymbolKind kind) const {
        const Database::WellKnownIds& ids = db_.wellKnownIds();
        ObjectId standard;
        switch (kind) {
            case SymbolKind::Layer:
                standard = ids.layerZero;
                break;
            case SymbolKind::Linetype:
                standard = ids.byLayer;
                break;
            case SymbolKind::TextStyle:
                standard = ids.standardStyle;
                break;
            case SymbolKind::DimStyle:
                if (const auto* table = liveAs<SymbolTable>(ids.dimStyleTable))
                    table->getAt("Standard", standard);
                break;
            case SymbolKind::Block:
                break;  // a block cannot stand in for another
        }
        return standard.isLive() ? standard : ObjectId::kNull;
    }

    // ---- Layouts ----

    // A layout and its block record name each other. Each broken pair is reported once: from
    // the layout when the layout names a record, otherwise from the record.
    void checkLayoutLinks() {
        std::vector<ObjectId> layouts;
        std::vector<ObjectId> records;
        for (const ObjectId id : ids_) {
            if (liveAs<Layout>(id) != nullptr) layouts.push_back(id);
            if (liveAs<BlockTableRecord>(id) != nullptr) records.push_back(id);
        }
        for (const ObjectId id : layouts) checkLayout(id, records);
        for (const ObjectId id : records) checkLayoutBlock(id, layouts);
    }

    void checkLayout(ObjectId id, const std::vector<ObjectId>& records) {
        const ObjectId recordId = liveAs<Layout>(id)->blockTableRecordId();
        if (const auto* record = liveAs<BlockTableRecord>(recordId)) {
            const ObjectId back = record->layoutId();
            if (back == id) return;
            const bool backIsLayout = liveAs<Layout>(back) != nullptr;
            report(
                kIssueLayoutLink,
                describe(id) + " names block record " + describe(recordId) +
                    (back.isNull() ? ", which names no layout" : ", which names " + describe(back)),
                id);
            if (!backIsLayout && fixing()) {
                auto writable = open<BlockTableRecord>(recordId, OpenMode::ForWrite);
                if (writable && writable->setLayoutId(id) == ErrorStatus::eOk)
                    markFixed(issues_.size() - 1, "the block record now names the layout");
            }
            return;
        }
        report(kIssueLayoutLink,
               describe(id) + (recordId.isNull()
                                   ? " names no block record"
                                   : " names " + describe(recordId) + ", not a live block record"),
               id);
        std::optional<ObjectId> namedBy;
        for (const ObjectId record : records) {
            if (liveAs<BlockTableRecord>(record)->layoutId() != id) continue;
            namedBy = namedBy ? ObjectId::kNull : record;  // only a single claim is trusted
        }
        if (!namedBy || namedBy->isNull() || !fixing()) return;
        auto writable = open<Layout>(id, OpenMode::ForWrite);
        if (writable && writable->setBlockTableRecordId(*namedBy) == ErrorStatus::eOk)
            markFixed(issues_.size() - 1, "it now names " + describe(*namedBy));
    }

    void checkLayoutBlock(ObjectId id, const std::vector<ObjectId>& layouts) {
        const ObjectId layoutId = liveAs<BlockTableRecord>(id)->layoutId();
        if (layoutId.isNull()) return;
        if (const auto* layout = liveAs<Layout>(layoutId)) {
            const ObjectId back = layout->blockTableRecordId();
            // A layout naming no live record was reported from the layout's side.
            if (back == id || liveAs<BlockTableRecord>(back) == nullptr) return;
            report(kIssueLayoutLink,
                   describe(id) + " names " + describe(layoutId) + ", which belongs to " +
                       describe(back),
                   id);
            return;
        }
        for (const ObjectId layout : layouts) {
            if (liveAs<Layout>(layout)->blockTableRecordId() == id) return;  // reported there
        }
        report(kIssueLayoutLink,
               describe(id) + " names " + describe(layoutId) + ", not a live layout", id);
    }

    const Database& db_;
    Database* writable_;
    const std::vector<ObjectId> ids_;  // in handle order, so issues come in that order
    std::unordered_map<const ObjectSlot*, Listing> listings_;
    std::vector<AuditIssue> issues_;
};

}  // namespace

std::vector<AuditIssue> audit(const Database& db) {
    return Auditor(db, nullptr).run();
}

std::vector<AuditIssue> audit(Database& db, bool fix) {
    return Auditor(db, fix ? &db : nullptr).run();
}

}  // namespace cad::db
