// File times at one-second resolution, existence checks, and the C runtime's rename, remove
// and _mkdir answers.
#include "cad/sys/FileSystem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

namespace fs = std::filesystem;

void setWriteTime(const std::string& path, time_t seconds, long nanoseconds) {
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST(FileSystemTest, LastWriteTimeDropsTheSubSecondPart) {
    TestTempFolder folder;
    folder.writeBytes("lib.dwg", "d");
    folder.writeBytes("lib.vnf", "c");
    // The cache was written 0.8 s before the drawing, within the same second: still current.
    setWriteTime(folder.file("lib.vnf"), 1'000'000'000, 100'000'000);
    setWriteTime(folder.file("lib.dwg"), 1'000'000'000, 900'000'000);
    EXPECT_EQ(lastWriteTime(folder.file("lib.dwg")), 1'000'000'000);
    EXPECT_EQ(lastWriteTime(folder.file("lib.dwg")), lastWriteTime(folder.file("lib.vnf")));

    setWriteTime(folder.file("lib.dwg"), 1'000'000'001, 0);
    EXPECT_GT(*lastWriteTime(folder.file("lib.dwg")), *lastWriteTime(folder.file("lib.vnf")));
    EXPECT_EQ(lastWriteTime(folder.file("missing.dwg")), std::nullopt);
}

TEST(FileSystemTest, ExistenceOfFilesAndFolders) {
    TestTempFolder folder;
    folder.writeBytes("a.dwg", "");
    fs::create_directory(folder.path() / "sub");
    fs::create_symlink(folder.file("a.dwg"), folder.path() / "link.dwg");
    for (const auto& [name, isFile, isFolder] :
         {std::tuple{"a.dwg", true, false}, std::tuple{"link.dwg", true, false},
          std::tuple{"sub", false, true}, std::tuple{"missing", false, false}}) {
        EXPECT_EQ(fileExists(folder.file(name)), isFile) << name;
        EXPECT_EQ(folderExists(folder.file(name)), isFolder) << name;
    }
}

TEST(FileSystemTest, RenameNeverReplacesAndDeleteTakesOnlyFiles) {
    TestTempFolder folder;
    folder.writeBytes("UBList3.dat", "three");
    folder.writeBytes("UBList4.dat", "four");

    EXPECT_EQ(renameFile(folder.file("UBList4.dat"), folder.file("UBList3.dat")),
              ErrorStatus::eFileAccessErr);
    EXPECT_EQ(folder.readBytes("UBList3.dat"), "three");
    EXPECT_EQ(folder.readBytes("UBList4.dat"), "four");

    EXPECT_EQ(renameFile(folder.file("missing.dat"), folder.file("UBList3.dat")),
              ErrorStatus::eFileNotFound);
    EXPECT_EQ(renameFile(folder.file("UBList4.dat"), folder.file("nofolder/x.dat")),
              ErrorStatus::eFileNotFound);

    ASSERT_EQ(deleteFile(folder.file("UBList3.dat")), ErrorStatus::eOk);
    EXPECT_EQ(renameFile(folder.file("UBList4.dat"), folder.file("UBList3.dat")), ErrorStatus::eOk);
    EXPECT_EQ(folder.readBytes("UBList3.dat"), "four");
    EXPECT_FALSE(fileExists(folder.file("UBList4.dat")));

    fs::create_directory(folder.path() / "old");
    EXPECT_EQ(renameFile(folder.file("old"), folder.file("new")), ErrorStatus::eOk);
    EXPECT_TRUE(folderExists(folder.file("new")));

    EXPECT_EQ(deleteFile(folder.file("UBList3.dat")), ErrorStatus::eOk);
    EXPECT_EQ(deleteFile(folder.file("UBList3.dat")), ErrorStatus::eFileNotFound);
    EXPECT_EQ(deleteFile(folder.file("new")), ErrorStatus::eFileAccessErr);
    EXPECT_TRUE(folderExists(folder.file("new")));
}

TEST(FileSystemTest, MakeDirectoryAnswersLikeMkdir) {
    // In order: a new folder, the same again, a file in the way, no parent, under the new one.
    const std::tuple<const char*, int, int> rows[] = {{"DATA", 0, 0},
                                                      {"DATA", -1, EEXIST},
                                                      {"file.dat", -1, EEXIST},
                                                      {"missing/DATA", -1, ENOENT},
                                                      {"DATA/sub", 0, 0}};
    TestTempFolder folder;
    folder.writeBytes("file.dat", "");
    for (const auto& [path, result, error] : rows) {
        errno = 0;
        EXPECT_EQ(makeDirectory(folder.file(path)), result) << path;
        EXPECT_EQ(errno, error) << path;
    }
    EXPECT_TRUE(folderExists(folder.file("DATA/sub")));
}

}  // namespace
}  // namespace cad::sys
