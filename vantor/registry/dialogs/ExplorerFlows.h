// The drawing explorer's operations on the file or folder its context menus and the frame's
// buttons name: open in the host, the R14 copy, register in the current management window,
// and a new drawing in a folder.
#pragma once

#include <QString>

#include "vantor/registry/operations/DrawingExplorer.h"

class QWidget;

namespace cad::app {
class DocumentManager;
class UserDialogs;
}  // namespace cad::app

namespace vantor {

class ModuleSettings;
struct RegistryFlowContext;

// Opens the drawing in the host through the open-drawing queue and "_UBLO\n". Refused, with
// the command guard's message, while the host runs a command; a drawing a document already
// has open is announced as opening read only. True when the command was queued.
bool openExplorerDrawing(const QString& path, ModuleSettings& settings,
                         cad::app::DocumentManager& documents, cad::app::UserDialogs& dialogs,
                         QWidget* frame);

// Writes the R14 copy of the drawing, which becomes the explorer's selected one first when it
// is not; a drawing open in the host is refused before the save dialog.
DrawingExplorer::Copy writeExplorerR14Copy(DrawingExplorer& explorer, const QString& path);

// Registers the drawing in the current management window, with the duplicate error or
// "정상적으로 등록되었습니다.". True when the list changed.
bool registerExplorerDrawing(const QString& path, const RegistryFlowContext& context);

// Makes an empty drawing in the folder under a name no file of it has; the path made, or an
// empty text when it could not be written, which the user is told.
QString makeNewDrawing(const QString& folder, cad::app::UserDialogs& dialogs);

}  // namespace vantor
