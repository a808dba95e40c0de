// Moving block definitions between drawings: a library block copied into the drawing a part is
// placed in, and entities of a drawing captured as a named block of a library drawing.
#pragma once

#include <string_view>
#include <vector>

#include "cad/db/ObjectId.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

class BlockTransfer {
public:
    static constexpr std::string_view kUpdateQuestion =
        "동일한 이름을 가진 블록이 존재합니다. \n갱신하시겠습니까?";
    static constexpr std::string_view kUpdateTitle = "블록 갱신";

    // Copies the source block (in another database) into `target` under its name and origin.
    // A block of that name in the target keeps its record, emptied and refilled, so references
    // already there show the new content; layers, linetypes, styles and nested blocks the
    // target has are kept as they are. Answers the target record, or a null id when the clone
    // failed (the record then stays empty; the user repeats the copy).
    static cad::db::ObjectId copyDefinition(cad::db::Database& target,
                                            cad::db::ObjectId sourceBlock);

    // Asks for a block name and a base point and makes a block of `target` from copies of the
    // entities (which stay where they are): a deep clone when the target holds them
    // (`sameDatabase`), else a wblock clone. An existing block of that name is refilled only
    // when the user answers OK to the update question. A null id when the user cancelled or
    // the clone failed.
    static cad::db::ObjectId capture(const std::vector<cad::db::ObjectId>& entities,
                                     cad::db::Database& target, bool sameDatabase,
                                     cad::ed::Editor& editor, cad::app::UserDialogs& dialogs);
};

}  // namespace vantor
