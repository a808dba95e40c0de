// The main window: the menu groups' pull-downs rendered and typed when chosen, document tabs
// and the drawing area following the document manager.
#include "cad/gui/MainWindow.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QTabBar>

#include "cad/app/Application.h"
#include "cad/app/MenuGroup.h"
#include "cad/gui/DrawingViewWidget.h"
#include "cad/gui/QtInputSource.h"
#include "cad/gui/TestApplication.h"
#include "cad/gs/DrawingView.h"

namespace cad::gui {
namespace {

class MainWindowTest : public testing::Test {
protected:
    QApplication& qt_ = testApplication();
    app::Application app_;
    std::vector<std::string> typed_;
    MainWindow window_{app_, [this](const std::string& text) { typed_.push_back(text); }};
};

// A pull-down with a command, a separator and a cascade holding one more command.
app::PopMenu vantorMenu() {
    app::MenuGroup group;
    std::string error;
    EXPECT_EQ(
        app::MenuGroup::parse("***MENUGROUP=Vantor\n***POP1\n[&Vantor]\n"
                              "[라이브러리(&L)]^C^C_VNK \n[--]\n[->도구]\n[<-열기]^C^C_UBLO \n",
                              "v.mns", group, error),
        ErrorStatus::eOk)
        << error;
    return group.menus().at(0);
}

TEST_F(MainWindowTest, GroupMenusAreRenderedAndTypeTheirMacros) {
    app_.menuBar().insertInMenuBar("Vantor", vantorMenu());
    ASSERT_EQ(window_.groupMenus().size(), 1u);
    QMenu* menu = window_.groupMenus().front();
    EXPECT_EQ(menu->title(), "&Vantor");
    QList<QAction*> actions = menu->actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[0]->text(), QString::fromUtf8("라이브러리(&L)"));
    EXPECT_TRUE(actions[1]->isSeparator());
    ASSERT_NE(actions[2]->menu(), nullptr);

    actions[0]->trigger();
    actions[2]->menu()->actions().front()->trigger();
    EXPECT_EQ(typed_, (std::vector<std::string>{"\x03\x03_VNK ", "\x03\x03_UBLO "}));

    app_.menuBar().removeGroup("Vantor");
    EXPECT_TRUE(window_.groupMenus().empty());
}

TEST_F(MainWindowTest, UndoAndRedoAreCtrlZAndCtrlY) {
    QMenu* edit = nullptr;
    for (QAction* action : window_.menuBar()->actions())
        if (action->text() == "&Edit") edit = action->menu();
    ASSERT_NE(edit, nullptr);
    ASSERT_EQ(edit->actions().size(), 2);
    EXPECT_EQ(edit->actions()[0]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Z));
    EXPECT_EQ(edit->actions()[1]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Y));
    edit->actions()[0]->trigger();
    edit->actions()[1]->trigger();
    EXPECT_EQ(typed_, (std::vector<std::string>{"\x03\x03_U\n", "\x03\x03_REDO\n"}));
}

TEST_F(MainWindowTest, TabsAndDrawingViewFollowTheDocuments) {
    app::DocumentManager& documents = app_.documentManager();
    EXPECT_EQ(window_.drawingView()->view(), nullptr);
    documents.appContextNewDocument();
    documents.appContextNewDocument();
    QTabBar* tabs = window_.documentTabs();
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(tabs->currentIndex()), "Drawing2.dwg");
    EXPECT_EQ(window_.windowTitle(), "Drawing2.dwg - vantor-cad");
    EXPECT_EQ(window_.drawingView()->document(), documents.mdiActiveDocument());
    ASSERT_NE(window_.drawingView()->view(), nullptr);
    EXPECT_EQ(window_.drawingView()->layoutTabs()->tabText(0), "Model");

    tabs->setCurrentIndex(0);  // the user picks the first tab
    EXPECT_EQ(documents.mdiActiveDocument()->docTitle(), "Drawing1.dwg");

    documents.closeDocument(documents.mdiActiveDocument());
    ASSERT_EQ(tabs->count(), 1);
    EXPECT_EQ(tabs->tabText(0), "Drawing2.dwg");
    documents.closeDocument(documents.mdiActiveDocument());
    EXPECT_EQ(tabs->count(), 0);
    EXPECT_EQ(window_.drawingView()->view(), nullptr);
    EXPECT_EQ(window_.windowTitle(), "vantor-cad");
}

TEST_F(MainWindowTest, TheViewAndTheViewVariablesFollowEachOther) {
    QtInputSource input(app_);
    window_.attachInput(input);
    app_.documentManager().appContextNewDocument();
    gs::DrawingView* view = window_.drawingView()->view();
    ASSERT_NE(view, nullptr);
    view->setDeviceSize(400, 300);

    // A view made current by a command is shown...
    ed::ViewRecord record = app_.editor().currentView();
    record.centerPoint = {5, 7};
    record.height = 12;
    app_.editor().setCurrentView(record);
    EXPECT_DOUBLE_EQ(view->transform().centre().x, 5.0);
    EXPECT_DOUBLE_EQ(view->transform().height(), 12.0);

    // ...and a view the user moves to is what VIEWSIZE and VIEWCTR say.
    window_.drawingView()->zoomScale(2.0);
    ed::SysVarValue size, centre;
    app_.editor().getVar("VIEWSIZE", size);
    app_.editor().getVar("VIEWCTR", centre);
    EXPECT_DOUBLE_EQ(std::get<double>(size), 6.0);
    EXPECT_DOUBLE_EQ(std::get<ge::Point3d>(centre).y, 7.0);
}

}  // namespace
}  // namespace cad::gui
