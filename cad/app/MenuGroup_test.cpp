// Menu files: pull-downs with cascades, separators, greyed items and help strings, the code
// page of the file, the errors with their lines, and menu groups in the menu bar.
#include "cad/app/MenuGroup.h"

#include <gtest/gtest.h>

#include "cad/app/MenuBar.h"
#include "cad/app/MenuGroups.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::app {
namespace {

constexpr const char* kMenu = R"(//
//  Vantor partial menu
//
***MENUGROUP=Vantor

***POP1
**VANTOR
ID_Vantor     [&Vantor]
ID_VNK        [라이브러리 열기]^C^C_VNK 
              [--]
              [->도구]
ID_UBLO       [도면 열기]^C^C_UBLO 
ID_Long       [긴 매크로]^C^C_SETVAR;+
SDI;0 
              [<-~준비 중]
ID_About      [정보]^C^C_ABOUT 

***POP2
ID_Second     [두번째]
ID_Deep       [->깊이]
              [->더 깊이]
              [<-<-끝]^C^C_END 

***TOOLBARS
**TB_VANTOR
ID_TbVnk  [_Button("VNK", "ICON.bmp")]^C^C_VNK 

***HELPSTRINGS
ID_VNK        [라이브러리 창을 엽니다]
)";

TEST(MenuGroup, ParsesPullDownsCascadesAndHelpStrings) {
    MenuGroup group;
    std::string error;
    ASSERT_EQ(MenuGroup::parse(kMenu, "Vantor.mns", group, error), ErrorStatus::eOk) << error;
    EXPECT_EQ(group.name(), "Vantor");
    ASSERT_EQ(group.menus().size(), 2u);

    const PopMenu& pop1 = group.menus()[0];
    EXPECT_EQ(pop1.alias, "POP1");
    EXPECT_EQ(pop1.label, "&Vantor");
    EXPECT_EQ(pop1.nameTag, "ID_Vantor");
    ASSERT_EQ(pop1.items.size(), 4u);
    EXPECT_EQ(pop1.items[0].label, "라이브러리 열기");
    EXPECT_EQ(pop1.items[0].macro, "^C^C_VNK ");
    EXPECT_EQ(pop1.items[0].typedText(), "\x03\x03_VNK ");
    EXPECT_EQ(pop1.items[0].helpString, "라이브러리 창을 엽니다");
    EXPECT_EQ(pop1.items[1].kind, MenuItem::Kind::Separator);

    const MenuItem& tools = pop1.items[2];
    EXPECT_EQ(tools.kind, MenuItem::Kind::Submenu);
    EXPECT_EQ(tools.label, "도구");
    ASSERT_EQ(tools.items.size(), 3u);
    EXPECT_EQ(tools.items[1].macro, "^C^C_SETVAR;SDI;0 ");  // joined at the "+"
    EXPECT_EQ(tools.items[1].typedText(), "\x03\x03_SETVAR\nSDI\n0 ");
    EXPECT_EQ(tools.items[2].label, "준비 중");  // "<-" closed the cascade after it
    EXPECT_FALSE(tools.items[2].enabled);
    EXPECT_EQ(pop1.items[3].nameTag, "ID_About");

    const PopMenu& pop2 = group.menus()[1];
    ASSERT_EQ(pop2.items.size(), 1u);
    ASSERT_EQ(pop2.items[0].items.size(), 1u);
    EXPECT_EQ(pop2.items[0].items[0].items[0].label, "끝");
}

TEST(MenuGroup, ErrorsNameTheLineAndWhatWasExpected) {
    const std::pair<const char*, const char*> rows[] = {
        {"***POP1\n[a]\n", "m.mns:1: expected ***MENUGROUP=name before the first section"},
        {"***MENUGROUP=\n", "m.mns:1: expected a group name after ***MENUGROUP="},
        {"// nothing\n", "m.mns:1: expected ***MENUGROUP=name"},
        {"***MENUGROUP=g\n[a]\n", "m.mns:2: expected a *** section"},
        {"***MENUGROUP=g\n***POP1\n***POP2\n[t]\n",
         "m.mns:2: expected the menu title after ***POP1"},
        {"***MENUGROUP=g\n***POP1\n[t]\n[->c]\n[x]\n",
         "m.mns:4: expected [<-label] to close the cascade opened here"},
        {"***MENUGROUP=g\n***POP1\n[t]\n[<-x]\n", "m.mns:4: [<- closes no open cascade"},
        {"***MENUGROUP=g\n***POP1\n[t]\nID_X ^C^CX\n", "m.mns:4: expected [label]"},
        {"***MENUGROUP=g\n***POP1\n[t]\n[x\n", "m.mns:4: expected ] to end the label"},
    };
    for (const auto& [text, expected] : rows) {
        MenuGroup group;
        std::string error;
        EXPECT_EQ(MenuGroup::parse(text, "m.mns", group, error), ErrorStatus::eInvalidInput)
            << text;
        EXPECT_EQ(error, expected);
    }
}

TEST(MenuGroup, LoadsCodePage949AndUtf8Files) {
    sys::TestTempFolder folder;
    std::string text = "***MENUGROUP=메뉴\n***POP1\n[부품]\n[열기]^C^C_VNK \n";
    folder.writeBytes("cp949.mns", sys::fromUtf8(text, sys::CodePage::Ansi949));
    folder.writeBytes("utf8.mns", "\xEF\xBB\xBF" + text);
    for (const char* file : {"cp949.mns", "utf8.mns"}) {
        MenuGroup group;
        std::string error;
        ASSERT_EQ(MenuGroup::load(folder.file(file), group, error), ErrorStatus::eOk) << error;
        EXPECT_EQ(group.name(), "메뉴");
        EXPECT_EQ(group.menus()[0].items[0].label, "열기");
    }
    MenuGroup group;
    std::string error;
    EXPECT_EQ(MenuGroup::load(folder.file("missing.mns"), group, error),
              ErrorStatus::eFileNotFound);
}

TEST(MenuGroups, ComparedByExactNameAndUnloadedFromTheBar) {
    sys::TestTempFolder folder;
    folder.writeBytes("a.mns", "***MENUGROUP=Vantor\n***POP1\n[V]\n[x]X \n***POP2\n[W]\n");
    folder.writeBytes("b.mns", "***MENUGROUP=VANTOR\n***POP1\n[U]\n");
    MenuBar bar;
    int changes = 0;
    bar.setChangedHandler([&] { ++changes; });
    MenuGroups groups(bar);
    std::string error;
    ASSERT_EQ(groups.load(folder.file("a.mns"), error), ErrorStatus::eOk);
    EXPECT_EQ(groups.load(folder.file("a.mns"), error), ErrorStatus::eDuplicateKey);
    EXPECT_EQ(groups.load(folder.file("b.mns"), error), ErrorStatus::eOk);  // case counts
    EXPECT_EQ(groups.count(), 2);
    EXPECT_EQ(groups.item("vantor"), nullptr);

    const MenuGroup* vantor = groups.item("Vantor");
    for (const PopMenu& menu : vantor->menus()) bar.insertInMenuBar(vantor->name(), menu);
    bar.insertInMenuBar("VANTOR", groups.item("VANTOR")->menus()[0], 0);
    bar.insertInMenuBar("Vantor", vantor->menus()[0]);  // already there: stays put
    ASSERT_EQ(bar.count(), 3);
    EXPECT_EQ(bar.menus()[0].menu.label, "U");
    EXPECT_EQ(bar.menus()[2].menu.label, "W");
    EXPECT_EQ(changes, 3);

    EXPECT_EQ(groups.unload("Vantor"), ErrorStatus::eOk);
    EXPECT_EQ(groups.unload("Vantor"), ErrorStatus::eKeyNotFound);
    ASSERT_EQ(bar.count(), 1);
    EXPECT_EQ(bar.menus()[0].groupName, "VANTOR");
}

}  // namespace
}  // namespace cad::app
