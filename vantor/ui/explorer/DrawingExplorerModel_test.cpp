// The explorer's model over temporary folder trees: what is listed and in which order, that
// nothing is read before a folder is expanded, unreadable locations, refresh and path lookup.
#include "vantor/ui/explorer/DrawingExplorerModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "vantor/ui/TestDialogs.h"
#include "vantor/ui/explorer/NaturalOrder.h"

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
    }

    // Files, and folders ending in "/", with the folders above them.
    void make(std::initializer_list<const char*> paths) {
        for (QString path : paths) {
            path.prepend(dir_.path() + u'/');
            ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
            if (!path.endsWith(u'/')) {
                ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly)) << path.toStdString();
            }
        }
    }
    void remove(const char* relative) {
        const QString path = dir_.filePath(QString::fromUtf8(relative));
        ASSERT_TRUE(QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path));
    }

    // The temporary folder as the one location.
    DrawingExplorerModel& model(ExplorerLocation::Type type = ExplorerLocation::Type::Root) {
        tester_.reset();
        model_ = std::make_unique<DrawingExplorerModel>(
            QList<ExplorerLocation>{{dir_.path(), QStringLiteral("작업"), type}}, dialogs_);
        return *model_;
    }
    // Checked by the tester from here on. The tester walks the whole tree at once, fetching
    // every folder, so tests of reading on demand attach it after their first reads.
    void watch() {
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    QModelIndex location() const { return model_->index(0, 0); }

    // The names under `parent` in row order, after expanding it.
    QStringList names(const QModelIndex& parent) {
        model_->fetchMore(parent);
        QStringList shown;
        for (int row = 0; row < model_->rowCount(parent); ++row)
            shown << model_->index(row, 0, parent).data().toString();
        return shown;
    }
    QModelIndex child(const QModelIndex& parent, const QString& name) {
        return model_->index(int(names(parent).indexOf(name)), 0, parent);
    }

    QTemporaryDir dir_;
    cad::app::ScriptedDialogs dialogs_;
    std::unique_ptr<DrawingExplorerModel> model_;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

TEST_F(ExplorerModel, ListsFoldersThenDrawingsOfAnyCaseInNaturalOrderReadOnDemand) {
    make({"도면/안쪽/", "Sub10/", "sub9/", ".hidden/", "빈폴더/", "도면/안쪽/깊은.dxf", "b.dxf",
          "A.DWG", "part10.Dxf", "part9.dwG", "notes.txt", "dxf", ".secret.dxf",
          "archive.dxf.bak"});
    DrawingExplorerModel& explorer = model();
    EXPECT_EQ(explorer.rowCount(location()), 0);
    EXPECT_TRUE(explorer.hasChildren(location()));
    const QModelIndex empty = child(location(), "빈폴더");
    const QModelIndex folder = child(location(), "도면");
    EXPECT_EQ(explorer.listing(folder), Listing::NotRead);
    EXPECT_TRUE(explorer.hasChildren(empty));  // unknown until read
    watch();

    EXPECT_EQ(names(location()), (QStringList{"sub9", "Sub10", "도면", "빈폴더", "A.DWG",
                                             "b.dxf", "part9.dwG", "part10.Dxf"}));
    EXPECT_FALSE(explorer.hasChildren(empty));
    const QModelIndex drawing = child(location(), "A.DWG");
    EXPECT_EQ(folder.data(DrawingExplorerModel::KindRole).toInt(), int(Kind::Folder));
    EXPECT_EQ(drawing.data(DrawingExplorerModel::KindRole).toInt(), int(Kind::Drawing));
    EXPECT_EQ(explorer.filePath(child(child(folder, "안쪽"), "깊은.dxf")),
              dir_.filePath("도면/안쪽/깊은.dxf"));
    EXPECT_TRUE(explorer.flags(drawing).testFlag(Qt::ItemNeverHasChildren));
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerModel, OrdersDigitRunsByValueAndStillTotally) {
    for (auto [a, b] : {std::pair{u"x99999999999999999999", u"x100000000000000000000"},
                        {u"v002", u"v3"},
                        {u"a1b2", u"a1b10"},
                        {u"abc", u"abc1"},
                        {u"가공품", u"나사"}})
        EXPECT_TRUE(naturalLess(a, b) && !naturalLess(b, a)) << QString::fromUtf16(a).toStdString();
    // Equal but for case or zeros: still one order, or a refresh would shuffle rows.
    EXPECT_EQ(naturalCompare(u"Part", u"part"), -naturalCompare(u"part", u"Part"));
    EXPECT_NE(naturalCompare(u"a01", u"a1"), 0);
}

TEST_F(ExplorerModel, AFolderOfFiveThousandDrawingsIsListedInOrder) {
    make({"big/zz/", "big/readme.txt"});
    for (int i = 1; i <= 5000; ++i)
        ASSERT_TRUE(QFile(dir_.filePath(QStringLiteral("big/p%1.dxf").arg(i))).open(QIODevice::WriteOnly));
    model();
    watch();
    const QStringList listed = names(child(location(), "big"));
    ASSERT_EQ(listed.size(), 5001);
    EXPECT_EQ(QStringList(listed.mid(0, 3)), (QStringList{"zz", "p1.dxf", "p2.dxf"}));
    EXPECT_EQ(listed[5000], "p5000.dxf");
}

TEST_F(ExplorerModel, AnUnreadableLocationIsToldOncePerAttemptAndTheModelGoesOn) {
    make({"gone/", "nowafile/", "kept.dxf"});
    DrawingExplorerModel& explorer = model();
    const QPersistentModelIndex gone = child(location(), "gone");
    const QPersistentModelIndex nowAFile = child(location(), "nowafile");
    QSignalSpy unreadable(&explorer, &DrawingExplorerModel::locationUnreadable);

    // Removed, or replaced by a file, between listing the parent and expanding it.
    remove("gone");
    remove("nowafile");
    make({"nowafile"});
    for (const QPersistentModelIndex& folder : {gone, nowAFile}) {
        explorer.fetchMore(folder);
        EXPECT_EQ(explorer.listing(folder), Listing::Failed);
        // Still offered for a new attempt, but not fetched again by a view's layout pass.
        EXPECT_TRUE(explorer.hasChildren(folder));
        EXPECT_FALSE(explorer.canFetchMore(folder));
    }
    EXPECT_EQ(boxesShown(dialogs_), (std::vector{kNotReadyBox, kNotReadyBox}));
    ASSERT_EQ(unreadable.size(), 2);
    EXPECT_EQ(unreadable[0][0].value<QModelIndex>(), QModelIndex(gone));

    watch();
    make({"gone/", "gone/back.dxf"});
    explorer.refresh(gone);  // a new attempt
    EXPECT_EQ(names(gone), QStringList{"back.dxf"});
    EXPECT_EQ(dialogs_.messageBoxes().size(), 2u);

    // A volume's mount point that is no mount point any more is not ready either.
    model(ExplorerLocation::Type::Volume).fetchMore(location());
    EXPECT_EQ(model_->rowCount(location()), 0);
    EXPECT_EQ(dialogs_.messageBoxes().size(), 3u);
}

TEST_F(ExplorerModel, RefreshKeepsWhatStaysAndTakesInWhatChanged) {
    make({"keep/inner/x.dxf", "drop/", "becomes-file/", "a.dxf", "c.dxf", "old.dwg"});
    DrawingExplorerModel& explorer = model();
    watch();
    const QPersistentModelIndex inner = child(child(location(), "keep"), "inner");
    const QPersistentModelIndex drop = child(location(), "drop");

    remove("drop");
    remove("old.dwg");
    remove("becomes-file");
    make({"becomes-file", "becomes-file.dxf", "new/", "b.dxf", "d.DXF"});
    explorer.refresh(location());
    EXPECT_EQ(names(location()),
              (QStringList{"keep", "new", "a.dxf", "b.dxf", "becomes-file.dxf", "c.dxf", "d.DXF"}));
    EXPECT_FALSE(drop.isValid());
    ASSERT_TRUE(inner.isValid());
    EXPECT_EQ(explorer.listing(inner), Listing::Read);  // what was expanded below stays so

    // Refreshing a folder that has gone drops it from its parent without a word.
    remove("keep");
    explorer.refresh(inner);
    EXPECT_FALSE(inner.isValid());
    EXPECT_EQ(names(location()).first(), "new");
    EXPECT_TRUE(dialogs_.calls().empty());
}

TEST_F(ExplorerModel, FindsAPathReadingTheFoldersOnTheWay) {
    make({"a/b/target.dxf"});
    DrawingExplorerModel& explorer = model();
    bool found = false;
    const QModelIndex target = explorer.indexForPath(dir_.path() + "/a/./b//target.dxf", &found);
    EXPECT_TRUE(found);
    EXPECT_EQ(explorer.filePath(target), dir_.filePath("a/b/target.dxf"));

    const QModelIndex nearest = explorer.indexForPath(dir_.filePath("a/b/missing/x.dxf"), &found);
    EXPECT_FALSE(found);
    EXPECT_EQ(explorer.filePath(nearest), dir_.filePath("a/b"));
    EXPECT_FALSE(explorer.indexForPath("/elsewhere/x.dxf").isValid());
}

TEST(ExplorerLocations, ShowDisksAndSharesButNotSystemFileSystems) {
    const struct {
        const char *mountPoint, *device, *type;
        bool shown;
    } rows[] = {
        {"/media/kim/USB", "/dev/sdb1", "vfat", true},
        {"/run/media/kim/DATA", "/dev/sdc1", "exfat", true},
        {"/mnt/share", "server:/export", "nfs4", true},
        {"/tmp", "tmpfs", "tmpfs", false},
        {"/boot/efi", "/dev/sda1", "vfat", false},
        {"/run/docker", "/dev/sda2", "ext4", false},
        {"/snap/core/1", "/dev/loop0", "squashfs", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(isUserVolume(QString::fromUtf8(row.mountPoint), QString::fromUtf8(row.device),
                               QString::fromUtf8(row.type)),
                  row.shown)
            << row.mountPoint;
    }
    EXPECT_EQ(systemLocations().first().path, "/");
}

}  // namespace
}  // namespace vantor
