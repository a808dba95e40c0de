// The file lock between real processes: writers serialised, a lock left by a dead process
// taken over, a live holder refusing after the wait and named in the message.
#include "cad/sys/FileLock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "cad/sys/AtomicFile.h"
#include "cad/sys/FileError.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Runs `body` in a forked process, which exits with its answer; the parent gets the pid.
pid_t forkRunning(const std::function<int()>& body) {
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(body());
    return pid;
}

int exitCodeOf(pid_t pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A pid that named a process a moment ago and names none now.
pid_t deadPid() {
    const pid_t pid = forkRunning([] { return 0; });
    exitCodeOf(pid);
    return pid;
}

std::string hostName() {
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    return name;
}

std::vector<std::string> entriesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// One read-change-write of a counter file, as the module's lists are changed.
int incrementUnderLock(const std::string& path) {
    FileLock lock;
    if (lock.acquire(path, 20s) != ErrorStatus::eOk) return 1;
    std::string text = readFile(path);
    const int value = text.empty() ? 0 : std::stoi(text);
    // Long enough that an unserialised second writer would read the old value.
    ::usleep(200);
    AtomicFile file;
    if (file.open(path) != ErrorStatus::eOk ||
        file.write(std::to_string(value + 1)) != ErrorStatus::eOk ||
        file.commit() != ErrorStatus::eOk)
        return 2;
    return 0;
}

TEST(FileLockTest, WritersInSeveralProcessesAreSerialised) {
    TestTempFolder folder;
    const std::string counter = folder.file("UBList0.dat");
    constexpr int kProcesses = 4;
    constexpr int kRounds = 40;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        children.push_back(forkRunning([&] {
            for (int i = 0; i < kRounds; ++i) {
                if (int code = incrementUnderLock(counter); code != 0) return code;
            }
            return 0;
        }));
    }
    for (pid_t child : children) EXPECT_EQ(exitCodeOf(child), 0);
    EXPECT_EQ(folder.readBytes("UBList0.dat"), std::to_string(kProcesses * kRounds));
    EXPECT_EQ(entriesIn(folder.path()), std::vector<std::string>{"UBList0.dat"})
        << "no lock file or temporary stays behind";
}

TEST(FileLockTest, TwoLocksOfOneProcessExcludeEachOther) {
    TestTempFolder folder;
    const std::string target = folder.file("Vantor.ini");
    FileLock first;
    ASSERT_EQ(first.acquire(target, 0ms), ErrorStatus::eOk);
    EXPECT_TRUE(fs::exists(first.lockPath()));
    EXPECT_EQ(first.acquire(target, 0ms), ErrorStatus::eInvalidOpenState);

    FileLock second;
    EXPECT_EQ(second.acquire(target, 30ms), ErrorStatus::eLockViolation);
    EXPECT_FALSE(second.isHeld());

    FileLock moved(std::move(first));
    EXPECT_FALSE(first.isHeld());
    moved.release();
    EXPECT_FALSE(fs::exists(FileLock::lockPathFor(target)));
    EXPECT_EQ(second.acquire(target, 0ms), ErrorStatus::eOk);
    EXPECT_TRUE(entriesIn(folder.path()).size() == 1) << "only the lock file while held";
}

// Lock files left behind as a crash leaves them: by a holder with the advisory lock (which
// went with its process) and by one on a file system without advisory locks, whose process
// id names no process any more.
struct StaleRow {
    const char* name;
    bool advisory;
};

class StaleLock : public testing::TestWithParam<StaleRow> {};

TEST_P(StaleLock, IsTakenOver) {
    TestTempFolder folder;
    const std::string target = folder.file("bolts.dxf");
    const std::string lockPath = FileLock::lockPathFor(target);
    if (GetParam().advisory) {
        // The child takes the lock and ends without releasing it, as a crash would.
        const pid_t child = forkRunning([&] {
            FileLock lock;
            if (lock.acquire(target, 0ms) != ErrorStatus::eOk) return 1;
            ::_exit(0);
        });
        ASSERT_EQ(exitCodeOf(child), 0);
    } else {
        folder.writeBytes(fs::path(lockPath).filename().string(),
                          "user=kim\nmachine=" + hostName() + "\npid=" + std::to_string(deadPid()) +
                              "\ntime=1\nlock=file\n");
    }
    ASSERT_TRUE(fs::exists(lockPath));

    FileLock lock;
    ASSERT_EQ(lock.acquire(target, 2s), ErrorStatus::eOk) << lock.message();
    const auto holder = FileLock::readHolder(lockPath);
    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->pid, ::getpid());
    lock.release();
    EXPECT_TRUE(entriesIn(folder.path()).empty()) << "the stale file went, and nothing else stays";
}

INSTANTIATE_TEST_SUITE_P(Rows, StaleLock,
                         testing::Values(StaleRow{"advisory_holder_crashed", true},
                                         StaleRow{"file_only_holder_dead", false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FileLockTest, LiveHolderIsRefusedAfterTheWaitAndNamed) {
    TestTempFolder folder;
    const std::string target = folder.file("UBTabList.dat");
    int ready[2];
    int finish[2];
    ASSERT_EQ(::pipe(ready), 0);
    ASSERT_EQ(::pipe(finish), 0);
    const pid_t child = forkRunning([&] {
        FileLock lock;
        const char answer = lock.acquire(target, 0ms) == ErrorStatus::eOk ? 'y' : 'n';
        [[maybe_unused]] auto w = ::write(ready[1], &answer, 1);
        char unused;
        [[maybe_unused]] auto r = ::read(finish[0], &unused, 1);
        return 0;
    });
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    ASSERT_EQ(answer, 'y');

    FileLock lock;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(lock.acquire(target, 300ms), ErrorStatus::eLockViolation);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 300ms) << "refused before the wait";
    const std::string& message = lock.message();
    EXPECT_NE(message.find(target), std::string::npos) << message;
    EXPECT_NE(message.find("process " + std::to_string(child)), std::string::npos) << message;
    EXPECT_NE(message.find(" on " + hostName()), std::string::npos) << message;
    EXPECT_EQ(lastFileError().text, message);

    // Let go while the second waits: it goes on with the lock.
    const pid_t waiter = forkRunning([&] {
        FileLock second;
        return second.acquire(target, 10s) == ErrorStatus::eOk ? 0 : 1;
    });
    ::usleep(50 * 1000);
    [[maybe_unused]] auto w = ::write(finish[1], "x", 1);
    EXPECT_EQ(exitCodeOf(child), 0);
    EXPECT_EQ(exitCodeOf(waiter), 0);
    for (int fd : {ready[0], ready[1], finish[0], finish[1]}) ::close(fd);
}

// Holders that cannot be judged dead: a live process of this machine, and any process of
// another machine when no advisory lock tells.
TEST(FileLockTest, HoldersThatMayBeAliveAreNotTakenOver) {
    TestTempFolder folder;
    const std::string target = folder.file("a.dxf");
    const std::string lockName = fs::path(FileLock::lockPathFor(target)).filename().string();
    for (const std::string& holder :
         {"user=lee\nmachine=" + hostName() + "\npid=" + std::to_string(::getppid()) +
              "\ntime=1\nlock=file\n",
          "user=park\nmachine=other-host.example\npid=" + std::to_string(deadPid()) +
              "\ntime=1\nlock=file\n"}) {
        folder.writeBytes(lockName, holder);
        FileLock lock;
        EXPECT_EQ(lock.acquire(target, 20ms), ErrorStatus::eLockViolation) << holder;
        EXPECT_EQ(folder.readBytes(lockName), holder) << "another's lock file is left alone";
    }
}

TEST(FileLockTest, AFolderThatRefusesTheLockFileIsReportedWithTheReason) {
    TestTempFolder folder;
    FileLock lock;
    EXPECT_EQ(lock.acquire(folder.file("missing/UBList0.dat"), 0ms), ErrorStatus::eFileNotFound);
    EXPECT_NE(lock.message().find("No such file or directory"), std::string::npos)
        << lock.message();
    EXPECT_NE(lock.message().find(folder.file("missing/UBList0.dat")), std::string::npos);
}

}  // namespace
}  // namespace cad::sys
