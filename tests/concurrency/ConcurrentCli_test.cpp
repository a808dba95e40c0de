// Two vantor programs started together, again and again, on one module folder and one target
// drawing: every registration, window and placed part either of them reports is on disk
// afterwards, and a run that could not make its change exits 1 with a message.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "apps/vantor/CliRun.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/sys/FileLock.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/ListFile.h"

namespace {

namespace fs = std::filesystem;
using vantor::cli::testing_support::CliOutcome;
using vantor::cli::testing_support::runVantor;
using vantor::cli::testing_support::shellQuoted;

const std::string kSample = VANTOR_SOURCE_DIR "/data/samples/standard-parts.dxf";
const std::string kBolt[] = {"User data list/볼트/육각볼트", "QRB_VANTORDATA-2"};
const std::string kBoltBlock = "HB-M10X40-F";

// Edits made at the same moment were lost nearly every time before the files were locked; 100
// rounds a program make a miss of the rarer races unlikely. VANTOR_CONCURRENCY_ROUNDS runs
// fewer while working on it.
int rounds() {
    const char* text = std::getenv("VANTOR_CONCURRENCY_ROUNDS");
    return text && std::atoi(text) > 0 ? std::atoi(text) : 100;
}

// A list file whose count is 26 reads as empty (the text-mode end-of-data byte), so no list may
// reach 26 entries here, or entries would go for a reason that has nothing to do with two
// programs: registrations are spread over kListWindows windows made beforehand, and each
// program adds windows only in its first kAddingRounds rounds, then renames its own.
constexpr int kListWindows = 10;
constexpr int kAddingRounds = 7;

// What one run of the program did: which command, what it was to leave on disk, how it ended.
struct ProgramRun {
    std::string command;
    std::string item;
    int exitCode = -1;
    std::string out;
    std::string err;
};

std::string oneLine(std::string text) {
    for (char& c : text) c = c == '\n' || c == '\t' ? ' ' : c;
    return text;
}

class ConcurrentPrograms : public testing::Test {
protected:
    CliOutcome vantor(const std::vector<std::string>& args,
                      const cad::sys::TestTempFolder& scratch) const {
        return runVantor(args, scratch,
                         "VANTOR_MODULE_DIR=" + shellQuoted(module_.path().string()));
    }

    // One program's loop, run in a child process: register a drawing, add a window (later:
    // rename one it added), place a part at a point of its own; each run's outcome is written
    // to `report`, one line each.
    void programLoop(int program, const std::string& report) const {
        cad::sys::TestTempFolder scratch;
        std::ofstream out(report);
        std::vector<int> ownWindows;
        for (int i = 0; i < rounds(); ++i) {
            const std::string tag = std::to_string(program) + "-" + std::to_string(i);
            // Every tenth a real library drawing (read, its tree cache written), the others
            // paths that do not exist, which are listed as inactive.
            std::string drawing = files_.file("d" + tag + ".dxf");
            if (i % 10 == 0) fs::copy_file(kSample, drawing);
            const std::string window = std::to_string(1 + (2 * i + program) % kListWindows);
            std::vector<std::string> windowArgs = {"window", "add", "w" + tag};
            if (i >= kAddingRounds && !ownWindows.empty()) {
                const int own = ownWindows[i % ownWindows.size()];
                windowArgs = {"window", "rename", std::to_string(own), "w" + tag};
            }
            const std::string point = std::to_string(i) + "," + std::to_string(program * 1000);
            const std::vector<std::pair<std::string, std::vector<std::string>>> runs = {
                {window + "|" + drawing, {"register", window, drawing}},
                {windowArgs[1] == "add" ? "w" + tag : windowArgs[2] + "|w" + tag, windowArgs},
                {point, {"place", kSample, kBolt[0], kBolt[1], target(), "--at", point}},
            };
            for (const auto& [item, args] : runs) {
                const CliOutcome outcome = vantor(args, scratch);
                if (args[1] == "add" && outcome.exitCode == 0) {
                    // "added window N: NAME"
                    ownWindows.push_back(std::atoi(outcome.out.c_str() + 13));
                }
                const std::string command = args[0] == "window" ? args[0] + " " + args[1] : args[0];
                out << command << '\t' << item << '\t' << outcome.exitCode << '\t'
                    << oneLine(outcome.out) << '\t' << oneLine(outcome.err) << '\n';
            }
        }
    }

    std::vector<ProgramRun> readReport(const std::string& report) const {
        std::vector<ProgramRun> runs;
        std::ifstream in(report);
        for (std::string line; std::getline(in, line);) {
            std::istringstream fields(line);
            ProgramRun run;
            std::string code;
            std::getline(fields, run.command, '\t');
            std::getline(fields, run.item, '\t');
            std::getline(fields, code, '\t');
            std::getline(fields, run.out, '\t');
            std::getline(fields, run.err);
            run.exitCode = std::stoi(code);
            runs.push_back(run);
        }
        return runs;
    }

    // The insertion points of the part's references in the target's model space, as "x,y"
    // (each placing also makes a reference to the BOM mark, elsewhere).
    std::set<std::string> placedPoints() const {
        std::set<std::string> points;
        cad::db::Database db(false, true);
        EXPECT_EQ(db.readDwgFile(target()), cad::ErrorStatus::eOk) << db.lastErrorMessage();
        auto space =
            cad::db::open<cad::db::BlockTableRecord>(db.modelSpaceId(), cad::db::OpenMode::ForRead);
        for (cad::db::ObjectId id : space->entityIds()) {
            auto reference = cad::db::open<cad::db::BlockReference>(id, cad::db::OpenMode::ForRead);
            if (!reference) continue;
            auto block = cad::db::open<cad::db::BlockTableRecord>(reference->blockTableRecord(),
                                                                  cad::db::OpenMode::ForRead);
            if (!block || block->name() != kBoltBlock) continue;
            const auto& p = reference->position();
            std::ostringstream text;
            text << p.x << ',' << p.y;
            points.insert(text.str());
        }
        return points;
    }

    std::string target() const { return files_.file("plant.dxf"); }

    cad::sys::TestTempFolder module_;
    cad::sys::TestTempFolder files_;
    cad::sys::TestTempFolder reports_;
};

TEST_F(ConcurrentPrograms, EveryEditReportedDoneIsOnDisk) {
    // The windows the registrations go to, made before the two programs start.
    cad::sys::TestTempFolder scratch;
    for (int w = 1; w <= kListWindows; ++w)
        ASSERT_EQ(vantor({"window", "add", "list" + std::to_string(w)}, scratch).exitCode, 0);

    std::vector<pid_t> programs;
    for (int program = 0; program < 2; ++program) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            programLoop(program, reports_.file("report" + std::to_string(program)));
            ::_exit(0);
        }
        programs.push_back(pid);
    }
    for (pid_t pid : programs) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    // What is on disk: "window|path" per registration, the window names, the part's insertion
    // points.
    std::set<std::string> registered;
    for (int w = 1; w <= kListWindows; ++w) {
        const auto listed =
            vantor::ListFile::readAll(module_.file("DATA/UBList" + std::to_string(w) + ".dat"));
        ASSERT_TRUE(listed) << w;
        for (const std::string& path : *listed) registered.insert(std::to_string(w) + "|" + path);
    }
    const auto windows = vantor::ListFile::readAll(module_.file("DATA/UBTabList.dat"));
    ASSERT_TRUE(windows);
    const std::set<std::string> points = placedPoints();

    int done = 0;
    int refused = 0;
    std::size_t registrations = 0;
    std::size_t places = 0;
    for (int program = 0; program < 2; ++program) {
        const std::vector<ProgramRun> runs =
            readReport(reports_.file("report" + std::to_string(program)));
        ASSERT_EQ(runs.size(), 3u * rounds());
        // A window's name is the one its last successful rename gave it.
        std::map<std::string, std::string> lastName;
        for (const ProgramRun& run : runs) {
            const std::string what = run.command + " " + run.item;
            if (run.exitCode == 1) {
                ++refused;
                EXPECT_FALSE(run.err.empty()) << what << ": a failure says why";
                continue;
            }
            ASSERT_EQ(run.exitCode, 0) << what << ": " << run.err;
            ++done;
            if (run.command == "register") {
                ++registrations;
                EXPECT_TRUE(registered.count(run.item)) << what << " reported done, not on disk";
            } else if (run.command == "place") {
                ++places;
                EXPECT_TRUE(points.count(run.item)) << what << " reported done, not on disk";
            } else if (run.command == "window add") {
                // On disk under its last name: see below.
                // "added window N: NAME"
                lastName[std::to_string(std::atoi(run.out.c_str() + 13))] = run.item;
            } else {
                const std::size_t bar = run.item.find('|');
                lastName[run.item.substr(0, bar)] = run.item.substr(bar + 1);
            }
        }
        for (const auto& [position, name] : lastName) {
            ASSERT_LT(std::stoul(position), windows->size());
            EXPECT_EQ((*windows)[std::stoul(position)], name) << "window " << position;
        }
    }
    // Nothing is on disk that no run reported done, either.
    EXPECT_EQ(registered.size(), registrations);
    EXPECT_EQ(points.size(), places);
    EXPECT_EQ(windows->size(), 1u + kListWindows + 2 * std::min(kAddingRounds, rounds()))
        << "no add was refused here, so every one of them is there";
    std::cout << done << " edits done, " << refused << " refused with a message\n";
}

// A program that holds the drawing past the wait: the run says who, exits 1, changes nothing.
TEST_F(ConcurrentPrograms, AHeldDrawingIsRefusedNamingItsHolder) {
    cad::sys::TestTempFolder scratch;
    const std::vector<std::string> place = {"place",  kSample, kBolt[0], kBolt[1],
                                            target(), "--at",  "0,0"};
    ASSERT_EQ(vantor(place, scratch).exitCode, 0);
    const std::string before = files_.readBytes("plant.dxf");

    cad::sys::FileLock holder;
    ASSERT_EQ(holder.acquire(target()), cad::ErrorStatus::eOk);
    const CliOutcome refused = runVantor(
        place, scratch,
        "VANTOR_LOCK_WAIT_MS=100 VANTOR_MODULE_DIR=" + shellQuoted(module_.path().string()));
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("vantor: " + target() + " is being changed by "), std::string::npos)
        << refused.err;
    EXPECT_NE(refused.err.find("(process " + std::to_string(::getpid()) + ")"), std::string::npos)
        << refused.err;
    EXPECT_EQ(files_.readBytes("plant.dxf"), before);
}

}  // namespace
