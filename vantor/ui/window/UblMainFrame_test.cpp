// The library window driven as a user drives it, offscreen: the layout from the settings, the
// selection flow over the sample library, the lists' widths, deleting a record, the management
// windows, the commands and their messages.
#include <QAbstractButton>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/FileSystem.h"
#include "vantor/host/FrameMessages.h"
#include "vantor/host/InsertionStates.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/store/PartRecord.h"
#include "vantor/store/TreeNode.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/models/PartListModel.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/ui/window/PartSearchPane.h"
#include "vantor/placement/dialogs/PartPicture.h"
#include "vantor/ui/window/RecListView.h"
#include "vantor/ui/window/UblMainFrame.h"
#include "vantor/ui/window/UblPreviewView.h"
#include "vantor/ui/window/UblTreeView.h"
#include "vantor/ui/window/VNTreeViewEx.h"
#include "vantor/ui/window/ViewSplitter.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using testing_support::boxesShown;

struct NoTree : TreeRebuilder {
    void rebuildFromList(DrawingList&) override {}
};

class LibraryFrame : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        settings_.moduleFolder = folder_.path().toStdString() + "/";
        library_ = folder_.filePath("standard-parts.dxf").toStdString();
        std::filesystem::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf",
                                   library_);
        // The main window lists the sample library.
        DrawingList list;
        NoTree tree;
        ManagementWindows windows(settings_, list, tree, dialogs_);
        windows.loadTabList();
        list.addPath(library_, dialogs_);
        ASSERT_TRUE(windows.saveList(0));
        dialogs_.clearCalls();
    }

    std::unique_ptr<CUblMainFrame> open() {
        auto frame = std::make_unique<CUblMainFrame>(
            FrameContext{settings_, dialogs_, app_.documentManager(), app_.editor(), insertions_,
                         "Vantor Ver.0.1.0.0", {}});
        frame->show();
        frame->handleMessage(kMsgSwitchPane, kPaneDrawingTree, 0);
        QCoreApplication::processEvents();
        return frame;
    }

    QTemporaryDir folder_;
    std::string library_;
    cad::app::Application app_;
    cad::app::ScriptedDialogs dialogs_;
    ModuleSettings settings_;
    InsertionStates insertions_;
};

TEST_F(LibraryFrame, OpensOnTheFirstDrawingsFirstGroupWithItsPartsAndPicture) {
    settings_.preView = 1;
    auto frame = open();
    const TreeNode* group = frame->categoryTree()->currentNode();
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->name, "Slip-on 10K");
    auto& parts = static_cast<PartListModel&>(*frame->partList()->model());
    ASSERT_EQ(parts.rowCount(), 5);
    frame->partList()->setCurrentIndex(parts.index(2, 0));
    EXPECT_FALSE(frame->previewView()->canvas()->picture().isNull());
    // Choosing a record in the tree picks it in the part list.
    frame->categoryTree()->selectNode(group->children[4].get());
    EXPECT_EQ(frame->partList()->currentRecord()->spec, "JIS 10K 150A");
    EXPECT_TRUE(dialogs_.messageBoxes().empty());
}

TEST_F(LibraryFrame, SearchNarrowsAsTypedAndAChosenHitIsShownAndKeptAsAFavourite) {
    auto frame = open();
    PartSearchPane& pane = *frame->searchPane();
    QAbstractItemModel& hits = *pane.hitView()->model();
    EXPECT_EQ(frame->splitter(1)->shownView(0), static_cast<QWidget*>(frame->drawingTree()));
    QTest::keyClicks(pane.field(), "m12");
    // The lists take the drawing tree's place while a query stands.
    EXPECT_EQ(frame->splitter(1)->shownView(0), static_cast<QWidget*>(&pane));
    const int latinHits = hits.rowCount();
    EXPECT_GT(latinHits, 2);
    pane.field()->insert(" ㅇㄱ");  // as an input method commits Korean text
    ASSERT_EQ(hits.rowCount(), 2);
    EXPECT_EQ(pane.findChild<QLabel*>()->text(), "부품 2개");

    // A hit is shown where it lives: its group in the tree, its record in the part list.
    pane.hitView()->setCurrentIndex(hits.index(1, 0));
    ASSERT_NE(frame->categoryTree()->currentNode(), nullptr);
    EXPECT_EQ(frame->categoryTree()->currentNode()->name, "육각볼트");
    ASSERT_NE(frame->partList()->currentRecord(), nullptr);
    EXPECT_EQ(frame->partList()->currentRecord()->spec, "M12x50");

    pane.favouriteButton()->click();
    ASSERT_EQ(settings_.shortcuts.favourites().size(), 1u);
    EXPECT_EQ(settings_.shortcuts.favourites()[0].label, "육각볼트 M12x50");
    EXPECT_EQ(pane.favouriteButton()->text(), "즐겨찾기에서 빼기");
    EXPECT_EQ(pane.favouriteView()->model()->rowCount(), 1);

    QTest::keyClick(pane.field(), Qt::Key_Escape);
    EXPECT_TRUE(pane.field()->text().isEmpty());
    EXPECT_EQ(hits.rowCount(), 0);
    EXPECT_EQ(frame->splitter(1)->shownView(0), static_cast<QWidget*>(frame->drawingTree()));
    pane.listButton()->click();  // the short lists without a query
    EXPECT_EQ(frame->splitter(1)->shownView(0), static_cast<QWidget*>(&pane));
    EXPECT_EQ(pane.tabs()->currentIndex(), PartSearchPane::FavouritesTab);
    QTest::keyClicks(pane.field(), "xyzzy");
    EXPECT_EQ(pane.findChild<QLabel*>()->text(), "찾는 부품이 없습니다.");
    EXPECT_TRUE(dialogs_.messageBoxes().empty());
}

TEST_F(LibraryFrame, LayoutComesFromTheSettingsAndTheFrameKeepsItsSmallestSize) {
    settings_.geometry[ModuleSettings::kLeftWidth] = "0";
    settings_.geometry[ModuleSettings::kSubTreePos] = "30";
    auto frame = open();
    EXPECT_EQ(frame->splitter(0)->firstPaneSize(), 240);
    EXPECT_EQ(frame->splitter(1)->firstPaneSize(), 100);
    frame->resize(500, 400);
    QCoreApplication::processEvents();
    EXPECT_EQ(frame->size(), QSize(800, 600));
    frame->resize(1000, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(settings_.geometry[ModuleSettings::kWidth], std::to_string(frame->geometry().width()));
    EXPECT_EQ(settings_.geometry[ModuleSettings::kHeight], "700");
}

TEST_F(LibraryFrame, AWindowMadeAgainComesBackWhereTheLastOneWasLeft) {
    {
        auto frame = open();
        frame->setGeometry(130, 90, 900, 650);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(settings_.geometry[ModuleSettings::kPosX], "130");
    auto again = open();
    EXPECT_EQ(again->geometry(), QRect(130, 90, 900, 650));
}

TEST_F(LibraryFrame, EachListStoresOnlyItsOwnColumnWidths) {
    settings_.dataView = 1;
    auto frame = open();
    frame->handleMessage(kMsgSwitchPane, kPaneExplorer, 0);
    const auto blocks = settings_.blockWidths;
    frame->partList()->header()->resizeSection(2, 123);
    EXPECT_EQ(settings_.recordWidths[2], 123);
    EXPECT_EQ(settings_.blockWidths, blocks);

    const auto records = settings_.recordWidths;
    frame->dataPane()->setStyle(CRecListView::Details);
    auto* details = qobject_cast<QTreeView*>(frame->dataPane()->currentWidget());
    ASSERT_NE(details, nullptr);
    details->header()->resizeSection(0, 211);
    EXPECT_EQ(settings_.blockWidths[13], 211);
    EXPECT_EQ(settings_.recordWidths, records);
    EXPECT_EQ(settings_.viewType, CRecListView::Details);
}

TEST_F(LibraryFrame, DeletingARecordAsksAndCancelLeavesTheDrawingAlone) {
    auto frame = open();
    auto& parts = static_cast<PartListModel&>(*frame->partList()->model());
    frame->partList()->setCurrentIndex(parts.index(1, 0));
    const auto written = std::filesystem::last_write_time(library_);
    dialogs_.pushAnswer(cad::app::IDCANCEL);
    frame->runCommand(1504);
    EXPECT_THAT(boxesShown(dialogs_),
                ElementsAre("데이터 삭제: 정말 삭제하시겠습니까?. [warning ok-cancel]"));
    EXPECT_EQ(parts.rowCount(), 5);
    EXPECT_EQ(std::filesystem::last_write_time(library_), written);

    frame->partList()->setCurrentIndex(parts.index(1, 0));
    frame->runCommand(1504);  // OK this time
    ASSERT_EQ(parts.rowCount(), 4);
    EXPECT_EQ(parts.recordAt(1)->spec, "JIS 10K 80A");
    EXPECT_EQ(frame->categoryTree()->currentNode()->children.size(), 4u);
}

TEST_F(LibraryFrame, DeletingAWindowFromTheDropDownRenumbersTheListsAndSelectsTheOneBefore) {
    auto frame = open();
    QComboBox* windows = frame->previewView()->windowDropDown();
    for (const char* name : {"둘째", "셋째", "넷째"}) {
        dialogs_.pushText(std::string(name));
        frame->runCommand(1302);
    }
    ASSERT_EQ(windows->count(), 4);
    // Window 3 has a list file of its own; window 2 is deleted.
    DrawingList list;
    NoTree tree;
    ManagementWindows other(settings_, list, tree, dialogs_);
    other.loadTabList();
    list.addPath(library_, dialogs_);
    ASSERT_TRUE(other.saveList(3));
    windows->setCurrentIndex(2);
    dialogs_.clearCalls();
    frame->runCommand(1304);
    EXPECT_THAT(boxesShown(dialogs_),
                ElementsAre("리스트 삭제: 리스트를 정말로 삭제하시겠습니까? [warning ok-cancel]"));
    ASSERT_EQ(windows->count(), 3);
    EXPECT_EQ(windows->itemText(2), "넷째");
    EXPECT_EQ(windows->currentIndex(), 1);
    EXPECT_TRUE(cad::sys::fileExists(frame->managementWindows().listFile(2)));
    EXPECT_FALSE(cad::sys::fileExists(frame->managementWindows().listFile(3)));
    EXPECT_EQ(settings_.curListName, "둘째");
}

TEST_F(LibraryFrame, PanesAndButtonsFollowTheSideAndTheirButtons) {
    auto frame = open();
    EXPECT_TRUE(frame->commandAction(1200)->isChecked());
    EXPECT_FALSE(frame->commandAction(1203)->isEnabled());
    EXPECT_TRUE(frame->commandAction(1210)->isEnabled());  // the first drawing is chosen

    frame->handleMessage(kMsgSwitchPane, kPaneExplorer, 0);
    EXPECT_TRUE(frame->commandAction(1201)->isChecked());
    EXPECT_TRUE(frame->commandAction(1203)->isEnabled());
    EXPECT_FALSE(frame->commandAction(1209)->isEnabled());  // nothing explored yet
    EXPECT_EQ(settings_.ublView, 0);

    frame->commandAction(1203)->trigger();  // the data pane on
    QCoreApplication::processEvents();
    EXPECT_EQ(settings_.dataView, 1);
    EXPECT_TRUE(frame->dataPane()->isVisible());
    frame->commandAction(1200)->trigger();  // back to the tree: the data pane goes
    QCoreApplication::processEvents();
    EXPECT_EQ(frame->leftPane(), LeftPane::DrawingTree);
    EXPECT_FALSE(frame->commandAction(1203)->isChecked());
    EXPECT_FALSE(frame->dataPane()->isVisible());
    EXPECT_EQ(settings_.dataView, 0);

    frame->commandAction(1202)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(settings_.preView, 1);
    EXPECT_TRUE(frame->previewView()->pictureVisible());

    // The two always-on-top commands run one handler: each turns it over.
    frame->runCommand(1212);
    QCoreApplication::processEvents();
    EXPECT_TRUE(frame->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(frame->commandAction(1103)->isChecked());
    frame->runCommand(1103);
    QCoreApplication::processEvents();
    EXPECT_FALSE(frame->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_FALSE(frame->commandAction(1212)->isChecked());
}

TEST_F(LibraryFrame, OpenedDrawingsAreReportedOnlyWhenSomeFailed) {
    auto frame = open();
    frame->handleMessage(kMsgDrawingsOpened, 3, 0);
    frame->handleMessage(kMsgDrawingsOpened, 3, 1);
    frame->handleMessage(kMsgDrawingsOpened, 2, 2);
    EXPECT_THAT(boxesShown(dialogs_),
                ElementsAre("도면 열기 결과: 3의 도면 중 1개의 도면 열기에 실패하였습니다. [information]",
                            "도면 열기 에러: 도면 열기를 수행하지 못했습니다. [information]"));
    QSignalSpy flows(frame.get(), &CUblMainFrame::placementOrAuthoringRequested);
    frame->runCommand(1204);
    frame->runCommand(1804);
    ASSERT_EQ(flows.count(), 2);
    EXPECT_EQ(flows[0][0], flows[1][0]);
    frame->handleMessage(WM_CLOSE, 0, 0);
    EXPECT_FALSE(frame->isVisible());
}

TEST_F(LibraryFrame, EveryControlHasAnAccessibleName) {
    auto frame = open();
    frame->handleMessage(kMsgSwitchPane, kPaneExplorer, 0);
    for (QWidget* widget : frame->findChildren<QWidget*>()) {
        const bool control = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
                             qobject_cast<QAbstractItemView*>(widget);
        if (!control || widget->inherits("QHeaderView")) continue;
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const bool named = !widget->accessibleName().isEmpty() || (button && !button->text().isEmpty());
        // Qt's own parts: the bars' extension arrows, a drop-down's pop-up list.
        if (widget->objectName().startsWith("qt_") || widget->inherits("QComboBoxListView"))
            continue;
        EXPECT_TRUE(named) << widget->metaObject()->className() << " "
                           << widget->objectName().toStdString();
    }
}

}  // namespace
}  // namespace vantor
