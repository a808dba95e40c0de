// The explorer's model over temporary folder trees: what is listed and in which order, that
// nothing is read before a folder is expanded, unreadable locations, refresh and path lookup.
#include "vantor/ui/explorer/DrawingExplorerModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using testing_support::boxesShown;
using Kind = DrawingExplorerModel::Kind;
using Listing = DrawingExplorerModel::Listing;

const std::string kNotReadyBox =
    "드라이브 에러: 이 드라이브는 아직 준비가 안되었거나, 네트웍 연결이 되지 않았습니다. "
    "나중에 다시 시도하십시오. [error]";

class ExplorerModel : public testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        ASSERT_TRUE(dir_.isValid());
        root_ = dir_.path();
    }

    void makeFolder(const QString& relative) { ASSERT_TRUE(QDir(root_).mkpath(relative)); }
    void makeFile(const QString& relative) {
        QFile file(root_ + u'/' + relative);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << relative.toStdString();
    }
    void remove(const QString& relative) {
        const QString path = root_ + u'/' + relative;
        if (QFileInfo(path).isDir()) {
            ASSERT_TRUE(QDir(path).removeRecursively());
        } else {
            ASSERT_TRUE(QFile::remove(path));
        }
    }

    // A model whose one location is the temporary folder.
    DrawingExplorerModel& model(ExplorerLocation::Type type = ExplorerLocation::Type::Root) {
        model_ = std::make_unique<DrawingExplorerModel>(
            QList<ExplorerLocation>{{root_, QStringLiteral("작업"), type}}, dialogs_);
        return *model_;
    }
    // Checked by the tester from here on. The tester walks the whole tree at once, fetching
    // every folder, so tests of reading on demand attach it only after their first reads.
    void watch() {
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    QModelIndex location() const { return model_->index(0, 0); }

    // The names under `parent` in row order, after expanding it.
    QStringList names(const QModelIndex& parent) {
        if (model_->canFetchMore(parent)) model_->fetchMore(parent);
        QStringList shown;
        for (int row = 0; row < model_->rowCount(parent); ++row)
            shown << model_->index(row, 0, parent).data().toString();
        return shown;
    }
    QModelIndex child(const QModelIndex& parent, const QString& name) {
        names(parent);
        for (int row = 0; row < model_->rowCount(parent); ++row) {
            const QModelIndex index = model_->index(row, 0, parent);
            if (index.data().toString() == name) return index;
        }
        return {};
    }

    QTemporaryDir dir_;
    QString root_;
    cad::app::ScriptedDialogs dialogs_;
    std::unique_ptr<DrawingExplorerModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

TEST_F(ExplorerModel, ListsFoldersThenDrawingsOfAnyCaseInNaturalOrderAndNothingElse) {
    for (const char* folder : {"도면", "Sub10", "sub9", ".hidden", "빈폴더"}) makeFolder(folder);
    for (const char* file : {"b.dxf", "A.DWG", "part10.Dxf", "part9.dwG", "notes.txt", "dxf",
                             ".secret.dxf", "archive.dxf.bak", "x.dwgx"})
        makeFile(file);
    makeFile("도면/안쪽.dxf");
    DrawingExplorerModel& explorer = model();
    const QModelIndex empty = child(location(), "빈폴더");
    EXPECT_TRUE(explorer.hasChildren(empty));
    watch();

    EXPECT_EQ(names(location()), (QStringList{"sub9", "Sub10", "도면", "빈폴더", "A.DWG",
                                             "b.dxf", "part9.dwG", "part10.Dxf"}));

    const QModelIndex folder = child(location(), "도면");
    const QModelIndex drawing = child(location(), "A.DWG");
    EXPECT_EQ(explorer.kind(location()), Kind::Location);
    EXPECT_EQ(folder.data(DrawingExplorerModel::KindRole).toInt(), int(Kind::Folder));
    EXPECT_EQ(drawing.data(DrawingExplorerModel::KindRole).toInt(), int(Kind::Drawing));
    EXPECT_EQ(drawing.data(DrawingExplorerModel::PathRole).toString(), root_ + "/A.DWG");
    EXPECT_EQ(explorer.filePath(child(folder, "안쪽.dxf")), root_ + "/도면/안쪽.dxf");
    EXPECT_FALSE(explorer.hasChildren(drawing));
    EXPECT_TRUE(explorer.flags(drawing).testFlag(Qt::ItemNeverHasChildren));

    // An empty folder loses its expander once read.
    EXPECT_FALSE(explorer.hasChildren(empty));
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerModel, ReadsNothingUntilAFolderIsExpanded) {
    makeFolder("a/b");
    makeFile("a/b/deep.dxf");
    DrawingExplorerModel& explorer = model();
    EXPECT_EQ(explorer.rowCount(location()), 0);
    EXPECT_TRUE(explorer.hasChildren(location()));
    EXPECT_EQ(explorer.listing(location()), Listing::NotRead);

    const QModelIndex a = child(location(), "a");
    EXPECT_EQ(explorer.listing(a), Listing::NotRead);
    EXPECT_EQ(explorer.rowCount(a), 0);
    EXPECT_FALSE(explorer.canFetchMore(location()));
}

TEST_F(ExplorerModel, AFolderOfFiveThousandDrawingsIsListedInOrder) {
    makeFolder("big");
    for (int i = 1; i <= 5000; ++i) makeFile(QStringLiteral("big/p%1.dxf").arg(i));
    makeFile("big/readme.txt");
    makeFolder("big/zz");
    model();
    watch();
    const QStringList listed = names(child(location(), "big"));
    ASSERT_EQ(listed.size(), 5001);
    EXPECT_EQ(listed[0], "zz");
    EXPECT_EQ(listed[1], "p1.dxf");
    EXPECT_EQ(listed[10], "p10.dxf");
    EXPECT_EQ(listed[5000], "p5000.dxf");
}

TEST_F(ExplorerModel, AnUnreadableFolderIsToldOncePerAttemptAndStaysUsable) {
    makeFolder("gone");
    makeFolder("nowafile");
    makeFile("kept.dxf");
    DrawingExplorerModel& explorer = model();
    const QPersistentModelIndex gone = child(location(), "gone");
    const QPersistentModelIndex nowAFile = child(location(), "nowafile");
    QSignalSpy unreadable(&explorer, &DrawingExplorerModel::locationUnreadable);

    // Removed, or replaced by a file, between listing the parent and expanding it.
    remove("gone");
    remove("nowafile");
    makeFile("nowafile");
    for (const QPersistentModelIndex& folder : {gone, nowAFile}) {
        explorer.fetchMore(folder);
        EXPECT_EQ(explorer.listing(folder), Listing::Failed);
        EXPECT_EQ(explorer.rowCount(folder), 0);
        // Still offered for a new attempt, but not fetched again by a view's layout pass.
        EXPECT_TRUE(explorer.hasChildren(folder));
        EXPECT_FALSE(explorer.canFetchMore(folder));
        explorer.fetchMore(folder);
    }
    EXPECT_EQ(boxesShown(dialogs_), (std::vector{kNotReadyBox, kNotReadyBox}));
    ASSERT_EQ(unreadable.size(), 2);
    EXPECT_EQ(unreadable[0][0].value<QModelIndex>(), QModelIndex(gone));

    // The model goes on working, and a refresh is a new attempt.
    watch();
    EXPECT_EQ(names(location()), (QStringList{"gone", "nowafile", "kept.dxf"}));
    makeFolder("gone");
    makeFile("gone/back.dxf");
    explorer.refresh(gone);
    EXPECT_EQ(explorer.listing(gone), Listing::Read);
    EXPECT_EQ(names(gone), QStringList{"back.dxf"});
    EXPECT_EQ(dialogs_.messageBoxes().size(), 2u);
}

TEST_F(ExplorerModel, AVolumeNoLongerMountedIsNotReady) {
    // The temporary folder is no mount point: as a volume's, its mount has gone.
    makeFile("a.dxf");
    DrawingExplorerModel& explorer = model(ExplorerLocation::Type::Volume);
    explorer.fetchMore(location());
    EXPECT_EQ(explorer.rowCount(location()), 0);
    EXPECT_EQ(boxesShown(dialogs_), std::vector{kNotReadyBox});
}

TEST_F(ExplorerModel, RefreshKeepsWhatStaysAndTakesInWhatChanged) {
    for (const char* folder : {"keep/inner", "drop", "becomes-file"}) makeFolder(folder);
    for (const char* file : {"keep/inner/x.dxf", "a.dxf", "c.dxf", "old.dwg"}) makeFile(file);
    DrawingExplorerModel& explorer = model();
    watch();
    const QPersistentModelIndex keep = child(location(), "keep");
    const QPersistentModelIndex inner = child(keep, "inner");
    names(inner);
    const QPersistentModelIndex drop = child(location(), "drop");
    const QPersistentModelIndex oldDrawing = child(location(), "old.dwg");

    remove("drop");
    remove("old.dwg");
    remove("becomes-file");
    makeFile("becomes-file.dxf");
    makeFile("becomes-file");  // not a drawing: it leaves the listing
    makeFolder("new");
    makeFile("b.dxf");
    makeFile("d.DXF");
    explorer.refresh(location());

    EXPECT_EQ(names(location()),
              (QStringList{"keep", "new", "a.dxf", "b.dxf", "becomes-file.dxf", "c.dxf", "d.DXF"}));
    EXPECT_FALSE(drop.isValid());
    EXPECT_FALSE(oldDrawing.isValid());
    ASSERT_TRUE(inner.isValid());
    EXPECT_EQ(explorer.listing(inner), Listing::Read);
    EXPECT_EQ(names(inner), QStringList{"x.dxf"});
    EXPECT_EQ(explorer.filePath(inner), root_ + "/keep/inner");
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerModel, RefreshingAFolderThatWentDropsItWithoutAWord) {
    makeFolder("went/below");
    makeFile("went/below/a.dxf");
    DrawingExplorerModel& explorer = model();
    watch();
    const QPersistentModelIndex went = child(location(), "went");
    const QPersistentModelIndex below = child(went, "below");
    names(below);
    remove("went");
    explorer.refresh(below);
    EXPECT_FALSE(went.isValid());
    EXPECT_FALSE(below.isValid());
    EXPECT_TRUE(names(location()).isEmpty());
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerModel, FindsAPathReadingTheFoldersOnTheWay) {
    makeFolder("a/b");
    makeFile("a/b/target.dxf");
    DrawingExplorerModel& explorer = model();
    bool found = false;
    const QModelIndex target = explorer.indexForPath(root_ + "/a/./b//target.dxf", &found);
    EXPECT_TRUE(found);
    EXPECT_EQ(explorer.filePath(target), root_ + "/a/b/target.dxf");

    // Gone: the deepest folder still there.
    const QModelIndex nearest = explorer.indexForPath(root_ + "/a/b/missing/x.dxf", &found);
    EXPECT_FALSE(found);
    EXPECT_EQ(explorer.filePath(nearest), root_ + "/a/b");

    EXPECT_FALSE(explorer.indexForPath("/elsewhere/x.dxf", &found).isValid());
    EXPECT_FALSE(found);
    EXPECT_EQ(explorer.indexForPath(root_, &found), location());
    EXPECT_TRUE(found);
}

TEST(ExplorerLocations, ShowsDisksAndSharesButNotSystemFileSystems) {
    const struct {
        const char* mountPoint;
        const char* device;
        const char* type;
        bool shown;
    } rows[] = {
        {"/media/kim/USB", "/dev/sdb1", "vfat", true},
        {"/run/media/kim/DATA", "/dev/sdc1", "exfat", true},
        {"/mnt/share", "server:/export", "nfs4", true},
        {"/mnt/win", "//server/share", "cifs", true},
        {"/dev/shm", "tmpfs", "tmpfs", false},
        {"/tmp", "tmpfs", "tmpfs", false},
        {"/sys/fs/cgroup", "cgroup", "cgroup2", false},
        {"/boot/efi", "/dev/sda1", "vfat", false},
        {"/run/user/1000", "tmpfs", "tmpfs", false},
        {"/run/docker", "/dev/sda2", "ext4", false},
        {"/snap/core/1", "/dev/loop0", "squashfs", false},
        {"/var/lib/docker/overlay2/x", "overlay", "overlay", false},
        {"/mediakit", "proc", "proc", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mountPoint);
        EXPECT_EQ(isUserVolume(QString::fromUtf8(row.mountPoint), QString::fromUtf8(row.device),
                               QString::fromUtf8(row.type)),
                  row.shown);
    }
}

TEST(ExplorerLocations, StartWithTheRootAndTheHomeFolderAndHoldNoPathTwice) {
    const QList<ExplorerLocation> locations = systemLocations();
    ASSERT_GE(locations.size(), 1);
    EXPECT_EQ(locations[0].path, "/");
    EXPECT_EQ(locations[0].type, ExplorerLocation::Type::Root);
    if (QDir::homePath() != "/") {
        ASSERT_GE(locations.size(), 2);
        EXPECT_EQ(locations[1].path, QDir::cleanPath(QDir::homePath()));
    }
    QStringList paths;
    for (const ExplorerLocation& location : locations) {
        EXPECT_FALSE(paths.contains(location.path)) << location.path.toStdString();
        paths << location.path;
    }
}

}  // namespace
}  // namespace vantor
