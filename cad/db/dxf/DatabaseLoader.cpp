// Reading: the header, the classes, and each structure into an object stored under its handle.
#include "cad/db/dxf/DatabaseLoader.h"

#include "cad/db/Dictionary.h"
#include "cad/db/Entity.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"

namespace cad::db::dxf {

bool DatabaseLoader::readHeader() {
    auto& variables = db_.header().variables();
    variables.reserve(structure_.header.size());
    for (const HeaderVariable& variable : structure_.header) {
        HeaderVariables::Variable kept{decodeText(variable.name, codePage_), {}};
        for (const Tag& tag : variable.tags) {
            auto value = ReadingFiler::keptValue(tag, codePage_, place_, error_);
            if (!value) return false;
            kept.tags.push_back(RawTag{tag.code, std::move(*value)});
        }
        if (db_.header().find(kept.name) == nullptr) variables.push_back(std::move(kept));
    }
    return true;
}

bool DatabaseLoader::readClasses() {
    const Section* section = structure_.section("CLASSES");
    if (section == nullptr) return true;
    return eachItem(*section, [this](TagSpan item) {
        if (typeOf(item) != "CLASS") return true;
        std::vector<RawTag> tags;
        std::string dxfName;
        std::string className;
        for (const Tag& tag : item.subspan(1)) {
            auto value = ReadingFiler::keptValue(tag, codePage_, place_, error_);
            if (!value) return false;
            if (tag.code == 1) dxfName = *value;
            if (tag.code == 2) className = *value;
            tags.push_back(RawTag{tag.code, std::move(*value)});
        }
        if (!dxfName.empty()) classNames_.emplace(dxfName, className);
        db_.dxfClasses().push_back(std::move(tags));
        return true;
    });
}

// Handles the file does not give (R12, damaged objects) must not collide with any it
// gives later, so the next free handle starts above every handle in the file.
void DatabaseLoader::reserveHandles() {
    Handle largest;
    std::size_t count = 0;
    for (const Section& section : structure_.sections) {
        count += section.items.size();
        for (const TagRun& item : section.items) {
            if (largest < item.handle) largest = item.handle;
        }
    }
    db_.setHandseed(largest.next());
    db_.reserveObjects(count);
    if (const HeaderVariable* seed = structure_.variable("$HANDSEED")) {
        for (const Tag& tag : seed->tags) {
            if (const auto value = toHandle(tag)) db_.setHandseed(Handle{*value});
        }
    }
}

std::string_view DatabaseLoader::classNameOf(std::string_view type, TagSpan item) const {
    const auto it = classNames_.find(std::string(type));
    if (it != classNames_.end()) return it->second;
    std::string_view last;
    for (const Tag& tag : item) {
        if (tag.code == 100) last = trimBlanks(tag.value);
    }
    return last;
}

// Reads one structure into a new object; null with error_ set when a value is bad.
std::unique_ptr<DbObject> DatabaseLoader::readItem(TagSpan item, Placement placement) {
    const std::string_view type = typeOf(item);
    // Only types kept raw need their class name.
    const std::string_view className =
        ObjectFactory::isModelled(type) ? std::string_view() : classNameOf(type, item);
    auto object = ObjectFactory::create(type, className, placement, item);
    if (!filer_.read(*object, item)) {
        error_ = filer_.error();
        return nullptr;
    }
    for (const DxfError& link : filer_.unreadableLinks()) {
        issue(kIssueUnreadableLink, std::string(type) + " at " + link.message,
              ReadingFiler::handleOf(item));
    }
    return object;
}

// Stores an object under the handle the file gave it, or a new one when the file gave
// none or a handle taken already.
ObjectId DatabaseLoader::store(std::unique_ptr<DbObject> object, TagSpan item, ObjectId owner) {
    const Handle handle = ReadingFiler::handleOf(item);
    // Handles mostly rise through a file; only one at or below the largest stored so far
    // can repeat one (a slot made by a reference has no object and is filled, not taken).
    ObjectId taken;
    const bool duplicate = !handle.isNull() && handle <= largestStored_ &&
                           db_.getObjectId(taken, false, handle) == ErrorStatus::eOk &&
                           taken.isValid();
    if (largestStored_ < handle) largestStored_ = handle;
    const bool hasXdictionary = !object->extensionDictionary().isNull();
    ObjectId id;
    db_.addObject(std::move(object), id, owner, duplicate ? Handle{} : handle);
    if (hasXdictionary) withXdictionary_.push_back(id);
    if (!duplicate && (!handle.isNull() || !hasHandles())) return id;
    const std::string where =
        placeText(place_, item.front().line) + ": " + std::string(typeOf(item));
    if (duplicate) {
        // The later object gets a new handle, so both survive.
        issue(kIssueDuplicateHandle,
              where + " repeats handle " + handle.toHex() + "; it was given " + id.handle().toHex(),
              id.handle());
    } else {
        issue(kIssueMissingHandle, where + " has no handle; it was given " + id.handle().toHex(),
              id.handle());
    }
    return id;
}

ObjectId DatabaseLoader::readAndStore(TagSpan item, Placement placement, ObjectId owner) {
    auto object = readItem(item, placement);
    if (!object) return ObjectId::kNull;
    return store(std::move(object), item, owner);
}

bool DatabaseLoader::readObjects(const Section& section) {
    return eachItem(section, [this](TagSpan item) {
        auto object = readItem(item, Placement::Object);
        if (!object) return false;
        const Handle ownerHandle = filer_.ownerHandle();
        ObjectId owner;
        if (!ownerHandle.isNull()) db_.getObjectId(owner, true, ownerHandle);
        const bool isDictionary = dynamic_cast<const Dictionary*>(object.get()) != nullptr;
        // Entities and table records have their own sections; written from here they
        // would be lost, and whatever links to them would dangle.
        const bool misplaced = dynamic_cast<const Entity*>(object.get()) != nullptr ||
                               dynamic_cast<const SymbolTable*>(object.get()) != nullptr ||
                               dynamic_cast<const SymbolTableRecord*>(object.get()) != nullptr;
        const ObjectId id = store(std::move(object), item, owner);
        if (misplaced) {
            drop(id);
            issue(kIssueStraySubentity,
                  placeText(place_, item.front().line) + ": " + std::string(typeOf(item)) +
                      " is not an object; it was dropped",
                  id.handle());
            return true;
        }
        objects_.push_back(id);
        // The first object of the section is the named-objects dictionary.
        if (ids_.namedObjects.isNull() && isDictionary && owner.isNull()) ids_.namedObjects = id;
        return true;
    });
}

}  // namespace cad::db::dxf
