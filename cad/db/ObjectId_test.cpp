// Whether an id leads to an object: the null id, a handle only referenced so far, a live and an
// erased object.
#include "cad/db/ObjectId.h"

#include <gtest/gtest.h>

#include <memory>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"

namespace cad::db {
namespace {

TEST(ObjectId, LiveOnlyWhileItsObjectExistsAndIsNotErased) {
    Database db;
    ObjectId line;
    ASSERT_EQ(open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForWrite)
                  ->appendEntity(std::make_unique<Line>(), line),
              ErrorStatus::eOk);
    ObjectSlot referencedOnly;  // as a reference read before (or without) its object

    EXPECT_FALSE(ObjectId::kNull.isLive());
    EXPECT_FALSE(ObjectId(&referencedOnly).isLive());
    EXPECT_TRUE(line.isLive());
    open<Line>(line, OpenMode::ForWrite)->erase();
    EXPECT_FALSE(line.isLive());
    EXPECT_TRUE(line.isValid());  // erased objects still exist, for undo and the audit
}

}  // namespace
}  // namespace cad::db
