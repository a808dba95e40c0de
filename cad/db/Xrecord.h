// An extended record: a chain of typed values (ResBuf) kept in a dictionary, which is how
// applications store their own data in a drawing.
#pragma once

#include <cstdint>
#include <memory>

#include "cad/db/DbObject.h"
#include "cad/db/ResBuf.h"

namespace cad::db {

class Xrecord : public DbObject {
public:
    Xrecord() = default;

    std::string_view dxfName() const override { return "XRECORD"; }
    std::string_view className() const override { return "AcDbXrecord"; }

    const ResBufChain& rbChain() const { return chain_; }
    // Replaces the whole chain; the record must be open for write.
    ErrorStatus setFromRbChain(ResBufChain chain);

    // What cloning does with a record whose key the target holds already (280): 1 keeps the
    // existing one, the host's default.
    std::int16_t mergeStyle() const { return mergeStyle_; }
    ErrorStatus setMergeStyle(std::int16_t style);

    void dxfFields(DxfFiler& filer) override;
    std::unique_ptr<DbObject> clone() const override;

private:
    Xrecord(const Xrecord&) = default;

    ResBufChain chain_;
    std::int16_t mergeStyle_ = 1;
};

}  // namespace cad::db
