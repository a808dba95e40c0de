// The GUI's input: what the user types on the command line, the menus' macros and the command
// strings queued to documents. At the command prompt typed text runs at once; while a command
// waits for input, next() spins a nested event loop until the user answers, so a command's
// blocking requests (points, numbers, keywords, Enter, Esc) work as they do at a script.
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <string>

#include "cad/ed/InputSource.h"

class QEventLoop;

namespace cad::app {
class Application;
}

namespace cad::gui {

class QtInputSource : public QObject, public ed::InputSource {
    Q_OBJECT
public:
    // Becomes the editor's input source and hears of command strings queued to documents.
    explicit QtInputSource(app::Application& application, QObject* parent = nullptr);
    ~QtInputSource() override;

    ed::InputEvent next(const ed::InputRequest& request) override;
    bool isWaiting() const { return loop_ != nullptr; }

public slots:
    // A line typed on the command line ("" is Enter alone): answers the waiting request, or
    // is run at the command prompt.
    void submitLine(const QString& line);
    // Esc on the command line.
    void submitCancel();
    // A click (pick) or a mouse move in the view, in drawing units. A click answers the
    // waiting request; moves are samples for a drag and are dropped otherwise.
    void submitPointer(bool pick, double x, double y, bool shift);
    // Text typed as a whole, as a menu's macro is ("\x03" is Esc, "\n" Enter).
    void typeText(const std::string& text);
    // The window closes: the waiting request and every later one get End.
    void shutdown();

signals:
    // A request is about to wait for the user; a handler may answer it at once.
    void waiting(const QString& prompt);
    // The same, with all the view needs to know of it (base point, kind).
    void requestStarted(const cad::ed::InputRequest& request);
    // The request has its answer, or the wait ended.
    void requestEnded();
    // The command prompt is back after commands ran: views show what they did.
    void idle();

private:
    // Runs typed and queued text at the command prompt from the event loop, unless a command
    // is running: then the text waits for the command's next request, or for the prompt.
    // A timer rather than a posted call: a command's nested loop started from a posted
    // event would not see the events posted before it.
    void schedule();
    void runPending();
    // Ends the wait without an answer, so the editor reads the text typed meanwhile.
    void wake();
    void answer(ed::InputEvent event);

    app::Application& app_;
    std::deque<ed::InputEvent> answers_;
    ed::InputRequest::Kind waitingFor_ = ed::InputRequest::Kind::Command;
    QEventLoop* loop_ = nullptr;
    QTimer runTimer_;
    bool shutDown_ = false;
};

}  // namespace cad::gui
