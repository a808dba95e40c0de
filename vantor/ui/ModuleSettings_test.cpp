// The settings file: defaults, the deliberate asymmetries of loading, and the file a save
// writes, on real files in a temporary module folder.
#include "vantor/ui/ModuleSettings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
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
    // The other defaults are in the file the save writes.
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
              "UblView=1\r\nPreView=0\r\nDataView=0\r\nViewType=0\r\nTodayMode=0\r\nIconSize=48\r\n"
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

// One field of the loaded settings as text, and what it must be after loading `ini`.
struct LoadRow {
    const char* name;
    std::string ini;
    std::function<std::string(const ModuleSettings&)> field;
    std::string expected;
};

class ModuleSettingsLoad : public ModuleSettingsTest,
                           public testing::WithParamInterface<LoadRow> {};

TEST_P(ModuleSettingsLoad, TakesEachFieldByTheRuleOfItsSection) {
    writeIni(GetParam().ini);
    EXPECT_EQ(GetParam().field(loaded()), GetParam().expected);
}

using S = const ModuleSettings&;
const std::string kOnlyAngle = "[OPTION]\r\nDrawAngle=45\r\n";
const std::string kOnlyHeight = "[SETTING]\r\nBomDlg Height=480\r\nLabel_Weight=\r\n";
const std::string kOnlyDescription = "[COLUMNS]\r\nDescription=333\r\n";

std::string number(int value) {
    return std::to_string(value);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Rows, ModuleSettingsLoad,
    testing::Values(
        LoadRow{"option_missing_number_is_0", kOnlyAngle, [](S s) { return number(s.option); }, "0"},
        LoadRow{"option_missing_text_is_empty", kOnlyAngle, [](S s) { return s.curListName; }, ""},
        LoadRow{"option_given_text", kOnlyAngle, [](S s) { return s.drawAngle; }, "45"},
        LoadRow{"missing_section_keeps_default", kOnlyAngle, [](S s) { return s.geometry[0]; }, "800"},
        LoadRow{"missing_geometry_is_empty", kOnlyHeight, [](S s) { return s.geometry[0]; }, ""},
        LoadRow{"missing_label_keeps_default", kOnlyHeight, [](S s) { return s.labels[FieldLabels::Spec]; }, "사   양"},
        LoadRow{"empty_label_keeps_default", kOnlyHeight, [](S s) { return s.labels[FieldLabels::Weight]; }, "중   량"},
        LoadRow{"missing_flag_is_0", kOnlyHeight, [](S s) { return number(s.ublView); }, "0"},
        LoadRow{"label_read_from_cp949", "[SETTING]\r\nLabel_KName=부품명\r\n", [](S s) { return s.labels[0]; }, "부품명"},
        LoadRow{"missing_width_is_0", kOnlyDescription, [](S s) { return number(s.blockWidths[13]); }, "0"},
        LoadRow{"bare_description_key", kOnlyDescription, [](S s) { return number(s.blockWidths[14]); }, "333"},
        LoadRow{"record_width_key", "[COLUMNS]\r\nWidth2_User6=66\r\n", [](S s) { return number(s.recordWidths[12]); }, "66"},
        LoadRow{"garbage_number_is_0", "[OPTION]\r\nOption=all\r\n", [](S s) { return number(s.option); }, "0"},
        LoadRow{"number_before_garbage", "[COLUMNS]\r\nWidth_Price=-5px\r\n", [](S s) { return number(s.blockWidths[5]); }, "-5"}),
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST_F(ModuleSettingsTest, ShortcutsSurviveASaveWithLongPathsAndControlCharacters) {
    PartShortcut bolt{"/srv/라이브러리/" + std::string(300, 'p') + "/체결\t^.dxf", 0x2A1,
                      "육각볼트\nM12"};
    PartShortcut nut{"/lib/nuts.dxf", 77, "육각너트 M8"};
    {
        ModuleSettings settings = loaded();
        settings.shortcuts.addFavourite(nut);
        settings.shortcuts.addFavourite(bolt);
        for (int i = 0; i < 12; ++i)
            settings.shortcuts.notePlaced({"/lib/p.dxf", 100 + i, "p"});
        settings.shortcuts.notePlaced(nut);
        settings.save();
    }
    ModuleSettings settings = loaded();
    ASSERT_EQ(settings.shortcuts.favourites().size(), 2u);
    const PartShortcut& first = settings.shortcuts.favourites()[0];
    EXPECT_EQ(first.drawingPath, bolt.drawingPath);
    EXPECT_EQ(first.recordId, bolt.recordId);
    EXPECT_EQ(first.label, bolt.label);
    ASSERT_EQ(settings.shortcuts.recent().size(), PartShortcuts::kRecentLimit);
    EXPECT_TRUE(settings.shortcuts.recent()[0].samePart(nut));
    EXPECT_EQ(settings.shortcuts.recent()[1].recordId, 111);

    // A shorter list leaves nothing of the longer one; a damaged value is passed over.
    settings.shortcuts.removeFavourite(bolt);
    settings.save();
    std::string ini = cp949ToUtf8(temp_.readBytes("Vantor.ini"));
    ini += "Favourite2=/lib/x.dxf\tnot a number\tx\r\n";
    writeIni(ini);
    ASSERT_EQ(loaded().shortcuts.favourites().size(), 1u);
    EXPECT_TRUE(loaded().shortcuts.favourites()[0].samePart(nut));
}

}  // namespace
}  // namespace vantor
