// Block icons drawn on the worker for the sample library's blocks that store none: the
// placeholder at once, the icon when it arrives, the disk cache on the next showing, and
// nothing of an old list ever landing in a new one.
#include <QAbstractItemModelTester>
#include <QIcon>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "cad/gs/TestGuiApplication.h"
#include "vantor/store/LibraryDrawingCache.h"
#include "vantor/store/ListBase.h"
#include "vantor/ui/models/BlockIconWorker.h"
#include "vantor/ui/models/BlockListModel.h"

namespace vantor {
namespace {

constexpr int kWait = 60000;

class BlockIcons : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        path_ = folder_.filePath("standard-parts.dxf").toStdString();
        std::filesystem::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf", path_);
        database_ = drawings_.open(path_);
        ASSERT_NE(database_, nullptr);
        CListBase list(dialogs_);
        ASSERT_TRUE(list.build(*database_));
        blocks_ = list.blocks();
        for (int row = 0; row < static_cast<int>(blocks_.size()) && row_ < 0; ++row)
            if (!blocks_[row].hasPreviewIcon) row_ = row;
        ASSERT_GE(row_, 0) << "the sample has no block without a stored icon";
    }

    std::string cacheFolder() const { return folder_.filePath("cache").toStdString(); }
    BlockIconKey keyOf(int pixels = 48) const {
        return {path_, fileStampOf(path_), blocks_[row_].name, pixels};
    }
    QIcon icon(const BlockListModel& model) const {
        return model.index(row_, 0).data(Qt::DecorationRole).value<QIcon>();
    }
    static QImage picture(const QIcon& icon, int pixels) {
        return icon.pixmap(pixels, pixels).toImage().convertToFormat(QImage::Format_RGB32);
    }
    // Lines drawn on the black ground, not the grey of the placeholder tiles.
    static bool drawn(const QImage& image) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QRgb p = image.pixel(x, y);
                if (p != qRgb(0, 0, 0) && !(qRed(p) == qGreen(p) && qGreen(p) == qBlue(p))) return true;
            }
        return false;
    }
    static bool rowChanged(const QSignalSpy& spy, int row) {
        for (const QList<QVariant>& args : spy)
            if (args[0].toModelIndex().row() <= row && args[1].toModelIndex().row() >= row) return true;
        return false;
    }

    QTemporaryDir folder_;
    std::string path_;
    cad::app::ScriptedDialogs dialogs_;
    LibraryDrawingCache drawings_;
    cad::db::Database* database_ = nullptr;
    std::vector<BlockListEntry> blocks_;
    int row_ = -1;
};

TEST_F(BlockIcons, PlaceholderFirstThenTheDrawnIconWhichTheNextShowingTakesFromDisk) {
    QImage first;
    {
        BlockIconWorker worker(cacheFolder());
        BlockListModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        model.setIconWorker(&worker);
        model.setBlocks(path_, blocks_, database_);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        EXPECT_FALSE(icon(model).isNull());  // a placeholder, without waiting for anything
        EXPECT_TRUE(model.iconPending(row_));
        EXPECT_FALSE(drawn(picture(icon(model), 48)));

        ASSERT_TRUE(worker.waitForIdle(kWait));
        EXPECT_FALSE(model.iconPending(row_));
        EXPECT_TRUE(rowChanged(changed, row_));
        first = picture(icon(model), 48);
        EXPECT_EQ(first.size(), QSize(48, 48));
        EXPECT_TRUE(drawn(first));
        EXPECT_TRUE(worker.cache().load(keyOf()).has_value());
    }

    // Another window (another worker) on the same cache: the icon is there at the first ask.
    BlockIconWorker worker(cacheFolder());
    BlockListModel model;
    model.setIconWorker(&worker);
    model.setBlocks(path_, blocks_, database_);
    EXPECT_EQ(picture(icon(model), 48), first);
    EXPECT_FALSE(model.iconPending(row_));

    // Once the drawing is saved again its old icons no longer count.
    std::filesystem::last_write_time(path_, std::filesystem::last_write_time(path_) + std::chrono::seconds(2));
    model.setBlocks(path_, blocks_, database_);
    icon(model);
    EXPECT_TRUE(model.iconPending(row_));
}

TEST_F(BlockIcons, ADamagedCacheFileIsDrawnAgain) {
    {
        BlockIconWorker worker(cacheFolder());
        BlockListModel model;
        model.setIconWorker(&worker);
        model.setBlocks(path_, blocks_, database_);
        icon(model);
        ASSERT_TRUE(worker.waitForIdle(kWait));
    }
    BlockIconWorker worker(cacheFolder());
    const std::string file = worker.cache().fileFor(keyOf());
    // The checksum holds, the picture inside does not decode.
    ASSERT_TRUE(worker.cache().store(keyOf(), std::string(64, 'x')));
    BlockListModel model;
    model.setIconWorker(&worker);
    model.setBlocks(path_, blocks_, database_);
    icon(model);
    EXPECT_TRUE(model.iconPending(row_));
    ASSERT_TRUE(worker.waitForIdle(kWait));
    EXPECT_TRUE(drawn(picture(icon(model), 48)));
    EXPECT_FALSE(worker.cached(keyOf()).isNull());  // mended on disk too

    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    model.setBlocks(path_, blocks_, database_);
    icon(model);
    EXPECT_TRUE(model.iconPending(row_));
}

TEST_F(BlockIcons, IconsOfAListNoLongerShownAreDropped) {
    BlockIconWorker worker(cacheFolder());
    BlockListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setIconWorker(&worker);
    QSignalSpy arrived(&worker, &BlockIconWorker::iconReady);
    model.setBlocks(path_, blocks_, database_);
    icon(model);
    ASSERT_TRUE(worker.waitForIdle(kWait));
    ASSERT_FALSE(arrived.isEmpty());
    const QList<QVariant> late = arrived.takeLast();

    // The same blocks from a copy of the drawing: same names, other icons to come.
    const std::string copy = folder_.filePath("copy.dxf").toStdString();
    std::filesystem::copy_file(path_, copy);
    model.setBlocks(copy, blocks_, database_);
    icon(model);
    ASSERT_TRUE(model.iconPending(row_));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    // What was drawn for the first list arrives only now.
    emit worker.iconReady(late[0].value<quint64>(), late[1].toString(), late[2].value<QImage>());
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_TRUE(model.iconPending(row_));

    // Asked for, then the list replaced before the worker got to it: never drawn at all.
    model.setBlocks(path_, {}, nullptr);
    ASSERT_TRUE(worker.waitForIdle(kWait));
    EXPECT_FALSE(worker.cache().load({copy, fileStampOf(copy), blocks_[row_].name, 48}).has_value());
}

TEST_F(BlockIcons, AnotherSizeIsDrawnAgainKeepingTheOldPictureMeanwhile) {
    BlockIconWorker worker(cacheFolder());
    BlockListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setIconWorker(&worker);
    model.setBlocks(path_, blocks_, database_);
    icon(model);
    ASSERT_TRUE(worker.waitForIdle(kWait));
    const QImage small = picture(icon(model), 48);
    ASSERT_EQ(small.size(), QSize(48, 48));

    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setIconPixels(100);
    EXPECT_EQ(model.iconPixels(), 100);
    EXPECT_TRUE(rowChanged(changed, row_));
    // Meanwhile the old picture enlarged: of the new size already, since the view lays its
    // items out by the icons' sizes, and no placeholder flashing over every tile.
    EXPECT_EQ(icon(model).availableSizes(), QList<QSize>{QSize(100, 100)});
    EXPECT_TRUE(model.iconPending(row_));
    const QImage enlarged = picture(icon(model), 100);
    EXPECT_TRUE(drawn(enlarged));
    EXPECT_EQ(enlarged, small.scaled(100, 100, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    ASSERT_TRUE(worker.waitForIdle(kWait));
    EXPECT_FALSE(model.iconPending(row_));
    EXPECT_EQ(icon(model).availableSizes(), QList<QSize>{QSize(100, 100)});
    EXPECT_NE(picture(icon(model), 100), enlarged);  // drawn at the size, not scaled
    EXPECT_TRUE(worker.cache().load(keyOf(100)).has_value());

    model.setIconPixels(4000);
    EXPECT_EQ(model.iconPixels(), kMaxBlockIconPixels);
}

TEST_F(BlockIcons, ABlockThatCannotBeDrawnShowsATileNotAPlaceholderForEver) {
    BlockIconWorker worker(cacheFolder());
    BlockListModel model;
    model.setIconWorker(&worker);
    const std::string missing = folder_.filePath("gone.dxf").toStdString();
    model.setBlocks(missing, blocks_, nullptr);
    const QImage waiting = picture(icon(model), 48);
    ASSERT_TRUE(worker.waitForIdle(kWait));
    EXPECT_FALSE(model.iconPending(row_));
    EXPECT_FALSE(icon(model).isNull());
    EXPECT_NE(picture(icon(model), 48), waiting);
    EXPECT_FALSE(std::filesystem::exists(cacheFolder()));
}

}  // namespace
}  // namespace vantor
