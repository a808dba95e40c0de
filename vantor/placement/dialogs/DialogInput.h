// What the placement's dialogs share: a modal run that survives the dialog hiding itself while
// the user picks in the drawing, and the angle pick itself.
#pragma once

class QDialog;
class QLineEdit;
class QWidget;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CheckedEdit;
struct PlacementDialogContext;

// Shows `dialog` application-modal and waits until it is done; answers its result. Unlike
// QDialog::exec, hiding the dialog does not end the wait, so the dialog can step aside for a
// pick in the drawing and come back.
int runHideable(QDialog& dialog);

// The angle picked in the drawing, in degrees with three decimals, written into `edit`; a
// cancelled pick writes the angle stored in the settings. `window` and every dialog it stands
// on are hidden meanwhile and the host's main window takes the focus, so the drawing view takes
// the clicks and the command line the typing; they come back afterwards with `edit` focused.
// The range checks of the scale and angle edits (texts read as numbers the way the settings
// read them): out of range, the message is shown and the edit selected for correction.
bool scaleAccepted(CheckedEdit& edit, cad::app::UserDialogs& dialogs);
bool angleAccepted(CheckedEdit& edit, cad::app::UserDialogs& dialogs);

void pickAngleInDrawing(QWidget* window, QLineEdit* edit, PlacementDialogContext& context);

}  // namespace vantor
