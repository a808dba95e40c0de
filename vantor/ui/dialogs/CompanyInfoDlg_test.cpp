// The company information dialog and command: texts in the record's order, the logo chosen
// through the port, the confirm button's two names, a refused logo that keeps the dialog open,
// and the record stored in the drawing file.
#include "vantor/ui/dialogs/CompanyInfoDlg.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <cerrno>
#include <memory>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "cad/sys/WriteFaults.h"
#include "vantor/store/LockedLibraryDrawing.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/CompanyInfoFlow.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;
using testing_support::boxesShown;
using testing_support::press;
using testing_support::whenModal;

SupplierInfo supplier() {
    SupplierInfo info;
    info.texts = {"(주)반토정밀", "경기도 안산시 단원구 1", "031-123-4567", "031-123-4568",
                  "www.vantor.co.kr", "sales@vantor.co.kr", "표준 부품 공급\n납기 2주"};
    return info;
}

class CompanyInfo : public ::testing::Test {
protected:
    void SetUp() override { cad::gui::testApplication(); }

    // A 150 x 40 picture as a BMP file: 18,134 bytes at 24 bits per pixel.
    std::string writeLogo(const char* name) {
        QImage image(150, 40, QImage::Format_RGB888);
        image.fill(Qt::darkBlue);
        const std::string path = folder.file(name);
        EXPECT_TRUE(image.save(QString::fromStdString(path), "BMP"));
        return path;
    }

    ScriptedDialogs dialogs;
    cad::sys::TestTempFolder folder;
};

TEST_F(CompanyInfo, DialogHandsBackWhatWasEnteredInTheRecordsOrder) {
    SupplierInfo filled = supplier();
    filled.logo = "BM-bytes";
    CompanyInfoDlg dialog(filled, false, dialogs);
    EXPECT_EQ(dialog.confirmButton()->text(), QString::fromUtf8("입   력"));
    EXPECT_EQ(CompanyInfoDlg(filled, true, dialogs).confirmButton()->text(),
              QString::fromUtf8("업데이트"));
    EXPECT_EQ(dialog.info().texts, filled.texts);

    // The tab key goes through the texts in the record's order, then to the logo.
    auto tabFrom = [](QWidget* widget) {
        do widget = widget->nextInFocusChain();
        while (!(widget->focusPolicy() & Qt::TabFocus));
        return widget;
    };
    QWidget* previous = dialog.textEdit(SupplierInfo::CompanyName);
    for (std::size_t i = SupplierInfo::Address; i < SupplierInfo::kTextCount; ++i) {
        QWidget* next = i == SupplierInfo::Remark
                            ? static_cast<QWidget*>(dialog.remarkEdit())
                            : dialog.textEdit(static_cast<SupplierInfo::Text>(i));
        EXPECT_EQ(tabFrom(previous), next) << i;
        previous = next;
    }
    EXPECT_EQ(tabFrom(previous), dialog.logoEdit());

    dialog.textEdit(SupplierInfo::Fax)->setText(QStringLiteral("031-999-0000"));
    dialog.remarkEdit()->setPlainText(QString::fromUtf8("첫 줄\n둘째 줄"));
    dialogs.pushPaths(std::vector<std::string>{"/logos/vantor.bmp"});
    dialog.browseButton()->click();

    const SupplierInfo entered = dialog.info();
    EXPECT_EQ(entered.texts[SupplierInfo::Fax], "031-999-0000");
    EXPECT_EQ(entered.texts[SupplierInfo::Remark], "첫 줄\n둘째 줄");
    EXPECT_EQ(entered.logoPath, "/logos/vantor.bmp");
    EXPECT_EQ(entered.logo, "BM-bytes");
    const auto opened = dialogs.calls(ScriptedDialogs::Kind::OpenFiles);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_NE(opened[0].text.find("*.bmp"), std::string::npos) << opened[0].text;
}

TEST_F(CompanyInfo, ARefusedLogoKeepsTheDialogThenTheRecordIsSavedInTheDrawing) {
    const std::string drawing = folder.file("supplier.dxf");
    {
        cad::db::Database db;
        ASSERT_EQ(db.saveAs(drawing), cad::ErrorStatus::eOk);
    }
    const std::string logo = writeLogo("logo.bmp");
    auto db = std::make_unique<LockedLibraryDrawing>();
    ASSERT_EQ(db->open(drawing, dialogs, LockedLibraryDrawing::WhenHeld::Refuse),
              cad::ErrorStatus::eOk);

    bool stayedOpen = false;
    QString confirmText;
    whenModal([&](QDialog& dialog) {
        auto& company = static_cast<CompanyInfoDlg&>(dialog);
        confirmText = company.confirmButton()->text();
        const SupplierInfo entered = supplier();
        for (std::size_t i = 0; i < SupplierInfo::Remark; ++i)
            company.textEdit(static_cast<SupplierInfo::Text>(i))
                ->setText(QString::fromStdString(entered.texts[i]));
        company.remarkEdit()->setPlainText(
            QString::fromStdString(entered.texts[SupplierInfo::Remark]));
        company.logoEdit()->setText(QString::fromStdString(folder.file("missing.bmp")));
        press(dialog, "id1");
        stayedOpen = dialog.isVisible();
        company.logoEdit()->setText(QString::fromStdString(logo));
        press(dialog, "id1");
    });
    std::optional<SupplierInfo> stored = runCompanyInfo(nullptr, *db, dialogs);

    EXPECT_EQ(confirmText, QString::fromUtf8("입   력"));
    EXPECT_TRUE(stayedOpen);
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"저장 에러: BMP 화일이 없거나 경로가 잘못 설정되어 "
                                       "있습니다.\n다시 확인하여 주십시오. [error]"});
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->texts, supplier().texts);
    EXPECT_EQ(stored->logo.size(), 18134u);
    EXPECT_EQ(stored->logoPath, logo);
    EXPECT_EQ(db->database().openObjectCount(), 0);
    db.reset();  // and its lock with it

    // On disk, and the next run offers an update filled from it; cancel leaves it alone.
    LockedLibraryDrawing reread;
    ASSERT_EQ(reread.open(drawing, dialogs, LockedLibraryDrawing::WhenHeld::Refuse),
              cad::ErrorStatus::eOk);
    ASSERT_TRUE(SupplierInfo::readFrom(reread.database()));
    EXPECT_EQ(SupplierInfo::readFrom(reread.database())->texts, supplier().texts);
    QString shownName;
    QString shownLogo;
    whenModal([&](QDialog& dialog) {
        auto& company = static_cast<CompanyInfoDlg&>(dialog);
        confirmText = company.confirmButton()->text();
        shownName = company.textEdit(SupplierInfo::CompanyName)->text();
        shownLogo = company.logoEdit()->text();
        company.textEdit(SupplierInfo::CompanyName)->setText(QStringLiteral("버려질 이름"));
        press(dialog, "id2");
    });
    EXPECT_FALSE(runCompanyInfo(nullptr, reread, dialogs, logo));
    EXPECT_EQ(confirmText, QString::fromUtf8("업데이트"));
    EXPECT_EQ(shownName, QString::fromUtf8("(주)반토정밀"));
    EXPECT_EQ(shownLogo.toStdString(), logo);
    EXPECT_EQ(SupplierInfo::readFrom(reread.database())->texts, supplier().texts);
}

TEST_F(CompanyInfo, ARefusedLogoIsToldApartFromADrawingThatCouldNotBeSaved) {
    const std::string drawing = folder.file("supplier.dxf");
    ASSERT_EQ(cad::db::Database().saveAs(drawing), cad::ErrorStatus::eOk);
    LockedLibraryDrawing db;
    ASSERT_EQ(db.open(drawing, dialogs, LockedLibraryDrawing::WhenHeld::Refuse),
              cad::ErrorStatus::eOk);
    SupplierInfo info = supplier();
    info.logoPath = writeLogo("logo.bmp");
    cad::sys::WriteFaults::failStep(0, ENOSPC);
    EXPECT_EQ(storeSupplierInfo(db, info, dialogs), SupplierStoreResult::NotStored);
    cad::sys::WriteFaults::reset();
    ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
    EXPECT_EQ(dialogs.messageBoxes()[0].title, "저장 에러");

    info.logoPath = folder.file("missing.bmp");
    EXPECT_EQ(storeSupplierInfo(db, info, dialogs), SupplierStoreResult::LogoRefused);
}

}  // namespace
}  // namespace vantor
