// The library window's export command.
#include "vantor/ui/dialogs/CsvExportFlow.h"

#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/dialogs/SaveTextDlg.h"
#include "vantor/ui/export/CsvExport.h"

namespace vantor {

bool runCsvExport(QWidget* parent, ModuleSettings& settings, const CVNTreeBase& tree,
                  cad::app::UserDialogs& dialogs) {
    std::optional<CSaveTextDlg::Choice> choice =
        CSaveTextDlg::run(parent, {settings.delimiter, settings.savePath}, dialogs);
    if (!choice) return false;
    settings.delimiter = choice->delimiter;
    settings.savePath = choice->savePath;
    return CsvExport(settings, tree).runAndReport(dialogs);
}

}  // namespace vantor
