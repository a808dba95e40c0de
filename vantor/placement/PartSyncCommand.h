// VNKSYNC's work on a drawing: the placed parts whose record changed or is gone listed, and on
// the user's word their BOM attributes updated, all in the command's one undo step.
#pragma once

#include <functional>

#include "vantor/placement/PartSync.h"

namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

// Shows the list and answers whether the changed parts are to be updated. Called only when the
// list has rows; the answer counts only when some row can be updated.
using PartSyncPresenter = std::function<bool(const PartSyncList& list)>;

inline constexpr const char* kSyncUpdatePrompt =
    "\nBOM 속성을 라이브러리에 맞게 갱신하시겠습니까? [Yes/No] <Yes>: ";

// The list on the command line, then the question as a keyword (Enter is yes).
bool presentSyncOnCommandLine(const PartSyncList& list, cad::ed::Editor& editor);

// Answers how many attributes were updated.
int runPartSync(cad::db::Database& db, cad::ed::Editor& editor, const PartSyncPresenter& present);

}  // namespace vantor
