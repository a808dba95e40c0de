// A library drawing as the store uses it: opened as a side database without a document,
// saved under its own name after every change, and its library dictionaries found by key,
// by path or by the node ids of a tree cache.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/ObjectId.h"
#include "cad/sys/ErrorStatus.h"
#include "vantor/store/LibraryKind.h"

namespace cad::app {
class UserDialogs;
}

namespace vantor {

// The title of every message about a drawing's missing file name.
inline constexpr std::string_view kFileNameErrorTitle = "파일 이름 확인 에러";

// Reads the drawing denying writes to others, and once more sharing it fully when another
// reader holds it that way (72). Any other failure answers nullptr, the database deleted;
// `status` tells why.
std::unique_ptr<cad::db::Database> openLibraryDrawing(const std::string& path,
                                                      cad::ErrorStatus* status = nullptr);

// Saves the database under its own file name and drops the drawing's tree cache. Without one,
// `fileNameMessage` is shown under kFileNameErrorTitle and nothing is saved (eInvalidInput); a
// failed save is reported under "저장 에러", since the change would otherwise be lost without a
// word.
cad::ErrorStatus saveLibraryDrawing(cad::db::Database& db, cad::app::UserDialogs& dialogs,
                                    std::string_view fileNameMessage);

// The dictionary of the library kind under the named-objects dictionary. When it is missing,
// a null id, unless `createIfMissing` (editing), which adds an empty dictionary for it.
cad::db::ObjectId libraryDictionaryId(cad::db::Database& db, LibraryKind kind,
                                      bool createIfMissing);

// The object a tree cache's node id names: ids are handle values, the same every time the
// drawing is read. A null id when no live object carries it.
cad::db::ObjectId objectIdOfNode(cad::db::Database& db, std::int64_t nodeId);

// The dictionary reached from the named-objects dictionary through `keys` (the library key,
// then category names), or a null id when one of them is missing or no dictionary.
cad::db::ObjectId dictionaryAtPath(cad::db::Database& db, const std::vector<std::string>& keys);

}  // namespace vantor
