// vantor-cad run headless on scripts with the module loaded: the banner, loading twice and
// unloading, the open-drawing command in both document modes, the command guard's messages,
// the insertion command's hand-over, and what the reactors tell the library window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using vantor::test::shellQuoted;

using Outcome = vantor::test::ExternalRun;  // `output` is standard output only here

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

class Host : public testing::Test {
protected:
    // Runs the host headless on the script's lines with the module folder (settings, menu)
    // in a temporary folder; standard error is left out of `out`.
    Outcome run(const std::vector<std::string>& lines,
                const std::vector<std::string>& options) const {
        std::string script;
        for (const std::string& line : lines) script += line + "\n";
        moduleFolder_.writeBytes("input.script", script);
        std::string command = "VANTOR_MODULE_DIR=" + shellQuoted(moduleFolder_.path().string()) +
                              " " + shellQuoted(VANTOR_CAD) + " --headless";
        for (const std::string& option : options) command += " " + shellQuoted(option);
        return vantor::test::runCommand("(" + command + " --script " +
                                        shellQuoted(moduleFolder_.file("input.script")) + " 2>" +
                                        shellQuoted(moduleFolder_.file("stderr")) + ")");
    }
    // Standard output of a run with the test copy of the module.
    std::string runTestModule(const std::vector<std::string>& lines,
                              std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"--load", VANTOR_TEST_MODULE});
        return run(lines, options).output;
    }
    void installMenu() const {
        std::filesystem::copy_file(std::string(VANTOR_SOURCE_DIR) + "/data/Vantor.mns",
                                   moduleFolder_.file("Vantor.mns"));
    }
    std::string drawing(const std::string& name) const {
        std::string path = drawings_.file(name);
        cad::db::Database(true).saveAs(path);
        return path;
    }

    cad::sys::TestTempFolder moduleFolder_;
    cad::sys::TestTempFolder drawings_;
};

TEST_F(Host, LoadingPrintsTheBannerAndLoadsThePartialMenuOnce) {
    installMenu();
    std::filesystem::create_symlink(VANTOR_MODULE, moduleFolder_.file("linked.so"));
    const auto [exitCode, out] =
        run({"LOADMODULE", moduleFolder_.file("linked.so"), "VNK", "MENUUNLOAD", "Vantor",
             "UNLOADMODULE", "vantor", "LOADMODULE", VANTOR_MODULE, "MENUUNLOAD", "Vantor", "QUIT"},
            {"--load", VANTOR_MODULE});
    EXPECT_EQ(exitCode, 0);
    EXPECT_THAT(out, testing::StartsWith("\nVantor V" VANTOR_VERSION_TEXT "\nCommand: "));
    // The same file under another name is the module already loaded: no second banner, and
    // its commands are there once.
    EXPECT_THAT(out, HasSubstr("linked.so\" is loaded already."));
    EXPECT_EQ(occurrences(out, "\nVantor Ver." VANTOR_VERSION_TEXT), 1u);
    // The menu came with the first load (so it unloads without complaint), and the reload
    // after the unload loads it again rather than finding a stale group.
    EXPECT_THAT(out, Not(HasSubstr("is not loaded")));
    EXPECT_EQ(occurrences(out, "\nVantor V" VANTOR_VERSION_TEXT), 2u);
}

TEST_F(Host, UnloadRemovesTheCommandsAndWritesEveryKeyOfTheSettings) {
    const auto [exitCode, out] =
        run({"UNLOADMODULE", "libvantor.so", "VNK", "QUIT"}, {"--load", VANTOR_MODULE});
    EXPECT_EQ(exitCode, 0);
    EXPECT_THAT(out, HasSubstr("libvantor.so\" unloaded.\nCommand: VNK\nUnknown command"));
    const std::string ini = moduleFolder_.readBytes("Vantor.ini");
    for (const char* key : {"[OPTION]\r\nOption=3073\r\n", "[SETTING]\r\nBomDlg Width=800\r\n",
                            "Label_KName=", "TodayMode=0\r\n", "[COLUMNS]\r\nWidth_KName=130\r\n",
                            "Width2_User6=70\r\n"})
        EXPECT_THAT(ini, HasSubstr(key));
    EXPECT_EQ(occurrences(ini, "\r\n"), 69u);  // 3 sections, 5 + 33 + 28 keys
}

TEST_F(Host, LoadFailuresEndTheRunWithAnError) {
    const Outcome atStart = run({"VNK"}, {"--load", drawings_.file("missing.so")});
    EXPECT_EQ(atStart.exitCode, 1);
    EXPECT_THAT(atStart.output, HasSubstr("Cannot find module"));
    EXPECT_THAT(atStart.output, Not(HasSubstr("Command: VNK")));

    const Outcome inScript = run({"LOADMODULE", drawings_.file("missing.so"), "VNK"}, {});
    EXPECT_EQ(inScript.exitCode, 1);
    EXPECT_THAT(inScript.output, Not(HasSubstr("Command: VNK")));
}

TEST_F(Host, SingleDocumentModeOpensOnlyTheFirstQueuedDrawing) {
    const std::string a = drawing("a.dxf");
    const std::string b = drawing("b.dxf");
    const std::string out = runTestModule(
        {"VNTQUEUE", a, b, "", "UBLO", "VNTFRAME", "SETVAR", "DWGNAME", "QUIT"}, {"--sdi", "1"});
    EXPECT_THAT(out, HasSubstr("\nOpened a document synchronously:" + a + ".\n"));
    EXPECT_THAT(out, Not(HasSubstr("synchronously:" + b)));
    EXPECT_THAT(out, HasSubstr("VNTFRAME\n[window] closed\n"));  // no report to the frame
    EXPECT_THAT(out, HasSubstr("DWGNAME = \"a.dxf\""));
}

TEST_F(Host, MultiDocumentModeOpensEveryDrawingAndComesBackToTheStart) {
    const std::string a = drawing("a.dxf");
    const std::string b = drawing("b.dxf");
    const std::string missing = drawings_.file("missing.dxf");
    const std::string out = runTestModule({"UBLO", "VNTFRAME", "VNTQUEUE", a, missing, b, "",
                                           "UBLO", "VNTFRAME", "SETVAR", "DWGNAME", "QUIT"});
    // With nothing queued, UBLO does nothing.
    EXPECT_THAT(out, HasSubstr("Command: UBLO\nCommand: VNTFRAME\n[window] closed\n"));
    EXPECT_THAT(out, HasSubstr("\nOpened a document synchronously:" + a + ".\n"));
    EXPECT_THAT(out, HasSubstr("\nOpened a document synchronously:" + b + ".\n"));
    EXPECT_THAT(out, HasSubstr("Cannot open \"" + missing));
    EXPECT_THAT(out, HasSubstr("[frame] post 1051 3 1\n"));
    EXPECT_THAT(out, HasSubstr("DWGNAME = \"Drawing1.dwg\""));
}

TEST_F(Host, TheGuardRefusesWhileTheHostOrAnInsertionIsBusy) {
    const std::string out = runTestModule({"VNTGUARD", "QUIT"});
    EXPECT_THAT(out,
                HasSubstr("\n[명령 중첩 에러] AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 "
                          "종료하신 후 다시 시도해 주십시오.\n[guard] in a command: refused"
                          "\n[guard] at the prompt: queued"
                          "\n[INSERT PROCESSING] 현재 명령실행 중입니다."
                          "\n[guard] while inserting: refused\n"));
    // The one string queued runs once the command is over.
    EXPECT_EQ(occurrences(out, "_UBLI"), 1u);
}

TEST_F(Host, InsertionHandsOverLockedAndBusyByInsertMode) {
    const std::string out = runTestModule({"VNTMODE", "0", "UBLI", "VNTMODE", "1", "UBLI",
                                           "VNTMODE", "2", "UBLI", "VNTGUARD", "QUIT"});
    EXPECT_THAT(out, HasSubstr("Command: UBLI\n[placement] outcome 1, busy 1, lock 0x04"));
    EXPECT_THAT(out, HasSubstr("Command: UBLI\n[placement] outcome 0, busy 1, lock 0x04"));
    EXPECT_EQ(occurrences(out, "[placement]"), 2u);  // mode 2 places nothing
    // Busy and the lock ended with the command.
    EXPECT_THAT(out, HasSubstr("[guard] at the prompt: queued"));
}

TEST_F(Host, DocumentSwitchesReachTheOpenWindowInTheHostsOrder) {
    const std::string out =
        runTestModule({"VNTFRAME", "VNK", "VNK", "NEW", "CLOSE", "VNTFRAME", "QUIT"});
    EXPECT_THAT(out, HasSubstr("Command: VNTFRAME\n[window] closed\n"));
    EXPECT_THAT(out, HasSubstr("Command: VNTFRAME"
                               "\n[frame] create"
                               "\n[frame] post 1042 1044 0"
                               "\n[frame] bring to front"
                               "\n[frame] redraw preview"  // NEW: the old one goes
                               "\n[frame] post 1062 0 0"
                               "\n[frame] redraw preview"
                               "\n[frame] redraw preview"  // CLOSE: the new one goes
                               "\n[frame] post 1062 0 0"
                               "\n[frame] redraw preview"
                               "\n[window] open\n"));
}

TEST_F(Host, UnloadingTheLastDocumentClosesTheWindowOnlyWithSeveralDocuments) {
    for (const auto& [sdi, log] : {std::pair{"0", "\n[frame] post 16 0 0\n[window] closed\n"},
                                   std::pair{"1", "\n[frame] redraw preview\n[window] open\n"}}) {
        EXPECT_THAT(runTestModule({"VNK", "CLOSE", "VNTFRAME", "QUIT"}, {"--sdi", sdi}),
                    HasSubstr(std::string("Command: VNTFRAME\n[frame] create\n[frame] post 1042 1044 0") +
                              log))
            << "SDI " << sdi;
    }
}

}  // namespace
