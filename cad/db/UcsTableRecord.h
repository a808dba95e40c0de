// A named user coordinate system: origin and axes. Its orthographic variants and base, when
// the file has them, are kept as read.
#pragma once

#include <memory>

#include "cad/db/SymbolTableRecord.h"
#include "cad/ge/Point3d.h"
#include "cad/ge/Vector3d.h"

namespace cad::db {

class UcsTableRecord : public SymbolTableRecord {
public:
    UcsTableRecord() = default;

    std::string_view dxfName() const override { return "UCS"; }
    std::string_view className() const override { return "AcDbUCSTableRecord"; }
    SymbolTableKind tableKind() const override { return SymbolTableKind::Ucs; }

    const ge::Point3d& origin() const { return origin_; }
    ErrorStatus setOrigin(const ge::Point3d& origin);
    const ge::Vector3d& xAxis() const { return xAxis_; }
    const ge::Vector3d& yAxis() const { return yAxis_; }
    // The axes must be perpendicular and not zero.
    ErrorStatus setAxes(const ge::Vector3d& xAxis, const ge::Vector3d& yAxis);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    UcsTableRecord(const UcsTableRecord&) = default;

    ge::Point3d origin_;
    ge::Vector3d xAxis_{1.0, 0.0, 0.0};
    ge::Vector3d yAxis_{0.0, 1.0, 0.0};
};

}  // namespace cad::db
