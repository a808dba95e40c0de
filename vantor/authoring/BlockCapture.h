// Making a library drawing's block from what is drawn in the current drawing: one picked block
// reference has its definition copied, loose entities become a new named block; and the point
// where a part's BOM mark belongs, picked in the current drawing with the view set to the part.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cad/db/ObjectId.h"
#include "cad/ge/Point3d.h"
#include "vantor/authoring/CallerWindow.h"

namespace cad::app {
class DocumentManager;
class UserDialogs;
}  // namespace cad::app
namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

// A block definition of the target that a capture copied or made.
struct CapturedBlock {
    cad::db::ObjectId id;
    std::string name;
    cad::ge::Point3d basePoint;  // the definition's origin: the part's insertion point
};

class BlockCapture {
public:
    static constexpr std::string_view kSelectPrompt = "\nSelect entities or block: ";
    static constexpr std::string_view kFailedLine = "\n*Making Block Failed(or Canceled)*\nCommand:";
    // The missing "l" has always been there; scripts that answer the prompt look for it.
    static constexpr std::string_view kBomPrompt = "\nPick BOM Mark shoud inserted: ";

    // The current document is the source of every selection and the place of every pick.
    BlockCapture(cad::ed::Editor& editor, cad::app::DocumentManager& documents,
                 cad::app::UserDialogs& dialogs);

    cad::ed::Editor& editor() const { return editor_; }
    // Whether the drawing at `path` is the current document's, the drawing selections come
    // from (the block list's current-drawing flag).
    bool isCurrentDrawing(const std::string& path) const;
    cad::app::UserDialogs& dialogs() const { return dialogs_; }

    // Asks for entities in the current drawing with `caller` hidden and brings them into
    // `target` (the library drawing's database, changed in memory only: saving is the
    // caller's step). `currentDrawing` says that the target is the drawing the user selects
    // in, where a picked block is refused, as it is there already. Every refusal is told;
    // nullopt when nothing was made.
    std::optional<CapturedBlock> capture(cad::db::Database* target, bool currentDrawing,
                                         const CallerWindow& caller);

    // Asks for the BOM mark's point of `blockName` with `caller` hidden, the current drawing's
    // model space showing the part: a reference to the block there, or, where the drawing has
    // none, the block of `library` standing at its own origin, which is where the entities it
    // was made of stand. The view and LIMCHECK are restored afterwards. Answers the point's
    // offset from the part's insertion point; nullopt when refused or nothing was picked.
    std::optional<cad::ge::Point3d> pickBomPoint(const cad::db::Database& library,
                                                 std::string_view blockName,
                                                 const CallerWindow& caller);

private:
    // False (and told) while a command runs in the current document.
    bool quiescent();
    std::optional<CapturedBlock> copyPickedBlock(cad::db::Database* target, bool currentDrawing,
                                                 cad::db::ObjectId block);

    cad::ed::Editor& editor_;
    cad::app::DocumentManager& documents_;
    cad::app::UserDialogs& dialogs_;
};

}  // namespace vantor
