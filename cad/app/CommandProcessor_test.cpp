// The command processor: queued strings run as typed, names by local or global name, answers
// taken from the same text, echo, repeat on Enter, the pick-first set, and the editor reactors.
#include "cad/app/CommandProcessor.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "cad/app/Application.h"
#include "cad/db/Database.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/ScriptInputSource.h"

namespace cad::app {
namespace {

struct CommandLog : ed::EditorReactor {
    std::vector<std::string> events;
    void commandWillStart(const std::string& n) override { events.push_back("start " + n); }
    void commandEnded(const std::string& n) override { events.push_back("end " + n); }
    void commandCancelled(const std::string& n) override { events.push_back("cancel " + n); }
    void commandFailed(const std::string& n) override { events.push_back("fail " + n); }
    void unknownCommand(const std::string& n) override { events.push_back("unknown " + n); }
};

class ProcessorTest : public testing::Test {
protected:
    ProcessorTest() {
        app_.documentManager().appContextNewDocument();
        app_.editor().setInputSource(&script_);
        app_.editor().addReactor(&log_);
        app_.commandStack().addCommand("T", "ASK", "묻기", 0, [this] {
            ed::Editor& editor = app_.editor();
            ge::Point3d p;
            std::string name;
            if (editor.getPoint("\nPoint: ", p) != ed::RTNORM) return;
            if (editor.getString("\nName: ", name, true) != ed::RTNORM) return;
            answers_.push_back(std::to_string(int(p.x)) + "," + std::to_string(int(p.y)) + " " +
                               name);
        });
        app_.commandStack().addCommand("T", "THROW", "THROW", 0,
                                       [] { throw std::runtime_error("broken"); });
    }
    ~ProcessorTest() override { app_.editor().removeReactor(&log_); }
    Document* doc() { return app_.documentManager().curDocument(); }
    std::string shown() { return app_.editor().commandLine().text(); }

    Application app_;
    ed::ScriptInputSource script_;
    CommandLog log_;
    std::vector<std::string> answers_;
};

TEST_F(ProcessorTest, QueuedStringRunsAsTypedWithItsAnswers) {
    app_.documentManager().sendStringToExecute(doc(), "_ASK 1,2 부품 A\n");
    app_.commandProcessor().runPending();
    EXPECT_EQ(answers_, std::vector<std::string>{"1,2 부품 A"});
    EXPECT_EQ(shown(), "Command: _ASK\nPoint: 1,2\nName: 부품 A\nCommand: ");
    EXPECT_EQ(log_.events, (std::vector<std::string>{"start ASK", "end ASK"}));
}

TEST_F(ProcessorTest, LocalNamesWithoutUnderscoreGlobalNamesWith) {
    script_ = ed::ScriptInputSource({"3,4", "이름"});
    app_.documentManager().sendStringToExecute(doc(), "ASK\n_묻기\n묻기\n", true, false, false);
    app_.commandProcessor().runPending();
    EXPECT_EQ(answers_, std::vector<std::string>{"3,4 이름"});
    EXPECT_NE(shown().find("\nUnknown command \"ASK\".  Press F1 for help."), std::string::npos);
    EXPECT_NE(shown().find("\nUnknown command \"_묻기\".  Press F1 for help."), std::string::npos);
    // Not echoed: the prompts stand alone, the script's answers do show.
    EXPECT_NE(shown().find("\nCommand: \nPoint: 3,4"), std::string::npos) << shown();
}

TEST_F(ProcessorTest, EnterRepeatsAndEscCancels) {
    script_ = ed::ScriptInputSource({"_ASK", "1,1", "a", "", "<esc>", "", "2,2", "b"});
    app_.commandProcessor().run();
    EXPECT_EQ(answers_, (std::vector<std::string>{"1,1 a", "2,2 b"}));
    EXPECT_EQ(log_.events, (std::vector<std::string>{"start ASK", "end ASK", "start ASK",
                                                     "cancel ASK", "start ASK", "end ASK"}));
}

TEST_F(ProcessorTest, FailuresAndUnknownNamesAreReported) {
    app_.commandProcessor().execute("THROW");
    EXPECT_FALSE(app_.commandProcessor().execute("nope"));
    EXPECT_NE(shown().find("\nCommand THROW failed: broken"), std::string::npos);
    EXPECT_EQ(log_.events, (std::vector<std::string>{"start THROW", "fail THROW", "unknown NOPE"}));
    EXPECT_TRUE(app_.documentManager().isQuiescent(doc()));
}

TEST_F(ProcessorTest, StringsWaitForTheirDocument) {
    Document* first = doc();
    app_.documentManager().appContextNewDocument();
    Document* second = doc();
    app_.documentManager().sendStringToExecute(first, "_ASK 5,5 x\n", false);
    app_.commandProcessor().runPending();
    EXPECT_TRUE(answers_.empty());
    EXPECT_EQ(first->queuedStringCount(), 1u);
    app_.documentManager().activateDocument(first);
    app_.commandProcessor().runPending();
    EXPECT_EQ(answers_, std::vector<std::string>{"5,5 x"});
    app_.documentManager().sendStringToExecute(second, "_ASK 6,6 y\n");  // activates it
    EXPECT_EQ(app_.documentManager().mdiActiveDocument(), second);
    app_.commandProcessor().runPending();
    EXPECT_EQ(answers_.size(), 2u);
}

TEST_F(ProcessorTest, PickFirstSetKeptOnlyForCommandsThatUseIt) {
    std::vector<std::size_t> seen;
    auto probe = [&] { seen.push_back(app_.editor().pickfirst().size()); };
    app_.commandStack().addCommand("T", "USES", "USES", ACRX_CMD_USEPICKSET, probe);
    app_.commandStack().addCommand("T", "IGNORES", "IGNORES", ACRX_CMD_MODAL, probe);
    db::ObjectId someId = doc()->database()->modelSpaceId();
    app_.editor().setPickfirst({someId});
    app_.commandProcessor().execute("USES");
    app_.editor().setPickfirst({someId});
    app_.commandProcessor().execute("IGNORES");
    EXPECT_EQ(seen, (std::vector<std::size_t>{1, 0}));
}

TEST_F(ProcessorTest, HostCommandsReadTheirAnswersToo) {
    app_.documentManager().sendStringToExecute(
        doc(), "SETVAR LIMCHECK 1\nSETVAR VIEWSIZE\nSETVAR NOSUCH\n");
    app_.commandProcessor().runPending();
    ed::SysVarValue value;
    app_.editor().getVar("LIMCHECK", value);
    EXPECT_EQ(std::get<int>(value), 1);
    EXPECT_NE(shown().find("\nVIEWSIZE = 297.0000 (read only)"), std::string::npos);
    EXPECT_NE(shown().find("\nUnknown variable name \"NOSUCH\"."), std::string::npos);
}

}  // namespace
}  // namespace cad::app
