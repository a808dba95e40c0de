// The company information command on a library drawing read under its lock: the present
// supplier record into the dialog, and what is confirmed there back into the drawing, saved at
// once over nothing but what was read.
#pragma once

#include <optional>
#include <string>

#include "vantor/store/SupplierInfo.h"

class QWidget;

namespace cad::app {
class UserDialogs;
}
namespace vantor {

class LockedLibraryDrawing;

enum class SupplierStoreResult {
    LogoRefused,  // the logo file is missing or too large: said so, nothing written
    NotStored,    // the record could not be written, or the drawing not saved
    Saved,
};

// Writes the record (reading the logo file `info` names) and saves the drawing under its own
// name. A refused logo and a failed or refused save are reported to the user; the database
// itself gives no words when it refuses the record.
SupplierStoreResult storeSupplierInfo(LockedLibraryDrawing& drawing, const SupplierInfo& info,
                                      cad::app::UserDialogs& dialogs);

// Runs the dialog over the drawing's record. A refused logo keeps the dialog open. Answers the
// record as the drawing now holds it (what the supplier panel shows), with `logoPath` set to
// the file it was read from, once it was stored and saved; nullopt on cancel or when saving
// failed. The drawing does not keep the logo's file name, so the caller may pass the one used
// last to offer it again.
std::optional<SupplierInfo> runCompanyInfo(QWidget* parent, LockedLibraryDrawing& drawing,
                                           cad::app::UserDialogs& dialogs,
                                           const std::string& logoPath = {});

}  // namespace vantor
