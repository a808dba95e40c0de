// The explorer's tree view: what it tells the frame about the current item, finding a path
// again, a folder that cannot be expanded, and refreshing when a document becomes active.
#include "vantor/ui/explorer/ShellTreeViewEx.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

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

}  // namespace
}  // namespace vantor
