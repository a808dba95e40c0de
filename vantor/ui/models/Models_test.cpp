// The library window's models over the sample library: each passes Qt's model checks, and
// what they show is what the store holds.
#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QTemporaryDir>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/gs/TestGuiApplication.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/store/LibraryDrawingCache.h"
#include "vantor/store/ListBase.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/models/BlockPreview.h"
#include "vantor/ui/models/CategoryTreeModel.h"
#include "vantor/ui/models/DrawingTreeModel.h"
#include "vantor/ui/models/PartListModel.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;

class LibraryModels : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        path_ = folder_.filePath("standard-parts.dxf").toStdString();
        std::filesystem::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf",
                                   path_);
    }

    // The first group of the supplier library ("Slip-on 10K").
    const TreeNode& firstGroup(const CVNTreeBase& tree) {
        const TreeNode* node = tree.roots().front().get();
        while (node->kind != TreeNode::Kind::Group) node = node->children.front().get();
        return *node;
    }

    QTemporaryDir folder_;
    std::string path_;
    cad::app::ScriptedDialogs dialogs_;
};

TEST_F(LibraryModels, CategoryTreeShowsDrawingsLibrariesGroupsAndRecords) {
    CVNTreeBase tree(dialogs_);
    CategoryTreeModel model(tree);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.beginTreeChange();
    ASSERT_EQ(tree.loadDrawing(path_), CVNTreeBase::LoadResult::Loaded);
    model.endTreeChange();

    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.index(0, 0).data().toString(), "standard-parts [AD-LIB]");
    EXPECT_EQ(model.index(1, 0).data().toString(), "standard-parts [USR-LIB]");
    const QModelIndex flanges = model.index(0, 0, model.index(0, 0));
    const QModelIndex group = model.index(0, 0, flanges);
    EXPECT_EQ(group.data().toString(), "Slip-on 10K");
    EXPECT_EQ(model.rowCount(group), 5);
    EXPECT_EQ(model.index(4, 0, group).data().toString(), "JIS 10K 150A");  // a record: its spec
    EXPECT_EQ(model.parent(model.index(4, 0, group)), group);
    EXPECT_EQ(model.indexOf(model.nodeAt(group)), group);
    EXPECT_EQ(model.firstRootOf(path_), model.index(0, 0));
    // Categories and groups are named in place; libraries and records are not.
    EXPECT_TRUE(model.flags(group) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.flags(model.index(0, 0)) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.flags(model.index(0, 0, group)) & Qt::ItemIsEditable);
}

TEST_F(LibraryModels, NamingInPlaceRenamesInTheDrawingAndRefusesASiblingsName) {
    CVNTreeBase tree(dialogs_);
    ASSERT_EQ(tree.loadDrawing(path_), CVNTreeBase::LoadResult::Loaded);
    CategoryTreeModel model(tree);
    const QModelIndex valves = model.index(1, 0, model.index(0, 0));
    const QModelIndex gate = model.index(0, 0, valves);
    EXPECT_FALSE(model.setData(gate, QStringLiteral("볼 밸브")));
    EXPECT_EQ(gate.data().toString(), "게이트 밸브");
    EXPECT_EQ(dialogs_.messageBoxes().size(), 1u);
    EXPECT_TRUE(model.setData(gate, QStringLiteral("슬루스 밸브")));
    EXPECT_EQ(gate.data().toString(), "슬루스 밸브");

    CVNTreeBase again(dialogs_);
    ASSERT_EQ(again.loadDrawing(path_), CVNTreeBase::LoadResult::Loaded);
    EXPECT_NE(again.findNode(path_, {"Adv data list", "밸브", "슬루스 밸브"}), nullptr);
}

TEST_F(LibraryModels, PartListShowsTheGroupsRecordsUnderTheUsersTitles) {
    CVNTreeBase tree(dialogs_);
    ASSERT_EQ(tree.loadDrawing(path_), CVNTreeBase::LoadResult::Loaded);
    LibraryDrawingCache drawings;
    cad::db::Database* database = drawings.open(path_);
    ASSERT_NE(database, nullptr);
    GroupRecords group = readGroupRecords(objectIdOfNode(*database, firstGroup(tree).id));

    FieldLabels::Texts labels = FieldLabels::defaults();
    labels[PartFields::Spec] = "규격";
    PartListModel model(labels);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setRecords(path_, std::move(group.records));
    ASSERT_EQ(model.rowCount(), 5);
    ASSERT_EQ(model.columnCount(), 13);
    EXPECT_EQ(model.headerData(PartFields::Spec, Qt::Horizontal).toString(), "규격");
    EXPECT_EQ(model.headerData(PartFields::User6, Qt::Horizontal).toString(), "USER6");
    EXPECT_EQ(model.index(0, PartFields::Spec).data().toString(), "JIS 10K 25A");
    EXPECT_EQ(model.recordAt(4)->spec, "JIS 10K 150A");
    EXPECT_EQ(model.recordAt(5), nullptr);
    EXPECT_TRUE(model.flags(model.index(0, 0)) & Qt::ItemIsDragEnabled);  // onto the drawing
}

TEST_F(LibraryModels, BlockListNamesEveryPartBlockWithItsStoredIcon) {
    LibraryDrawingCache drawings;
    cad::db::Database* database = drawings.open(path_);
    ASSERT_NE(database, nullptr);
    CListBase list(dialogs_);
    ASSERT_TRUE(list.build(*database));
    BlockListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setBlocks(path_, list.blocks(), database);
    ASSERT_EQ(model.rowCount(), static_cast<int>(list.blocks().size()));
    ASSERT_GT(model.rowCount(), 0);
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), "Block name");
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Description");
    for (int row = 0; row < model.rowCount(); ++row) {
        EXPECT_EQ(model.blockAt(row), list.blocks()[row].name);
        EXPECT_EQ(!model.index(row, 0).data(Qt::DecorationRole).isNull(),
                  list.blocks()[row].hasPreviewIcon)
            << list.blocks()[row].name;
    }
}

TEST_F(LibraryModels, DrawingTreeListsTheWindowsDrawingsInOrder) {
    DrawingList list;
    list.addPath(path_, dialogs_);
    list.addPath("/nowhere/missing.dxf", dialogs_);
    std::next(list.begin())->active = 0;
    DrawingTreeModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.showList("주 관리창", list);
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.windowIndex().data().toString(), "주 관리창");
    ASSERT_EQ(model.rowCount(model.windowIndex()), 2);
    EXPECT_EQ(model.index(0, 0, model.windowIndex()).data().toString(), "standard-parts.dxf");
    EXPECT_EQ(model.pathAt(model.index(1, 0, model.windowIndex())), "/nowhere/missing.dxf");
    EXPECT_EQ(model.indexOfPath(path_), model.index(0, 0, model.windowIndex()));
    EXPECT_TRUE(model.pathAt(model.windowIndex()).empty());
    // A drawing whose data could not be read is greyed, not hidden.
    EXPECT_FALSE(model.index(1, 0, model.windowIndex()).data(Qt::ForegroundRole).isNull());
    EXPECT_TRUE(model.index(0, 0, model.windowIndex()).data(Qt::ForegroundRole).isNull());
}

TEST_F(LibraryModels, DrawingCacheReadsAgainOnlyWhenTheFileChanged) {
    LibraryDrawingCache drawings(2);
    cad::db::Database* first = drawings.open(path_);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(drawings.open(path_), first);
    CVNTreeBase tree(dialogs_);
    ASSERT_EQ(tree.loadDrawing(path_), CVNTreeBase::LoadResult::Loaded);
    TreeNode& group = const_cast<TreeNode&>(firstGroup(tree));
    ASSERT_TRUE(tree.renameCategory(group, "Slip-on 16K"));  // saves the drawing
    cad::db::Database* again = drawings.open(path_);
    ASSERT_NE(again, nullptr);
    EXPECT_NE(objectIdOfNode(*again, group.id), cad::db::ObjectId());
    cad::ErrorStatus status = cad::ErrorStatus::eOk;
    EXPECT_EQ(drawings.open(folder_.filePath("missing.dxf").toStdString(), &status), nullptr);
    EXPECT_NE(status, cad::ErrorStatus::eOk);
    EXPECT_EQ(drawings.size(), 1u);
}

TEST_F(LibraryModels, BlockPreviewIsFittedWithItsMarkersAndNullForAMissingBlock) {
    LibraryDrawingCache drawings;
    cad::db::Database* database = drawings.open(path_);
    ASSERT_NE(database, nullptr);
    CListBase list(dialogs_);
    ASSERT_TRUE(list.build(*database));
    const std::string block = list.blocks().front().name;
    const QImage plain = drawBlockPreview(*database, {block, QSize(200, 150), std::nullopt});
    ASSERT_FALSE(plain.isNull());
    EXPECT_EQ(plain.size(), QSize(200, 150));
    const QImage marked =
        drawBlockPreview(*database, {block, QSize(200, 150), cad::ge::Point3d(5, 5, 0)});
    EXPECT_NE(plain, marked);
    EXPECT_TRUE(drawBlockPreview(*database, {"NO-SUCH-BLOCK", QSize(200, 150), std::nullopt}).isNull());
    EXPECT_TRUE(drawBlockPreview(*database, {block, QSize(0, 0), std::nullopt}).isNull());
}

}  // namespace
}  // namespace vantor
