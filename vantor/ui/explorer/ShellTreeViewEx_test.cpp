// The explorer's tree view: what it tells the frame about the current item, finding a path
// again, a folder that cannot be expanded, refreshing when a document becomes active, and the
// context menus of a drawing and of a folder.
#include "vantor/ui/explorer/ShellTreeViewEx.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "vantor/ui/explorer/DrawingExplorerModel.h"

namespace vantor {
namespace {

class ExplorerView : public testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        ASSERT_TRUE(dir_.isValid());
        QDir(dir_.path()).mkpath("도면/축");
        QDir(dir_.path()).mkpath("기타");
        for (const char* file : {"도면/축/shaft1.dxf", "도면/축/shaft2.dxf", "도면/flange.dwg"})
            touch(file);
        view_ = std::make_unique<CShellTreeViewEx>(new DrawingExplorerModel(
            {{dir_.path(), QStringLiteral("작업"), ExplorerLocation::Type::Root}}, dialogs_));
        view_->resize(240, 300);
        view_->show();
    }

    void touch(const char* relative) {
        ASSERT_TRUE(QFile(path(relative)).open(QIODevice::WriteOnly));
    }
    QString path(const char* relative) const { return dir_.filePath(QString::fromUtf8(relative)); }
    QModelIndex indexOf(const char* relative) {
        return view_->explorerModel().indexForPath(path(relative));
    }

    QTemporaryDir dir_;
    cad::app::ScriptedDialogs dialogs_;
    std::unique_ptr<CShellTreeViewEx> view_;
};

TEST_F(ExplorerView, SelectsAPathAndTellsWhetherTheCurrentItemIsADrawing) {
    EXPECT_EQ(view_->accessibleName(), "도면 탐색기");
    QSignalSpy drawings(view_.get(), &CShellTreeViewEx::drawingSelected);
    QSignalSpy folders(view_.get(), &CShellTreeViewEx::folderSelected);

    EXPECT_TRUE(view_->selectPath(path("도면/축/shaft1.dxf")));
    EXPECT_TRUE(view_->isExpanded(indexOf("도면/축")));
    EXPECT_TRUE(view_->isExpanded(indexOf("도면")));
    EXPECT_TRUE(view_->visualRect(view_->currentIndex()).intersects(view_->viewport()->rect()));
    ASSERT_EQ(drawings.size(), 1);
    EXPECT_EQ(drawings[0][0].toString(), path("도면/축/shaft1.dxf"));

    // Up from the first drawing of 축, as a user moves, is the folder itself.
    view_->setFocus();
    QTest::keyClick(view_.get(), Qt::Key_Up);
    ASSERT_EQ(folders.size(), 1);
    EXPECT_EQ(folders[0][0].toString(), path("도면/축"));
    EXPECT_TRUE(view_->currentDrawingPath().isEmpty());

    // A last place that has gone: the nearest folder instead.
    EXPECT_FALSE(view_->selectPath(path("기타/없는폴더/gone.dxf")));
    EXPECT_EQ(view_->currentPath(), path("기타"));
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerView, AFolderThatCannotBeReadIsToldOnEachExpansionAndStaysCollapsed) {
    const QPersistentModelIndex other = indexOf("기타");
    view_->expand(other.parent());
    QDir(path("기타")).removeRecursively();
    for (std::size_t attempt = 1; attempt <= 2; ++attempt) {
        view_->expand(other);
        QTest::qWait(0);
        EXPECT_FALSE(view_->isExpanded(other));
        EXPECT_EQ(dialogs_.messageBoxes().size(), attempt);
    }
    // Back again: the next expansion lists it.
    QDir(dir_.path()).mkpath("기타");
    touch("기타/back.dxf");
    view_->expand(other);
    QTest::qWait(0);
    EXPECT_TRUE(view_->isExpanded(other));
    EXPECT_EQ(view_->model()->rowCount(other), 1);
    EXPECT_EQ(dialogs_.messageBoxes().size(), 2u);
}

TEST_F(ExplorerView, AnActivatedDocumentOrF5RefreshesTheCurrentFolder) {
    ASSERT_TRUE(view_->selectPath(path("도면/flange.dwg")));
    const QPersistentModelIndex shafts = indexOf("도면/축");
    view_->expand(shafts);
    QSignalSpy folders(view_.get(), &CShellTreeViewEx::folderSelected);

    // The host saved a new drawing beside the current one, and the current one was deleted.
    touch("도면/new.dxf");
    QFile::remove(path("도면/flange.dwg"));
    view_->documentActivated();
    EXPECT_TRUE(indexOf("도면/new.dxf").isValid());
    EXPECT_TRUE(view_->isExpanded(shafts));
    // The current drawing went: the row before it is current, and the frame hears of it.
    EXPECT_EQ(view_->currentPath(), path("도면/축"));
    ASSERT_EQ(folders.size(), 1);
    EXPECT_EQ(folders[0][0].toString(), path("도면/축"));

    touch("도면/축/shaft3.dxf");
    view_->setCurrentIndex(indexOf("도면/축/shaft1.dxf"));
    view_->setFocus();
    QTest::keyClick(view_.get(), Qt::Key_F5);
    EXPECT_EQ(view_->model()->rowCount(shafts), 3);
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerView, ContextMenusNameTheirItemsCommandAndActOnTheItemClicked) {
    view_->selectPath(path("도면/축/shaft2.dxf"));
    // By mouse, on a drawing that is not the current item: it becomes current, and the menu
    // carries the drawing's commands.
    struct Shown {
        QString menu;
        QStringList items;
    };
    auto rightClick = [this](const QModelIndex& index, const char* command) {
        Shown shown;
        QTimer::singleShot(0, [&shown, command] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr) return;
            shown.menu = menu->objectName();
            for (QAction* action : menu->actions()) {
                if (action->isSeparator()) continue;
                shown.items << action->objectName() + " " + action->text();
                if (action->objectName() == QLatin1String(command)) action->trigger();
            }
            menu->close();
        });
        const QPoint at = view_->visualRect(index).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view_->viewport()->mapToGlobal(at));
        QApplication::sendEvent(view_->viewport(), &event);
        QTest::qWait(0);
        return shown;
    };
    QSignalSpy copies(view_.get(), &CShellTreeViewEx::r14CopyRequested);
    QSignalSpy folders(view_.get(), &CShellTreeViewEx::newDrawingRequested);

    const Shown file = rightClick(indexOf("도면/축/shaft1.dxf"), "id1602");
    EXPECT_EQ(file.menu, "id271");
    EXPECT_EQ(file.items, (QStringList{"id1601 도면 열기", "id1602 AutoCAD R14용 도면 생성",
                                       "id1600 관리창에 도면 추가"}));
    EXPECT_EQ(view_->currentDrawingPath(), path("도면/축/shaft1.dxf"));
    ASSERT_EQ(copies.size(), 1);
    EXPECT_EQ(copies[0][0].toString(), path("도면/축/shaft1.dxf"));

    const Shown folder = rightClick(indexOf("도면/축"), "id1700");
    EXPECT_EQ(folder.menu, "id270");
    EXPECT_EQ(folder.items, QStringList{"id1700 새도면 생성"});
    ASSERT_EQ(folders.size(), 1);
    EXPECT_EQ(folders[0][0].toString(), path("도면/축"));

    // A drawing made there is listed and becomes current.
    touch("도면/축/새도면1.dxf");
    view_->showNewDrawing(path("도면/축/새도면1.dxf"));
    EXPECT_EQ(view_->currentDrawingPath(), path("도면/축/새도면1.dxf"));
    EXPECT_TRUE(dialogs_.calls().empty());
}

}  // namespace
}  // namespace vantor
