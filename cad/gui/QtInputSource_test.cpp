// The GUI's input: commands typed at the prompt run from the event loop; a command's request
// waits in a nested loop for a typed answer, a menu's macro or a queued string; closing the
// window ends every wait.
#include "cad/gui/QtInputSource.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "cad/app/Application.h"
#include "cad/ed/ResultCodes.h"
#include "cad/gui/TestApplication.h"

namespace cad::gui {
namespace {

class QtInputSourceTest : public testing::Test {
protected:
    void SetUp() override {
        app_.documentManager().appContextNewDocument();
        // ASK waits for a number; its answer code and value are kept.
        app_.commandStack().addCommand("TEST", "ASK", "ASK", 0, [this] {
            code_ = app_.editor().getInteger("\nNumber: ", value_);
        });
        QObject::connect(&input_, &QtInputSource::waiting, &input_, [this] {
            if (auto action = std::exchange(onWait_, nullptr)) action();
        });
    }
    // Runs `action` once, when the next request is about to wait.
    void whileWaiting(std::function<void()> action) { onWait_ = std::move(action); }
    void runEvents() { QCoreApplication::processEvents(); }

    QApplication& qt_ = testApplication();
    app::Application app_;
    QtInputSource input_{app_};
    int code_ = 0;
    int value_ = 0;
    std::function<void()> onWait_;
};

TEST_F(QtInputSourceTest, TheWaitingRequestTakesWhatArrives) {
    const struct {
        const char* name;
        std::function<void()> arrives;
        int code;
        int value;
    } rows[] = {
        {"typed answer", [this] { input_.submitLine("42"); }, ed::RTNORM, 42},
        {"Esc", [this] { input_.submitCancel(); }, ed::RTCAN, 0},
        {"menu macro", [this] { input_.typeText("7\n"); }, ed::RTNORM, 7},
        {"queued Esc",
         [this] {
             app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(),
                                                        "\x03");
         },
         ed::RTCAN, 0},
    };
    for (const auto& row : rows) {
        value_ = 0;
        input_.submitLine("ASK");
        whileWaiting(row.arrives);
        runEvents();
        EXPECT_EQ(code_, row.code) << row.name;
        if (row.code == ed::RTNORM) EXPECT_EQ(value_, row.value) << row.name;
        EXPECT_FALSE(input_.isWaiting()) << row.name;
    }
}

TEST_F(QtInputSourceTest, AQueuedStringRunsAtThePromptFromTheEventLoop) {
    app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(), "ASK\n5\n");
    EXPECT_EQ(code_, 0);  // not from inside sendStringToExecute
    runEvents();
    EXPECT_EQ(code_, ed::RTNORM);
    EXPECT_EQ(value_, 5);
}

TEST_F(QtInputSourceTest, ShutdownEndsTheWaitAndEveryLaterOne) {
    input_.submitLine("ASK");
    whileWaiting([this] { input_.shutdown(); });
    runEvents();
    EXPECT_EQ(code_, ed::RTCAN);
    EXPECT_EQ(input_.next({}).kind, ed::InputEvent::Kind::End);
}

}  // namespace
}  // namespace cad::gui
