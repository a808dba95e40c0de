// Atomic saving: the target is either the old file or the whole new one, and no temporary
// is ever left behind.
#include "cad/sys/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "cad/sys/CrtFile.h"
#include "cad/sys/FileError.h"
#include "cad/sys/TestTempFolder.h"
#include "cad/sys/WriteFaults.h"

namespace cad::sys {
namespace {

namespace fs = std::filesystem;

int entriesIn(const fs::path& folder) {
    int count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder)) ++count;
    return count;
}

mode_t permissionsOf(const std::string& path) {
    struct stat info {};
    ::stat(path.c_str(), &info);
    return info.st_mode & 07777;
}

TEST(AtomicFileTest, CommitReplacesTargetAndLeavesNoTemporary) {
    TestTempFolder folder;
    folder.writeBytes("lib.dat", "old content");
    AtomicFile file;
    ASSERT_EQ(file.open(folder.file("lib.dat")), ErrorStatus::eOk);

    // The temporary is hidden and beside the target, so the rename stays on one file system.
    fs::path temporary(file.temporaryPath());
    EXPECT_EQ(temporary.parent_path(), folder.path());
    EXPECT_EQ(temporary.filename().string().front(), '.');
    EXPECT_TRUE(fs::exists(temporary));

    // Enough to pass the internal flush threshold, with small pieces before and after.
    std::string big(200 * 1024, 'x');
    EXPECT_EQ(file.write("head\n"), ErrorStatus::eOk);
    EXPECT_EQ(file.write(big), ErrorStatus::eOk);
    EXPECT_EQ(file.write("tail"), ErrorStatus::eOk);
    EXPECT_EQ(folder.readBytes("lib.dat"), "old content") << "target touched before commit";

    ASSERT_EQ(file.commit(), ErrorStatus::eOk);
    EXPECT_EQ(folder.readBytes("lib.dat"), "head\n" + big + "tail");
    EXPECT_EQ(entriesIn(folder.path()), 1);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.write("late"), ErrorStatus::eInvalidOpenState);
    EXPECT_EQ(file.commit(), ErrorStatus::eInvalidOpenState);
}

TEST(AtomicFileTest, UncommittedSaveLeavesOldFileIntact) {
    TestTempFolder folder;
    folder.writeBytes("lib.dat", "old content");
    {
        AtomicFile file;
        ASSERT_EQ(file.open(folder.file("lib.dat")), ErrorStatus::eOk);
        EXPECT_EQ(file.write("half a new fi"), ErrorStatus::eOk);
        // Moving must hand the temporary over, not delete it twice or forget it.
        AtomicFile moved(std::move(file));
        EXPECT_FALSE(file.isOpen());
        EXPECT_TRUE(moved.isOpen());
        EXPECT_EQ(entriesIn(folder.path()), 2);
    }
    EXPECT_EQ(folder.readBytes("lib.dat"), "old content");
    EXPECT_EQ(entriesIn(folder.path()), 1);

    AtomicFile discarded;
    ASSERT_EQ(discarded.open(folder.file("new.dat")), ErrorStatus::eOk);
    discarded.discard();
    EXPECT_EQ(entriesIn(folder.path()), 1) << "a discarded save of a new file creates nothing";
}

TEST(AtomicFileTest, PermissionBitsOfTheTargetAreKept) {
    TestTempFolder folder;
    folder.writeBytes("Vantor.ini", "[a]\n");
    ::chmod(folder.file("Vantor.ini").c_str(), 0640);
    AtomicFile existing;
    ASSERT_EQ(existing.open(folder.file("Vantor.ini")), ErrorStatus::eOk);
    ASSERT_EQ(existing.commit(), ErrorStatus::eOk);
    EXPECT_EQ(permissionsOf(folder.file("Vantor.ini")), 0640u);

    // A new file gets what any newly created file gets, not the private mode of a temporary.
    mode_t mask = ::umask(0);
    ::umask(mask);
    AtomicFile created;
    ASSERT_EQ(created.open(folder.file("new.ini")), ErrorStatus::eOk);
    ASSERT_EQ(created.commit(), ErrorStatus::eOk);
    EXPECT_EQ(permissionsOf(folder.file("new.ini")), 0666u & ~mask);
}

TEST(AtomicFileTest, SavingThroughALinkUpdatesTheLinkedFile) {
    TestTempFolder folder;
    folder.writeBytes("real.dat", "old");
    fs::create_symlink(folder.file("real.dat"), folder.path() / "link.dat");
    AtomicFile file;
    ASSERT_EQ(file.open(folder.file("link.dat")), ErrorStatus::eOk);
    EXPECT_EQ(file.write("new"), ErrorStatus::eOk);
    ASSERT_EQ(file.commit(), ErrorStatus::eOk);
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link.dat"));
    EXPECT_EQ(folder.readBytes("real.dat"), "new");
}

TEST(AtomicFileTest, OpenRefusals) {
    TestTempFolder folder;
    fs::create_directory(folder.path() / "sub");
    AtomicFile file;
    EXPECT_EQ(file.open(folder.file("missing/lib.dat")), ErrorStatus::eFileNotFound);
    EXPECT_EQ(file.open(folder.file("sub")), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(file.open(""), ErrorStatus::eInvalidInput);
    EXPECT_FALSE(file.isOpen());
    ASSERT_EQ(file.open(folder.file("a.dat")), ErrorStatus::eOk);
    EXPECT_EQ(file.open(folder.file("b.dat")), ErrorStatus::eInvalidOpenState);
}

// A save through each writer: the atomic file, and the C-runtime stream replacing a file (as
// the list files and tree caches are written). Large enough for several writes.
struct SaveRow {
    const char* name;
    bool (*save)(const std::string& path, const std::string& bytes);
};

bool saveAtomic(const std::string& path, const std::string& bytes) {
    AtomicFile file;
    if (file.open(path) != ErrorStatus::eOk) return false;
    file.write(bytes.substr(0, 10));
    file.write(bytes.substr(10));
    return file.commit() == ErrorStatus::eOk;
}

bool saveReplacing(const std::string& path, const std::string& bytes) {
    CrtFile file;
    if (file.openReplacing(path, "wb") != ErrorStatus::eOk) return false;
    file.write(bytes.data(), bytes.size());
    return file.close() == ErrorStatus::eOk;
}

class FailedSave : public testing::TestWithParam<SaveRow> {
protected:
    void TearDown() override { WriteFaults::reset(); }
};

// Every step of a save (making the temporary, each write, the sync, the close, the rename)
// failed in turn: the old file stays, nothing else is left, and the message names the file
// and the system's reason.
TEST_P(FailedSave, LeavesTheOldFileAndSaysWhy) {
    TestTempFolder folder;
    const std::string path = folder.file("UBList0.dat");
    const std::string bytes(300 * 1024, 'n');
    folder.writeBytes("UBList0.dat", "old");

    WriteFaults::reset();
    ASSERT_TRUE(GetParam().save(path, bytes));
    const int steps = WriteFaults::stepsSeen();
    ASSERT_GE(steps, 5) << "open, writes, sync, close and rename are each a step";
    folder.writeBytes("UBList0.dat", "old");

    for (int step = 0; step < steps; ++step) {
        for (int error : {ENOSPC, EACCES}) {
            clearFileError();
            WriteFaults::failStep(step, error);
            EXPECT_FALSE(GetParam().save(path, bytes)) << "step " << step;
            EXPECT_EQ(folder.readBytes("UBList0.dat"), "old") << "step " << step;
            EXPECT_EQ(entriesIn(folder.path()), 1) << "step " << step;
            EXPECT_EQ(lastFileError().path, path) << "step " << step;
            EXPECT_EQ(lastFileError().osError, error) << "step " << step;
            EXPECT_EQ(lastFileError().text, "cannot write " + path + ": " + osErrorText(error))
                << "step " << step;
        }
    }
    EXPECT_EQ(osErrorText(ENOSPC), "No space left on device");
}

INSTANTIATE_TEST_SUITE_P(Rows, FailedSave,
                         testing::Values(SaveRow{"atomic_file", saveAtomic},
                                         SaveRow{"replacing_stream", saveReplacing}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AtomicFileTest, AReadOnlyFolderIsNamedWithTheReason) {
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not stop the superuser";
    TestTempFolder folder;
    fs::create_directory(folder.path() / "ro");
    ::chmod((folder.path() / "ro").c_str(), 0555);
    AtomicFile file;
    EXPECT_EQ(file.open(folder.file("ro/a.dxf")), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(lastFileError().text,
              "cannot write " + folder.file("ro/a.dxf") + ": Permission denied");
    ::chmod((folder.path() / "ro").c_str(), 0755);
}

}  // namespace
}  // namespace cad::sys
