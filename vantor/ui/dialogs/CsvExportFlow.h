// The library window's export command: the settings dialog, then the CSV file written from
// what the category tree shows, with the messages that follow.
#pragma once

class QWidget;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CVNTreeBase;
class ModuleSettings;

// Cancel changes nothing and answers false. OK keeps the separator and path in the settings,
// even when the export then fails, so the dialog offers them again; the answer is whether the
// file was written.
bool runCsvExport(QWidget* parent, ModuleSettings& settings, const CVNTreeBase& tree,
                  cad::app::UserDialogs& dialogs);

}  // namespace vantor
