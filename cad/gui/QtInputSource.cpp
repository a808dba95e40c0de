// The GUI's input source and the running of commands from the event loop.
#include "cad/gui/QtInputSource.h"

#include <QEventLoop>

#include "cad/app/Application.h"

namespace cad::gui {

namespace {

constexpr char kEsc = '\x03';

}  // namespace

QtInputSource::QtInputSource(app::Application& application, QObject* parent)
    : QObject(parent), app_(application) {
    runTimer_.setSingleShot(true);
    runTimer_.setInterval(0);
    connect(&runTimer_, &QTimer::timeout, this, &QtInputSource::runPending);
    app_.editor().setInputSource(this);
    app_.documentManager().setStringQueuedHandler([this](app::Document*) {
        if (isWaiting())
            wake();
        else
            schedule();
    });
}

QtInputSource::~QtInputSource() {
    app_.documentManager().setStringQueuedHandler(nullptr);
    if (app_.editor().inputSource() == this) app_.editor().setInputSource(nullptr);
}

ed::InputEvent QtInputSource::next(const ed::InputRequest& request) {
    if (answers_.empty() && !shutDown_) {
        QEventLoop loop;
        loop_ = &loop;
        waitingFor_ = request.kind;
        emit requestStarted(request);
        emit waiting(QString::fromStdString(request.prompt));
        if (answers_.empty() && !shutDown_) loop.exec();
        loop_ = nullptr;
        emit requestEnded();
    }
    if (answers_.empty()) return ed::InputEvent::end();
    ed::InputEvent event = std::move(answers_.front());
    answers_.pop_front();
    return event;
}

void QtInputSource::answer(ed::InputEvent event) {
    answers_.push_back(std::move(event));
    loop_->quit();
}

void QtInputSource::wake() {
    // A key the editor passes over: it then reads the typed-ahead and queued text first.
    answer(ed::InputEvent::key(0));
}

void QtInputSource::submitLine(const QString& line) {
    if (isWaiting()) {
        answer(ed::InputEvent::typed(line.toStdString()));
        return;
    }
    app_.editor().typeAhead(line.toStdString() + "\n");
    schedule();
}

void QtInputSource::submitCancel() {
    if (isWaiting()) {
        answer(ed::InputEvent::cancel());
        return;
    }
    app_.editor().typeAhead(std::string(1, kEsc));
    schedule();
}

void QtInputSource::submitPointer(bool pick, double x, double y, bool shift) {
    if (!isWaiting()) return;
    if (!pick && waitingFor_ != ed::InputRequest::Kind::Drag) return;
    using Kind = ed::InputEvent::Kind;
    answer(ed::InputEvent::pointer(pick ? Kind::Pick : Kind::Move, {x, y, 0.0}, shift));
}

void QtInputSource::typeText(const std::string& text) {
    app_.editor().typeAhead(text);
    if (isWaiting())
        wake();
    else
        schedule();
}

void QtInputSource::shutdown() {
    shutDown_ = true;
    if (isWaiting()) loop_->quit();
}

void QtInputSource::schedule() {
    if (!shutDown_) runTimer_.start();
}

void QtInputSource::runPending() {
    // A command that runs now is inside a nested loop of ours, or in a dialog: when it ends,
    // the command processor goes on with whatever was typed meanwhile.
    if (app_.commandProcessor().isCommandActive() || shutDown_) return;
    app_.commandProcessor().runPending();
    emit idle();
}

}  // namespace cad::gui
