// A registered application name: extended data (1001) may only name applications listed here.
#pragma once

#include <memory>

#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class RegAppTableRecord : public SymbolTableRecord {
public:
    RegAppTableRecord() = default;

    std::string_view dxfName() const override { return "APPID"; }
    std::string_view className() const override { return "AcDbRegAppTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::RegApp; }

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    RegAppTableRecord(const RegAppTableRecord&) = default;
};

}  // namespace cad::db
