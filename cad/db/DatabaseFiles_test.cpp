// Reading and saving drawing files: the statuses the host's callers test for (72, 76, 190), a
// failed read or save that changes nothing, and save() keeping the file's name and version.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "cad/db/Line.h"
#include "cad/db/TestDrawing.h"
#include "cad/sys/FileError.h"
#include "cad/sys/SharedFile.h"
#include "cad/sys/TestTempFolder.h"
#include "cad/sys/WriteFaults.h"

namespace cad::db {
namespace {

ObjectId addLine(Database& db) {
    return testing_support::append(db.modelSpaceId(),
                                   std::make_unique<Line>(ge::Point3d{}, ge::Point3d{3, 4, 0}));
}

std::size_t modelSpaceSize(const Database& db) {
    return open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)->entityIds().size();
}

class DatabaseFiles : public testing::Test {
protected:
    // A drawing with one line, saved as `name`.
    std::string saved(const std::string& name) {
        Database db(true);
        addLine(db);
        const std::string path = folder_.file(name);
        EXPECT_EQ(db.saveAs(path), ErrorStatus::eOk) << db.lastErrorMessage();
        return path;
    }

    sys::TestTempFolder folder_;
};

TEST_F(DatabaseFiles, ShareModesDecideWhoMayRead) {
    const std::string path = saved("shared.dxf");
    sys::SharedFile holder;
    ASSERT_EQ(holder.open(path, sys::ShareMode::DenyWrite), ErrorStatus::eOk);

    Database refused(false);
    EXPECT_EQ(refused.readDwgFile(path, sys::ShareMode::DenyWrite), ErrorStatus::eFileAccessErr);
    EXPECT_NE(refused.lastErrorMessage().find(path), std::string::npos);

    Database allowed(false);
    EXPECT_EQ(allowed.readDwgFile(path, sys::ShareMode::DenyNone), ErrorStatus::eOk);
    EXPECT_EQ(modelSpaceSize(allowed), 1u);

    holder.close();
    Database after(false);
    EXPECT_EQ(after.readDwgFile(path, sys::ShareMode::DenyWrite), ErrorStatus::eOk)
        << "reading does not keep the file locked";
    Database again(false);
    EXPECT_EQ(again.readDwgFile(path, sys::ShareMode::DenyWrite), ErrorStatus::eOk);
}

TEST_F(DatabaseFiles, AMissingFileIs76) {
    Database db(false);
    EXPECT_EQ(db.readDwgFile(folder_.file("none.dxf")), ErrorStatus::eFileNotFound);
    EXPECT_TRUE(db.fileName().empty());
}

TEST_F(DatabaseFiles, AReadReplacesTheContentOnlyWhenItSucceeds) {
    const std::string good = saved("good.dxf");
    folder_.writeBytes("bad.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nx\n0\nENDSEC\n0\nEOF\n");

    Database db(true);
    addLine(db);
    addLine(db);
    EXPECT_EQ(db.readDwgFile(folder_.file("bad.dxf")), ErrorStatus::eBadDwgFile);
    EXPECT_EQ(db.lastErrorMessage(),
              folder_.file("bad.dxf") + ": line 7: expected a number for group code 10, found 'x'");
    EXPECT_EQ(modelSpaceSize(db), 2u) << "the failed read changed nothing";
    EXPECT_TRUE(db.fileName().empty());

    // Ids of the old content name slots that go with it, so none is kept across the read.
    ASSERT_EQ(db.readDwgFile(good), ErrorStatus::eOk);
    EXPECT_EQ(modelSpaceSize(db), 1u);
    EXPECT_EQ(db.fileName(), good);
    EXPECT_TRUE(db.lastErrorMessage().empty());
    // The new content belongs to this database.
    const ObjectId line =
        open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)->entityIds()[0];
    EXPECT_EQ(line.database(), &db);
    EXPECT_EQ(db.openObjectCount(), 0);
}

TEST_F(DatabaseFiles, AFailedSaveLeavesTheOldFile) {
    const std::string path = saved("kept.dxf");
    const std::string before = folder_.readBytes("kept.dxf");

    Database db(true);
    const ObjectId line = addLine(db);
    {
        auto busy = open<Entity>(line, OpenMode::ForWrite);
        EXPECT_EQ(db.saveAs(path), ErrorStatus::eWasOpenedForWrite);
    }
    EXPECT_EQ(db.saveAs(path, DxfVersion::R2018), ErrorStatus::eVersionNotSupported);
    std::filesystem::create_directory(folder_.file("folder.dxf"));
    EXPECT_EQ(db.saveAs(folder_.file("folder.dxf")), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(db.saveAs(folder_.file("no/such/folder.dxf")), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(folder_.readBytes("kept.dxf"), before);
    EXPECT_TRUE(db.fileName().empty());
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("."))
            << "no temporary is left behind: " << entry.path();
    }
}

// Each step of the save (the temporary made, every write, the sync, the close, the rename)
// failed in turn, as a full disk or a read-only server would fail it.
TEST_F(DatabaseFiles, AFailedWriteNamesTheFileAndTheSystemsReason) {
    const std::string path = saved("kept.dxf");
    const std::string before = folder_.readBytes("kept.dxf");
    Database db(true);
    addLine(db);

    sys::WriteFaults::reset();
    ASSERT_EQ(db.saveAs(folder_.file("count.dxf")), ErrorStatus::eOk);
    const int steps = sys::WriteFaults::stepsSeen();
    ASSERT_GE(steps, 5) << "the temporary, a write, the sync, the close and the rename";
    std::filesystem::remove(folder_.file("count.dxf"));

    for (int step = 0; step < steps; ++step) {
        sys::WriteFaults::failStep(step, ENOSPC);
        EXPECT_NE(db.saveAs(path), ErrorStatus::eOk) << "step " << step;
        EXPECT_EQ(db.lastErrorMessage(), "cannot write " + path + ": No space left on device")
            << "step " << step;
        EXPECT_EQ(folder_.readBytes("kept.dxf"), before) << "step " << step;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()),
                                std::filesystem::directory_iterator()),
                  1)
            << "step " << step << ": nothing left beside the drawing";
    }
    sys::WriteFaults::reset();
}

TEST_F(DatabaseFiles, SaveKeepsTheNameAndAnR14FileStaysR14) {
    Database db(true);
    EXPECT_EQ(db.save(), ErrorStatus::eNotApplicable) << "a new drawing has no name yet";
    addLine(db);
    const std::string path = folder_.file("old.dxf");
    ASSERT_EQ(db.saveAs(path, DxfVersion::R14), ErrorStatus::eOk);

    Database r14(false);
    ASSERT_EQ(r14.readDwgFile(path), ErrorStatus::eOk);
    EXPECT_EQ(r14.originalFileVersion(), DxfVersion::R14);
    addLine(r14);
    ASSERT_EQ(r14.save(), ErrorStatus::eOk);
    EXPECT_NE(folder_.readBytes("old.dxf").find("AC1014"), std::string::npos);

    Database back(false);
    ASSERT_EQ(back.readDwgFile(path), ErrorStatus::eOk);
    EXPECT_EQ(modelSpaceSize(back), 2u);
}

}  // namespace
}  // namespace cad::db
