// The company information command.
#include "vantor/ui/dialogs/CompanyInfoFlow.h"

#include "vantor/store/LockedLibraryDrawing.h"
#include "vantor/ui/dialogs/CompanyInfoDlg.h"

namespace vantor {

SupplierStoreResult storeSupplierInfo(LockedLibraryDrawing& drawing, const SupplierInfo& info,
                                      cad::app::UserDialogs& dialogs) {
    SupplierInfo stored = info;
    switch (stored.writeTo(drawing.database(), dialogs)) {
        case cad::ErrorStatus::eOk: break;
        // What writeTo answers after telling the user about the logo file.
        case cad::ErrorStatus::eFileReadError: return SupplierStoreResult::LogoRefused;
        default: return SupplierStoreResult::NotStored;
    }
    const cad::ErrorStatus saved =
        drawing.save(dialogs, "파일이름을 가져올 수 없습니다.\n회사 정보를 저장하지 못했습니다.");
    return saved == cad::ErrorStatus::eOk ? SupplierStoreResult::Saved
                                          : SupplierStoreResult::NotStored;
}

std::optional<SupplierInfo> runCompanyInfo(QWidget* parent, LockedLibraryDrawing& drawing,
                                           cad::app::UserDialogs& dialogs,
                                           const std::string& logoPath) {
    // A record that cannot be read counts as none: the dialog offers a new one.
    const std::optional<SupplierInfo> present = SupplierInfo::readFrom(drawing.database());
    SupplierInfo shown = present.value_or(SupplierInfo{});
    shown.logoPath = logoPath;
    CompanyInfoDlg dialog(shown, present.has_value(), dialogs, parent);
    SupplierStoreResult result = SupplierStoreResult::NotStored;
    std::string usedPath;
    dialog.setConfirmHandler([&](const SupplierInfo& entered) {
        usedPath = entered.logoPath;
        result = storeSupplierInfo(drawing, entered, dialogs);
        // Only a refused logo is worth another try in the same dialog.
        return result != SupplierStoreResult::LogoRefused;
    });
    if (dialog.exec() != QDialog::Accepted || result != SupplierStoreResult::Saved)
        return std::nullopt;
    std::optional<SupplierInfo> stored = SupplierInfo::readFrom(drawing.database());
    if (stored) stored->logoPath = usedPath;
    return stored;
}

}  // namespace vantor
