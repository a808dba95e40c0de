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
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/explorer/DrawingExplorerModel.h"

namespace vantor {
namespace {

class ExplorerView : public testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        ASSERT_TRUE(dir_.isValid());
        root_ = dir_.path();
        for (const char* folder : {"도면/축", "도면/베어링", "기타"}) QDir(root_).mkpath(folder);
        for (const char* file : {"도면/축/shaft1.dxf", "도면/축/shaft2.dxf", "도면/flange.dwg"})
            touch(file);
        view_ = std::make_unique<CShellTreeViewEx>(new DrawingExplorerModel(
            QList<ExplorerLocation>{{root_, QStringLiteral("작업"), ExplorerLocation::Type::Root}},
            dialogs_));
        view_->resize(240, 300);
        view_->show();
    }

    void touch(const QString& relative) {
        QFile file(root_ + u'/' + relative);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QString path(const char* relative) const { return root_ + u'/' + QString::fromUtf8(relative); }
    QModelIndex indexOf(const char* relative) {
        return view_->explorerModel().indexForPath(path(relative));
    }

    QTemporaryDir dir_;
    QString root_;
    cad::app::ScriptedDialogs dialogs_;
    std::unique_ptr<CShellTreeViewEx> view_;
};

TEST_F(ExplorerView, TellsWhetherTheCurrentItemIsADrawing) {
    EXPECT_EQ(view_->accessibleName(), "도면 탐색기");
    QSignalSpy drawings(view_.get(), &CShellTreeViewEx::drawingSelected);
    QSignalSpy folders(view_.get(), &CShellTreeViewEx::folderSelected);

    view_->setCurrentIndex(indexOf("도면/flange.dwg"));
    view_->setCurrentIndex(indexOf("도면/축/shaft2.dxf"));
    ASSERT_EQ(drawings.size(), 2);
    EXPECT_EQ(drawings[1][0].toString(), path("도면/축/shaft2.dxf"));
    EXPECT_EQ(view_->currentDrawingPath(), path("도면/축/shaft2.dxf"));

    // By the keyboard, as a user moves: up from the first file of 축 is the folder 축.
    view_->setCurrentIndex(indexOf("도면/축/shaft1.dxf"));
    view_->setFocus();
    QTest::keyClick(view_.get(), Qt::Key_Up);
    ASSERT_EQ(folders.size(), 1);
    EXPECT_EQ(folders[0][0].toString(), path("도면/축"));
    EXPECT_TRUE(view_->currentDrawingPath().isEmpty());
    EXPECT_EQ(view_->currentPath(), path("도면/축"));
}

TEST_F(ExplorerView, SelectsAPathExpandingDownToIt) {
    QSignalSpy drawings(view_.get(), &CShellTreeViewEx::drawingSelected);
    EXPECT_TRUE(view_->selectPath(path("도면/축/shaft2.dxf")));
    EXPECT_EQ(view_->currentPath(), path("도면/축/shaft2.dxf"));
    EXPECT_TRUE(view_->isExpanded(indexOf("도면/축")));
    EXPECT_TRUE(view_->isExpanded(indexOf("도면")));
    EXPECT_TRUE(view_->isExpanded(view_->explorerModel().index(0, 0)));
    EXPECT_TRUE(view_->visualRect(view_->currentIndex()).intersects(view_->viewport()->rect()));
    ASSERT_EQ(drawings.size(), 1);

    // A last place that has gone: the nearest folder instead.
    QFile::remove(path("도면/flange.dwg"));
    EXPECT_FALSE(view_->selectPath(path("기타/없는폴더/gone.dxf")));
    EXPECT_EQ(view_->currentPath(), path("기타"));
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerView, AFolderThatCannotBeReadIsToldOnEachExpansionAndStaysCollapsed) {
    const QPersistentModelIndex other = indexOf("기타");
    view_->expand(other.parent());
    QDir(path("기타")).removeRecursively();
    for (int attempt = 1; attempt <= 2; ++attempt) {
        SCOPED_TRACE(attempt);
        view_->expand(other);
        QTest::qWait(0);
        EXPECT_FALSE(view_->isExpanded(other));
        EXPECT_EQ(dialogs_.messageBoxes().size(), std::size_t(attempt));
    }
    EXPECT_EQ(testing_support::boxesShown(dialogs_)[0],
              "드라이브 에러: 이 드라이브는 아직 준비가 안되었거나, 네트웍 연결이 되지 "
              "않았습니다. 나중에 다시 시도하십시오. [error]");

    // Back again: the next expansion lists it.
    QDir(root_).mkpath("기타");
    touch("기타/back.dxf");
    view_->expand(other);
    QTest::qWait(0);
    EXPECT_TRUE(view_->isExpanded(other));
    EXPECT_EQ(view_->explorerModel().rowCount(other), 1);
    EXPECT_EQ(dialogs_.messageBoxes().size(), 2u);
}

TEST_F(ExplorerView, AnActivatedDocumentRefreshesTheCurrentFolder) {
    ASSERT_TRUE(view_->selectPath(path("도면/flange.dwg")));
    const QPersistentModelIndex shafts = indexOf("도면/축");
    view_->expand(shafts);
    QSignalSpy drawings(view_.get(), &CShellTreeViewEx::drawingSelected);
    QSignalSpy folders(view_.get(), &CShellTreeViewEx::folderSelected);

    // The host saved a new drawing beside the current one and deleted the current one.
    touch("도면/new.dxf");
    QFile::remove(path("도면/flange.dwg"));
    view_->documentActivated();

    const QModelIndex drawingsFolder = indexOf("도면");
    QStringList listed;
    for (int row = 0; row < view_->model()->rowCount(drawingsFolder); ++row)
        listed << view_->model()->index(row, 0, drawingsFolder).data().toString();
    EXPECT_EQ(listed, (QStringList{"베어링", "축", "new.dxf"}));
    EXPECT_TRUE(view_->isExpanded(shafts));
    // The current item went with its file; the frame hears of the new current item.
    EXPECT_EQ(drawings.size() + folders.size(), 1);
    EXPECT_NE(view_->currentPath(), path("도면/flange.dwg"));

    // F5 does the same for the folder a user is in.
    touch("도면/축/shaft3.dxf");
    view_->setCurrentIndex(indexOf("도면/축/shaft1.dxf"));
    view_->setFocus();
    QTest::keyClick(view_.get(), Qt::Key_F5);
    EXPECT_EQ(view_->model()->rowCount(shafts), 3);
    EXPECT_TRUE(dialogs_.calls().empty());
}

}  // namespace
}  // namespace vantor
