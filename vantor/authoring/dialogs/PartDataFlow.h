// What the library window starts for authoring: a part added to a group, a stored part
// changed, a block captured into a drawing of the block list. Each reads the library drawing
// under its lock, changes it only on OK and saves it then; each answers whether the file
// changed, so the window refreshes its tree and lists.
#pragma once

#include <cstdint>
#include <string>

class QWidget;

namespace vantor {

class BlockCapture;
class ModuleSettings;

// The data dialog in add mode for the group that tree node `nodeId` (a handle value) names in
// the drawing at `drawingPath`; a record's node adds to its own group.
bool addPartData(QWidget* parent, const std::string& drawingPath, std::int64_t nodeId,
                 const ModuleSettings& settings, BlockCapture& capture);

// The data dialog in modify mode for the record `recordHandle` names; "추   가" there adds a
// copy to the record's group. "데이터를 수정할 수 없습니다." when the record cannot be read.
bool modifyPartData(QWidget* parent, const std::string& drawingPath, std::int64_t recordHandle,
                    const ModuleSettings& settings, BlockCapture& capture);

// The block list's capture with `caller` (and the window it belongs to) hidden meanwhile;
// `currentDrawing` says that the drawing listed is the one the user selects in.
bool captureBlock(QWidget* caller, const std::string& drawingPath, bool currentDrawing,
                  BlockCapture& capture);

}  // namespace vantor
