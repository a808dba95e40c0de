// The CSV export's settings dialog and the export command: the separator by combo index, the
// path typed or browsed for, and what OK and cancel leave in the settings and on disk.
#include "vantor/ui/dialogs/SaveTextDlg.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/dialogs/CsvExportFlow.h"
#include "vantor/ui/dialogs/TestModal.h"

namespace vantor {
namespace {

using cad::app::ScriptedDialogs;
using testing_support::boxesShown;
using testing_support::press;
using testing_support::whenModal;

class SaveText : public ::testing::Test {
protected:
    void SetUp() override { cad::gui::testApplication(); }
    ScriptedDialogs dialogs;
    cad::sys::TestTempFolder folder;
};

TEST_F(SaveText, SeparatorIsTheComboIndexAndAnUnlistedOneStaysUnlessPicked) {
    CSaveTextDlg dialog({2, "/data/parts.csv"}, dialogs);
    EXPECT_EQ(dialog.delimiterBox()->currentText(), QStringLiteral("TAB"));
    dialog.delimiterBox()->setCurrentIndex(1);
    EXPECT_EQ(dialog.choice().delimiter, 1);

    CSaveTextDlg unlisted({7, ""}, dialogs);
    EXPECT_EQ(unlisted.delimiterBox()->currentIndex(), -1);
    EXPECT_EQ(unlisted.choice().delimiter, 7);
    unlisted.delimiterBox()->setCurrentIndex(0);
    EXPECT_EQ(unlisted.choice().delimiter, 0);
}

TEST_F(SaveText, BrowseAsksForACsvFileFromThePathSoFar) {
    CSaveTextDlg dialog({0, "/data/parts.csv"}, dialogs);
    dialogs.pushPath("/data/export/daily");
    dialog.browseButton()->click();
    dialogs.pushPath(std::nullopt);  // cancelled: the path stays
    dialog.browseButton()->click();

    const auto calls = dialogs.calls(ScriptedDialogs::Kind::SaveFile);
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].text, "Flat file (*.csv)");
    EXPECT_EQ(calls[0].detail, "/data/parts.csv");
    EXPECT_EQ(dialog.pathEdit()->text(), QStringLiteral("/data/export/daily.csv"));
    EXPECT_EQ(calls[1].detail, "/data/export/daily.csv");
}

TEST_F(SaveText, ExportOkKeepsTheChoiceAndWritesTheFile) {
    ModuleSettings settings;
    CVNTreeBase tree{dialogs};
    const std::string path = folder.file("parts.csv");
    whenModal([&](QDialog& dialog) {
        dialog.findChild<QComboBox*>()->setCurrentIndex(1);
        dialog.findChild<QLineEdit*>()->setText(QString::fromStdString(path));
        press(dialog, "id1");
    });
    EXPECT_TRUE(runCsvExport(nullptr, settings, tree, dialogs));
    EXPECT_EQ(settings.delimiter, 1);
    EXPECT_EQ(settings.savePath, path);
    // No drawing in the tree: the header alone, with the bar between the titles.
    const std::string written = folder.readBytes("parts.csv");
    EXPECT_TRUE(written.starts_with("\xb5\xb5\xb8\xe9\xc0\xa7\xc4\xa1|")) << written;  // 도면위치
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"저장완료: " + path + "\"\n에 저장되었습니다. [information]"});
}

TEST_F(SaveText, ExportCancelChangesNothingAndOkWithoutAPathSaysSo) {
    ModuleSettings settings;
    settings.delimiter = 2;
    settings.savePath = folder.file("kept.csv");
    CVNTreeBase tree{dialogs};

    whenModal([&](QDialog& dialog) {
        dialog.findChild<QComboBox*>()->setCurrentIndex(0);
        press(dialog, "id2");
    });
    EXPECT_FALSE(runCsvExport(nullptr, settings, tree, dialogs));
    EXPECT_EQ(settings.delimiter, 2);
    EXPECT_EQ(settings.savePath, folder.file("kept.csv"));
    EXPECT_TRUE(dialogs.calls().empty());
    EXPECT_FALSE(std::filesystem::exists(folder.file("kept.csv")));

    whenModal([&](QDialog& dialog) {
        dialog.findChild<QLineEdit*>()->clear();
        press(dialog, "id1");
    });
    EXPECT_FALSE(runCsvExport(nullptr, settings, tree, dialogs));
    EXPECT_EQ(settings.savePath, "");
    EXPECT_EQ(boxesShown(dialogs),
              std::vector<std::string>{"외부저장에러: 저장위치를 지정하지 않았습니다. [error]"});
}

}  // namespace
}  // namespace vantor
