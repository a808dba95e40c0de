// A library drawing changed by two programs at once, each a real process: the one holding the
// lock is named to the other, which may still read the drawing; a save over a file that
// changed since it was read (by a program ignoring the lock) is refused; and in both cases the
// refused change is kept in a recovery copy beside the drawing.
#include "vantor/store/LockedLibraryDrawing.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <vector>

#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/TestLibrary.h"

namespace vantor {
namespace {

using cad::ErrorStatus;
using WhenHeld = LockedLibraryDrawing::WhenHeld;

// A process of its own running `body`, which talks with the test one character at a time and
// answers its exit code.
class Child {
public:
    template <class Body>
    explicit Child(Body body) {
        int down[2];
        int up[2];
        EXPECT_EQ(::pipe(down), 0);
        EXPECT_EQ(::pipe(up), 0);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::close(down[1]);
            ::close(up[0]);
            in_ = down[0];
            out_ = up[1];
            ::_exit(body(*this));
        }
        ::close(down[0]);
        ::close(up[1]);
        in_ = up[0];
        out_ = down[1];
    }
    ~Child() {
        ::close(in_);
        ::close(out_);
        if (pid_ > 0 && !waited_) ::waitpid(pid_, nullptr, 0);
    }

    void send(char c) { EXPECT_EQ(::write(out_, &c, 1), 1); }
    char receive() {
        char c = 0;
        return ::read(in_, &c, 1) == 1 ? c : '\0';
    }
    int wait() {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        waited_ = true;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    pid_t pid() const { return pid_; }

private:
    pid_t pid_ = -1;
    int in_ = -1;
    int out_ = -1;
    bool waited_ = false;
};

// A change anyone can make and find again: a dictionary under the named-objects dictionary.
void change(cad::db::Database& db, const std::string& key) {
    testing_support::addDictionary(db.namedObjectsDictionaryId(), key);
}

bool holds(const std::string& path, const std::string& key) {
    auto db = openLibraryDrawing(path);
    return db && !dictionaryAtPath(*db, {key}).isNull();
}

class LockedDrawing : public testing::Test {
protected:
    LockedDrawing() : path(folder.file("Bolts.dxf")), wait(cad::sys::FileLock::defaultWait()) {
        cad::db::Database db;
        EXPECT_EQ(db.saveAs(path), ErrorStatus::eOk);
        cad::sys::FileLock::setDefaultWait(std::chrono::milliseconds(50));
    }
    ~LockedDrawing() override { cad::sys::FileLock::setDefaultWait(wait); }

    cad::sys::TestTempFolder folder;
    std::string path;
    std::chrono::milliseconds wait;
    cad::app::ScriptedDialogs dialogs;
};

TEST_F(LockedDrawing, AnotherProcessHoldingItIsNamedAndTheDrawingOpensReadOnly) {
    Child holder([&](Child& self) {
        cad::app::ScriptedDialogs quiet;
        LockedLibraryDrawing held;
        if (held.open(path, quiet, WhenHeld::Refuse) != ErrorStatus::eOk) return 1;
        self.send('h');
        self.receive();
        return 0;
    });
    ASSERT_EQ(holder.receive(), 'h');
    const auto who = cad::sys::FileLock::readHolder(cad::sys::FileLock::lockPathFor(path));
    ASSERT_TRUE(who);
    EXPECT_EQ(who->pid, holder.pid());
    const std::string named = who->user + "님이 " + who->machine + "에서 ";

    {
        SCOPED_TRACE("a change is refused, naming who holds the drawing");
        LockedLibraryDrawing drawing;
        EXPECT_EQ(drawing.open(path, dialogs, WhenHeld::Refuse), ErrorStatus::eLockViolation);
        EXPECT_FALSE(drawing.isOpen());
        ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "파일 사용 중");
        EXPECT_NE(dialogs.messageBoxes()[0].text.find("\"" + path + "\"\n이 도면은 " + named),
                  std::string::npos)
            << dialogs.messageBoxes()[0].text;
        EXPECT_NE(dialogs.messageBoxes()[0].text.find("부터 고치고 있습니다."), std::string::npos);
    }
    dialogs.clearCalls();
    {
        SCOPED_TRACE("read-only: read, and every save kept beside the drawing instead");
        LockedLibraryDrawing drawing;
        EXPECT_EQ(drawing.open(path, dialogs, WhenHeld::ReadOnly), ErrorStatus::eOk);
        ASSERT_TRUE(drawing.isOpen());
        EXPECT_TRUE(drawing.isReadOnly());
        EXPECT_NE(drawing.readOnlyReason().find(named), std::string::npos);
        ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "읽기 전용");
        EXPECT_NE(dialogs.messageBoxes()[0].text.find(named), std::string::npos);

        change(drawing.database(), "CHANGE_B");
        EXPECT_EQ(drawing.save(dialogs, "-"), ErrorStatus::eLockViolation);
        const std::string first = drawing.recoveryPath();
        EXPECT_EQ(drawing.save(dialogs, "-"), ErrorStatus::eLockViolation);
        const std::string second = drawing.recoveryPath();
        // Two refusals in one second keep two copies.
        EXPECT_NE(first, second);
        EXPECT_TRUE(holds(first, "CHANGE_B"));
        EXPECT_TRUE(holds(second, "CHANGE_B"));
        EXPECT_EQ(first.rfind(folder.file("Bolts.recovered-"), 0), 0u) << first;
        EXPECT_EQ(first.substr(first.size() - 4), ".dxf");
        EXPECT_FALSE(holds(path, "CHANGE_B"));
        ASSERT_EQ(dialogs.messageBoxes().size(), 3u);
        EXPECT_NE(dialogs.messageBoxes()[1].text.find("\"" + first + "\""), std::string::npos);
        EXPECT_EQ(drawing.database().fileName(), path);
    }
    holder.send('q');
    EXPECT_EQ(holder.wait(), 0);
}

TEST_F(LockedDrawing, TwoProcessesSavingAtOnceKeepBothChanges) {
    // Ours reads under the lock and saves when told; its outcome goes to a file.
    const std::string report = folder.file("report");
    Child ours([&](Child& self) {
        cad::app::ScriptedDialogs quiet;
        LockedLibraryDrawing drawing;
        if (drawing.open(path, quiet, WhenHeld::Refuse) != ErrorStatus::eOk) return 1;
        change(drawing.database(), "CHANGE_A");
        self.send('r');
        self.receive();
        const ErrorStatus saved = drawing.save(quiet, "-");
        std::ofstream out(report, std::ios::binary);
        out << static_cast<int>(saved) << '\0' << drawing.recoveryPath() << '\0';
        for (const auto& box : quiet.messageBoxes()) out << box.title << '\0' << box.text << '\0';
        return 0;
    });
    ASSERT_EQ(ours.receive(), 'r');
    // The other program ignores the lock, as the CAD window's own save of the drawing does.
    Child other([&](Child&) {
        cad::db::Database db(false, true);
        if (db.readDwgFile(path) != ErrorStatus::eOk) return 1;
        change(db, "CHANGE_B");
        return db.save() == ErrorStatus::eOk ? 0 : 2;
    });
    ASSERT_EQ(other.wait(), 0);
    ours.send('s');
    ASSERT_EQ(ours.wait(), 0);

    std::ifstream in(report, std::ios::binary);
    std::vector<std::string> fields;
    for (std::string field; std::getline(in, field, '\0');) fields.push_back(field);
    ASSERT_EQ(fields.size(), 4u);
    EXPECT_EQ(fields[0], std::to_string(static_cast<int>(ErrorStatus::eLockViolation)));
    const std::string& recovery = fields[1];
    EXPECT_EQ(fields[2], "저장 에러");
    EXPECT_EQ(fields[3],
              "\"" + path +
                  "\"\n이 도면을 읽은 뒤에 다른 프로그램이 파일을 바꾸었습니다. 덮어쓰면 그 "
                  "변경이 없어지므로 저장하지 않았습니다.\n바꾼 내용은 복구 파일에 "
                  "저장했습니다:\n\"" +
                  recovery + "\"\n도면을 다시 읽은 뒤 복구 파일을 보고 다시 고치십시오.");
    EXPECT_TRUE(holds(path, "CHANGE_B"));
    EXPECT_FALSE(holds(path, "CHANGE_A"));
    EXPECT_TRUE(holds(recovery, "CHANGE_A"));
}

TEST_F(LockedDrawing, SavesFollowOnlyTheirOwnWrites) {
    LockedLibraryDrawing drawing;
    ASSERT_EQ(drawing.open(path, dialogs, WhenHeld::Refuse), ErrorStatus::eOk);
    folder.writeBytes("bolts.vnf", "stale");
    change(drawing.database(), "FIRST");
    EXPECT_EQ(drawing.save(dialogs, "-"), ErrorStatus::eOk);
    EXPECT_FALSE(std::filesystem::exists(folder.file("bolts.vnf")));  // the tree cache goes
    // The file is now our own save: a second change in the same session goes in too.
    change(drawing.database(), "SECOND");
    EXPECT_EQ(drawing.save(dialogs, "-"), ErrorStatus::eOk);
    EXPECT_TRUE(holds(path, "SECOND"));
    EXPECT_TRUE(dialogs.messageBoxes().empty());

    // A rewrite that keeps the size and the modification time is still seen.
    const auto written = std::filesystem::last_write_time(path);
    const std::string bytes = folder.readBytes("Bolts.dxf");
    folder.writeBytes("Bolts.dxf", bytes);
    std::filesystem::last_write_time(path, written);
    change(drawing.database(), "THIRD");
    EXPECT_EQ(drawing.save(dialogs, "-"), ErrorStatus::eLockViolation);
    EXPECT_TRUE(holds(drawing.recoveryPath(), "THIRD"));
}

}  // namespace
}  // namespace vantor
