// Symbol table records: names, flags and the rename rules they share.
#include "cad/db/SymbolTableRecord.h"

#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"

namespace cad::db {

bool SymbolTableRecord::isValidName(std::string_view name) {
    if (name.empty()) return false;
    constexpr std::string_view kRefused = "<>/\\\":;?|,=`";
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        if (byte < 0x20 || kRefused.find(name[i]) != std::string_view::npos) return false;
        if (name[i] == '*' && i != 0) return false;
    }
    return true;
}

ErrorStatus SymbolTableRecord::setName(std::string_view name) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    if (!isValidName(name)) return ErrorStatus::eInvalidKey;
    if (SymbolTable* table = owningTable()) {
        if (table->kind() != SymbolTableKind::Viewport &&
            !table->lookUp(name, false, objectId()).isNull())
            return ErrorStatus::eDuplicateKey;
        table->nameChanged();
    }
    name_ = name;
    return ErrorStatus::eOk;
}

ErrorStatus SymbolTableRecord::setFlags(std::int16_t flags) {
    if (ErrorStatus es = checkWritable(); es != ErrorStatus::eOk) return es;
    flags_ = flags;
    return ErrorStatus::eOk;
}

void SymbolTableRecord::dxfFields(DxfFiler& filer) {
    filer.subclass("AcDbSymbolTableRecord");
}

void SymbolTableRecord::nameAndFlags(DxfFiler& filer) {
    nameField(filer);
    filer.int16(70, flags_);
}

void SymbolTableRecord::nameField(DxfFiler& filer) {
    filer.string(2, name_);
    if (filer.isReading()) {
        if (SymbolTable* table = owningTable()) table->nameChanged();
    }
}

void SymbolTableRecord::assignName(std::string_view name) {
    name_ = name;
    if (SymbolTable* table = owningTable()) table->nameChanged();
}

ErrorStatus SymbolTableRecord::completeNewRecord() {
    return ErrorStatus::eOk;
}

SymbolTable* SymbolTableRecord::owningTable() const {
    ObjectSlot* slot = ownerId().slot();
    if (slot == nullptr || !slot->object) return nullptr;
    return dynamic_cast<SymbolTable*>(slot->object.get());
}

}  // namespace cad::db
