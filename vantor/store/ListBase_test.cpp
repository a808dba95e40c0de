// The block list of a library drawing, with the file-name message.
#include "vantor/store/ListBase.h"

#include <gtest/gtest.h>

#include <memory>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::db::BlockTableRecord;

void addBlock(cad::db::Database& db, const char* name, std::int16_t flags, const char* comments,
              std::string preview) {
    auto block = std::make_unique<BlockTableRecord>();
    ASSERT_EQ(block->setName(name), cad::ErrorStatus::eOk);
    block->setFlags(flags);
    block->setComments(comments);
    block->setPreviewIcon(std::move(preview));
    auto table =
        cad::db::open<cad::db::SymbolTable>(db.blockTableId(), cad::db::OpenMode::ForWrite);
    cad::db::ObjectId id;
    ASSERT_EQ(table->add(std::move(block), id), cad::ErrorStatus::eOk);
}

TEST(ListBase, ListsNamedBlocksOnlyInTableOrder) {
    cad::db::Database db;
    db.setFileName("/lib/parts.dxf");
    addBlock(db, "HEX-M10", 0, "육각볼트 M10", "BM-bytes");
    addBlock(db, "*U3", BlockTableRecord::kAnonymous, "", "");
    addBlock(db, "FLANGE-50A", 0, "", "");
    cad::app::ScriptedDialogs dialogs;
    CListBase list(dialogs);
    ASSERT_TRUE(list.build(db));
    ASSERT_EQ(list.blocks().size(), 2u);
    EXPECT_EQ(list.blocks()[0].name, "HEX-M10");
    EXPECT_EQ(list.blocks()[0].description, "육각볼트 M10");
    EXPECT_TRUE(list.blocks()[0].hasPreviewIcon);
    EXPECT_EQ(list.blocks()[1].name, "FLANGE-50A");
    EXPECT_FALSE(list.blocks()[1].hasPreviewIcon);
    EXPECT_TRUE(dialogs.calls().empty());
    EXPECT_EQ(db.openObjectCount(), 0);
}

TEST(ListBase, DrawingWithoutFileNameIsNotListed) {
    cad::db::Database db;
    addBlock(db, "HEX-M10", 0, "", "");
    cad::app::ScriptedDialogs dialogs;
    CListBase list(dialogs);
    EXPECT_FALSE(list.build(db));
    EXPECT_TRUE(list.blocks().empty());
    EXPECT_EQ(testing_support::boxesShown(dialogs),
              std::vector<std::string>{"파일 이름 확인 에러: 파일이름을 가져올 수 없습니다.\n- "
                                       "CListBase::BuildDWG(AcDbDatabase * pDb, BOOL bDocument) "
                                       "error [error]"});
}

}  // namespace
}  // namespace vantor
