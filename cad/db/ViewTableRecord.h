// A named view saved in the drawing. Its user coordinate system and render data, when the
// file has them, are kept as read.
#pragma once

#include <memory>

#include "cad/db/AbstractViewTableRecord.h"

namespace cad::db {

class ViewTableRecord : public AbstractViewTableRecord {
public:
    ViewTableRecord() = default;

    std::string_view dxfName() const override { return "VIEW"; }
    std::string_view className() const override { return "AcDbViewTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::View; }

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    ViewTableRecord(const ViewTableRecord&) = default;

    std::int16_t renderMode_ = 0;
    std::int16_t ucsAssociated_ = 0;
};

}  // namespace cad::db
