// The supplier record of a supplier library drawing: company texts and a 150 x 40 logo kept
// as one extended record of 127 values under "KX_INFORM" / "KXADVINFO".
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cad/db/ResBuf.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}

namespace vantor {

inline constexpr std::string_view kSupplierDictionaryKey = "KX_INFORM";
inline constexpr std::string_view kSupplierRecordKey = "KXADVINFO";

// The seven texts live here rather than in ModuleSettings: the company information dialog
// fills this struct, and the library window's panel reads it back from the drawing.
struct SupplierInfo {
    static constexpr std::size_t kChunkSize = 254;
    static constexpr std::size_t kChunkCount = 119;  // fixed, so fields are taken by position
    static constexpr std::size_t kMaxLogoBytes = kChunkSize * kChunkCount;  // 30,226
    static constexpr std::size_t kTextCount = 7;
    static constexpr std::size_t kChainLength = 1 + kChunkCount + kTextCount;  // 127

    enum Text : std::size_t { CompanyName, Address, Phone, Fax, Internet, Mail, Remark };

    std::array<std::string, kTextCount> texts;
    std::string logo;      // the BMP file's bytes, header included
    std::string logoPath;  // the file the dialog names; not stored in the drawing

    // The size (code 90), 119 chunks (code 310): 254-byte pieces while the logo lasts, then
    // its remaining bytes, then one zero byte each; then the texts (code 1). The logo must fit.
    cad::db::ResBufChain toChain() const;

    // The texts and the logo as the panel has always read them back: the size taken as a
    // signed 16-bit number, 254-byte chunks placed at their running offset, a chunk as long as
    // size % 254 copied to that length's offset from the start (not to its own place), every
    // other chunk skipped, and a zero put at position size. A logo whose size is a multiple
    // of 254 comes back whole; otherwise its tail lands early and the true tail region stays
    // zero. A chain read from a DXF file, whose chunks came back in pieces of 127 bytes, is
    // taken as well. nullopt for an empty chain or one that is not of this shape.
    static std::optional<SupplierInfo> fromChain(const cad::db::ResBufChain& chain);

    // Reads the logo file and stores the record, making "KX_INFORM" when the drawing has none
    // and replacing an existing record. A file that cannot be opened, or is larger than a
    // record holds, is reported and nothing is written. Saving the drawing is the caller's.
    cad::ErrorStatus writeTo(cad::db::Database& db, cad::app::UserDialogs& dialogs);

    // The stored record, or nullopt when the drawing has none (or an unusable one).
    static std::optional<SupplierInfo> readFrom(cad::db::Database& db);
};

}  // namespace vantor
