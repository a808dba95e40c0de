// UBLI's work on a document: the part the library window chose is placed and dragged into
// position; undo drags it again from the point, and the settings outcome goes back to the
// insertion dialog.
#pragma once

#include <functional>

namespace cad::app {
class Document;
class UserDialogs;
}  // namespace cad::app
namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

class ModuleSettings;
struct InsertionState;
struct PlacementRequest;

class Insertion {
public:
    static constexpr const char* kMissingBlock = "도면 내에 해당 블록이 존재하지 않습니다.";
    static constexpr const char* kMissingBlockTitle = "블록 삽입 에러";

    Insertion(cad::ed::Editor& editor, cad::app::UserDialogs& dialogs, ModuleSettings& settings);

    // Shows the insertion dialog again after the settings outcome; true when the user pressed
    // OK and the state holds the part to place now. Without it the outcome is left for the
    // library window.
    std::function<bool(InsertionState& state)> reopenDialog;

    // Places the state's part into `db` and drags it. Nothing happens without a library
    // drawing and a block name.
    void run(cad::db::Database& db, InsertionState& state);

    // What a placement of the state's part asks for: the settings' angle (degrees as typed)
    // and drawing options, the state's scale, at the origin of the user coordinate system (the drag
    // moves it from there).
    PlacementRequest request(const InsertionState& state) const;

private:
    cad::ed::Editor& editor_;
    cad::app::UserDialogs& dialogs_;
    ModuleSettings& settings_;
};

// UBLI's placement hook: the insertion into the document with the process's editor and
// dialogs, under the lock UBLI holds.
void runInsertion(cad::app::Document& document, InsertionState& state, ModuleSettings& settings);

}  // namespace vantor
