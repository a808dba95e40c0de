// A dimension style. The engine draws no dimensions, so the many dimension variables are
// kept as read; only the references to other records are fields, so cloning a style brings
// its text style and arrow blocks along.
#pragma once

#include <memory>

#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class DimStyleTableRecord : public SymbolTableRecord {
public:
    DimStyleTableRecord() = default;

    std::string_view dxfName() const override { return "DIMSTYLE"; }
    std::string_view className() const override { return "AcDbDimStyleTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::DimStyle; }

    ObjectId dimtxsty() const { return textStyle_; }
    ErrorStatus setDimtxsty(ObjectId textStyle);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    DimStyleTableRecord(const DimStyleTableRecord&) = default;

    ObjectId textStyle_;    // 340 DIMTXSTY
    ObjectId leaderBlock_;  // 341 DIMLDRBLK
    ObjectId arrowBlock_;   // 342 DIMBLK
    ObjectId arrowBlock1_;  // 343 DIMBLK1
    ObjectId arrowBlock2_;  // 344 DIMBLK2
};

}  // namespace cad::db
