// The settings file: defaults, the deliberate asymmetries of loading, and the file a save
// writes, on real files in a temporary module folder.
#include "vantor/ui/ModuleSettings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "cad/sys/CodePage.h"
#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

using cad::sys::cp949ToUtf8;
using cad::sys::utf8ToCp949;

// Points the module folder at a temporary folder for the life of a test.
class ModuleSettingsTest : public testing::Test {
protected:
    void SetUp() override { ::setenv("VANTOR_MODULE_DIR", temp_.path().c_str(), 1); }
    void TearDown() override { ::unsetenv("VANTOR_MODULE_DIR"); }

    void writeIni(const std::string& utf8) const {
        temp_.writeBytes("Vantor.ini", utf8ToCp949(utf8));
    }
    ModuleSettings loaded() const {
        ModuleSettings settings;
        settings.load();
        return settings;
    }

    cad::sys::TestTempFolder temp_;
};

TEST_F(ModuleSettingsTest, NoFileKeepsDefaultsAndSaveWritesEveryKeyInOrder) {
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.moduleFolder, temp_.path().string() + "/");
    EXPECT_EQ(settings.iniPath(), temp_.file("Vantor.ini"));
    EXPECT_EQ(settings.option, 3073);
    EXPECT_EQ(settings.drawAngle, "0.00");
    EXPECT_EQ(settings.ublView, 1);
    EXPECT_EQ(settings.geometry[ModuleSettings::kSubListPos], "150");
    EXPECT_EQ(settings.blockWidths[14], 300);
    EXPECT_EQ(settings.recordWidths[12], 70);
    EXPECT_EQ(settings.version, "0.0.0.0");
    EXPECT_EQ(settings.frameRect().right, 900);
    EXPECT_EQ(settings.frameRect().bottom, 700);

    settings.save();
    EXPECT_EQ(cp949ToUtf8(temp_.readBytes("Vantor.ini")),
              "[OPTION]\r\n"
              "Option=3073\r\nDrawAngle=0.00\r\nDelimiter=0\r\nsavePath=\r\ncurListName=\r\n"
              "[SETTING]\r\n"
              "BomDlg Width=800\r\nBomDlg Height=600\r\nBomDlg PosX=100\r\nBomDlg PosY=100\r\n"
              "BomDlg Left Width=230\r\nBomDlg SubTree Pos=300\r\n"
              "BomDlg SubPreview Pos=300\r\nBomDlg SubList Pos=150\r\n"
              "Label_KName=품   명(K)\r\nLabel_EName=품   명(E)\r\nLabel_Spec=사   양\r\n"
              "Label_Material=재   질\r\nLabel_Weight=중   량\r\nLabel_Price=가   격\r\n"
              "Label_Remark=비   고\r\nLabel_User1=USER1\r\nLabel_User2=USER2\r\n"
              "Label_User3=USER3\r\nLabel_User4=USER4\r\nLabel_User5=USER5\r\n"
              "Label_User6=USER6\r\nLabel_Draw1=정 면 도\r\nLabel_Draw2=측 면 도\r\n"
              "Label_Draw3=평 면 도\r\nLabel_Draw4=도   면1\r\nLabel_Draw5=도   면2\r\n"
              "Label_Draw6=도   면3\r\n"
              "UblView=1\r\nPreView=0\r\nDataView=0\r\nViewType=0\r\nTodayMode=0\r\n"
              "[COLUMNS]\r\n"
              "Width_KName=130\r\nWidth_EName=150\r\nWidth_Spec=180\r\nWidth_Material=80\r\n"
              "Width_Weight=50\r\nWidth_Price=50\r\nWidth_Remark=100\r\nWidth_User1=70\r\n"
              "Width_User2=70\r\nWidth_User3=70\r\nWidth_User4=70\r\nWidth_User5=70\r\n"
              "Width_User6=70\r\nBlock name=200\r\nDescription=300\r\n"
              "Width2_KName=130\r\nWidth2_EName=150\r\nWidth2_Spec=180\r\n"
              "Width2_Material=80\r\nWidth2_Weight=50\r\nWidth2_Price=50\r\n"
              "Width2_Remark=100\r\nWidth2_User1=70\r\nWidth2_User2=70\r\n"
              "Width2_User3=70\r\nWidth2_User4=70\r\nWidth2_User5=70\r\nWidth2_User6=70\r\n");
}

TEST_F(ModuleSettingsTest, ChangedValuesSurviveASaveAndLoad) {
    ModuleSettings settings = loaded();
    settings.option = 0x0C05;
    settings.savePath = "C:\\출력\\parts.csv";
    settings.curListName = "배관 부품";
    settings.geometry[ModuleSettings::kPosX] = "-20";
    settings.labels[FieldLabels::Remark] = "메  모";
    settings.blockWidths[13] = 240;
    settings.recordWidths[0] = 99;
    settings.todayMode = 7;
    settings.save();

    ModuleSettings again = loaded();
    EXPECT_EQ(again.option, 0x0C05);
    EXPECT_EQ(again.savePath, "C:\\출력\\parts.csv");
    EXPECT_EQ(again.curListName, "배관 부품");
    EXPECT_EQ(again.frameRect().left, -20);
    EXPECT_EQ(again.labels[FieldLabels::Remark], "메  모");
    EXPECT_EQ(again.blockWidths[13], 240);
    EXPECT_EQ(again.recordWidths[0], 99);
    EXPECT_EQ(again.todayMode, 7);
}

TEST_F(ModuleSettingsTest, OptionSectionTakesMissingKeysAsZeroOrEmpty) {
    writeIni("[OPTION]\r\nDrawAngle=45\r\n");
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.option, 0);
    EXPECT_EQ(settings.drawAngle, "45");
    EXPECT_EQ(settings.delimiter, 0);
    EXPECT_EQ(settings.savePath, "");
    EXPECT_EQ(settings.curListName, "");
    // The other sections are missing, so their defaults stand.
    EXPECT_EQ(settings.geometry[ModuleSettings::kWidth], "800");
    EXPECT_EQ(settings.ublView, 1);
    EXPECT_EQ(settings.blockWidths[0], 130);
}

TEST_F(ModuleSettingsTest, SettingSectionKeepsDefaultLabelsButNotDefaultGeometry) {
    writeIni("[SETTING]\r\nBomDlg Height=480\r\nLabel_KName=부품명\r\nLabel_Weight=\r\n");
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.geometry[ModuleSettings::kWidth], "");
    EXPECT_EQ(settings.geometry[ModuleSettings::kHeight], "480");
    EXPECT_EQ(settings.geometry[ModuleSettings::kSubListPos], "");
    EXPECT_EQ(settings.frameRect().right, 0);
    EXPECT_EQ(settings.labels[FieldLabels::KName], "부품명");
    EXPECT_EQ(settings.labels[FieldLabels::Spec], "사   양");
    EXPECT_EQ(settings.labels[FieldLabels::Weight], "중   량");
    EXPECT_EQ(settings.ublView, 0);
}

TEST_F(ModuleSettingsTest, ColumnsSectionTakesMissingWidthsAsZero) {
    writeIni("[COLUMNS]\r\nWidth_KName=111\r\nDescription=333\r\nWidth2_User6=66\r\n");
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.blockWidths[0], 111);
    EXPECT_EQ(settings.blockWidths[1], 0);
    EXPECT_EQ(settings.blockWidths[13], 0);
    EXPECT_EQ(settings.blockWidths[14], 333);
    EXPECT_EQ(settings.recordWidths[0], 0);
    EXPECT_EQ(settings.recordWidths[12], 66);
}

TEST_F(ModuleSettingsTest, GarbageInNumericKeysReadsAsZero) {
    writeIni(
        "[OPTION]\r\nOption=all\r\nDelimiter= 2;\r\n"
        "[SETTING]\r\nUblView=yes\r\nViewType=3 \r\n"
        "[COLUMNS]\r\nWidth_Spec=wide\r\nWidth_Price=-5px\r\n");
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.option, 0);
    EXPECT_EQ(settings.delimiter, 2);
    EXPECT_EQ(settings.ublView, 0);
    EXPECT_EQ(settings.viewType, 3);
    EXPECT_EQ(settings.blockWidths[2], 0);
    EXPECT_EQ(settings.blockWidths[5], -5);
}

TEST_F(ModuleSettingsTest, LongLabelIsCutTo254Bytes) {
    writeIni("[SETTING]\r\nLabel_User1=" + std::string(300, 'x') + "\r\n");
    EXPECT_EQ(loaded().labels[FieldLabels::User1], std::string(254, 'x'));
}

TEST_F(ModuleSettingsTest, EmptySectionCountsAsMissing) {
    writeIni("[OPTION]\r\n; nothing yet\r\n[SETTING]\r\n");
    ModuleSettings settings = loaded();
    EXPECT_EQ(settings.option, 3073);
    EXPECT_EQ(settings.geometry[ModuleSettings::kWidth], "800");
}

}  // namespace
}  // namespace vantor
