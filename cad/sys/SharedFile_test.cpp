// Share modes: a deny-write open refuses other deny-write opens, in this process and in
// another, for exactly as long as it lives; deny-none opens always go through.
#include "cad/sys/SharedFile.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

using namespace std::string_literals;

TEST(SharedFileTest, DenyWriteHolderRefusesOtherDenyWriteOpensInThisProcess) {
    TestTempFolder folder;
    folder.writeBytes("lib.dwg", "drawing");
    const std::string path = folder.file("lib.dwg");

    // A deny-none reader does not stand in the way of a deny-write open.
    SharedFile reader;
    ASSERT_EQ(reader.open(path, ShareMode::DenyNone), ErrorStatus::eOk);
    SharedFile holder;
    ASSERT_EQ(holder.open(path, ShareMode::DenyWrite), ErrorStatus::eOk);

    SharedFile second;
    EXPECT_EQ(second.open(path, ShareMode::DenyWrite), ErrorStatus::eFileAccessErr);
    EXPECT_FALSE(second.isOpen());
    EXPECT_EQ(second.open(path, ShareMode::DenyNone), ErrorStatus::eOk);

    // The lock moves with the object and goes with its last owner.
    {
        SharedFile moved(std::move(holder));
        SharedFile third;
        EXPECT_EQ(third.open(path, ShareMode::DenyWrite), ErrorStatus::eFileAccessErr);
    }
    SharedFile fourth;
    EXPECT_EQ(fourth.open(path, ShareMode::DenyWrite), ErrorStatus::eOk);
    fourth.close();
    EXPECT_FALSE(fourth.isOpen());
    EXPECT_EQ(SharedFile().open(path, ShareMode::DenyWrite), ErrorStatus::eOk);
}

TEST(SharedFileTest, DenyWriteHolderInAnotherProcess) {
    TestTempFolder folder;
    folder.writeBytes("lib.dwg", "drawing");
    const std::string path = folder.file("lib.dwg");

    int ready[2];
    int release[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(release), 0);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The child holds the file until the parent writes to the release pipe or exits.
        ::close(ready[0]);
        ::close(release[1]);
        SharedFile held;
        char answer = held.open(path, ShareMode::DenyWrite) == ErrorStatus::eOk ? 'y' : 'n';
        ssize_t ignored = ::write(ready[1], &answer, 1);
        ignored = ::read(release[0], &answer, 1);
        (void)ignored;
        ::_exit(0);
    }
    // With only the other ends open here, a child that dies early gives end of file, not a hang.
    ::close(ready[1]);
    ::close(release[0]);
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');

    SharedFile denyWrite;
    EXPECT_EQ(denyWrite.open(path, ShareMode::DenyWrite), ErrorStatus::eFileAccessErr);
    SharedFile denyNone;
    EXPECT_EQ(denyNone.open(path, ShareMode::DenyNone), ErrorStatus::eOk);
    std::string content;
    EXPECT_EQ(denyNone.readAll(content), ErrorStatus::eOk);
    EXPECT_EQ(content, "drawing");

    ASSERT_EQ(::write(release[1], "x", 1), 1);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    ::close(ready[0]);
    ::close(release[1]);

    EXPECT_EQ(denyWrite.open(path, ShareMode::DenyWrite), ErrorStatus::eOk);
}

TEST(SharedFileTest, ReadAllGivesTheBytesAsTheyAre) {
    TestTempFolder folder;
    const std::string bytes = "a\r\nb\x1A\0c"s + std::string(200 * 1024, 'z');
    folder.writeBytes("lib.dwg", bytes);
    SharedFile file;
    EXPECT_EQ(file.size(), -1);
    std::string out = "stale";
    EXPECT_EQ(file.readAll(out), ErrorStatus::eInvalidOpenState);
    ASSERT_EQ(file.open(folder.file("lib.dwg"), ShareMode::DenyWrite), ErrorStatus::eOk);
    EXPECT_EQ(file.size(), static_cast<std::int64_t>(bytes.size()));
    EXPECT_EQ(file.readAll(out), ErrorStatus::eOk);
    EXPECT_EQ(out, bytes);
    EXPECT_EQ(file.readAll(out), ErrorStatus::eOk);
    EXPECT_EQ(out, bytes) << "a second read starts from the beginning again";
    EXPECT_EQ(file.open(folder.file("lib.dwg"), ShareMode::DenyNone),
              ErrorStatus::eInvalidOpenState);
}

TEST(SharedFileTest, OpenRefusalsAndAnEmptyFile) {
    TestTempFolder folder;
    std::filesystem::create_directory(folder.path() / "sub");
    folder.writeBytes("empty.dwg", "");
    SharedFile file;
    for (ShareMode mode : {ShareMode::DenyWrite, ShareMode::DenyNone})
        EXPECT_EQ(file.open(folder.file("missing.dwg"), mode), ErrorStatus::eFileNotFound);
    EXPECT_EQ(file.open(folder.file("sub"), ShareMode::DenyNone), ErrorStatus::eFileAccessErr);
    EXPECT_EQ(file.open(folder.file("empty.dwg"), static_cast<ShareMode>(16)),
              ErrorStatus::eInvalidInput);
    ASSERT_EQ(file.open(folder.file("empty.dwg"), ShareMode::DenyNone), ErrorStatus::eOk);
    EXPECT_EQ(file.size(), 0);
}

}  // namespace
}  // namespace cad::sys
