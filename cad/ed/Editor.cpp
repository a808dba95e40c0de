// The editor: input requests over the typed-ahead text, queued strings and the input source.
#include "cad/ed/Editor.h"

#include <algorithm>
#include <cmath>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/HitTester.h"
#include "cad/ed/InputPointMonitor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/SelectionSet.h"
#include "cad/ed/TypedInput.h"
#include "cad/sys/AsciiCase.h"

namespace cad::ed {

namespace {

using Kind = InputRequest::Kind;

Editor defaultEditor;
Editor* installedEditor = nullptr;

}  // namespace

Editor::Editor() = default;

void Editor::printf(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    commandLine_.vprintf(format, args);
    va_end(args);
}

// ---- Input ----

void Editor::typeAhead(std::string text, bool echo) {
    if (!text.empty()) typeAhead_.push_back({std::move(text), echo});
}

std::optional<InputEvent> Editor::takeTypedToken(bool allowSpaces) {
    while (!typeAhead_.empty()) {
        TypedChunk& chunk = typeAhead_.front();
        if (chunk.text.empty()) {
            typeAhead_.pop_front();
            continue;
        }
        if (chunk.text.front() == '\x03') {
            chunk.text.erase(0, 1);
            partial_.clear();
            return InputEvent::cancel();
        }
        std::size_t end = chunk.text.find_first_of(allowSpaces ? "\n\x03" : " \n\x03");
        std::string piece = chunk.text.substr(0, end);
        if (chunk.echo) print(piece);
        if (end == std::string::npos) {
            partial_ += piece;
            typeAhead_.pop_front();
            continue;
        }
        chunk.text.erase(0, chunk.text[end] == '\x03' ? end : end + 1);
        std::string token = partial_ + piece;
        partial_.clear();
        return InputEvent::typed(std::move(token));
    }
    return std::nullopt;
}

bool Editor::filterSwallows(WindowMessage& message) {
    auto filters = filters_;
    for (FilterWinMsgFn filter : filters)
        if (filter(&message)) return true;
    return false;
}

InputEvent Editor::nextInput(const InputRequest& request) {
    for (;;) {
        InputEvent event;
        std::string queued;
        bool echo = true;
        if (!posted_.empty()) {
            event.message = posted_.front();
            posted_.pop_front();
            // Only moves and left clicks are input; other messages are for the filters.
            event.kind = event.message.message == WM_MOUSEMOVE     ? InputEvent::Kind::Move
                         : event.message.message == WM_LBUTTONDOWN ? InputEvent::Kind::Pick
                                                                   : InputEvent::Kind::Key;
        } else if (auto token = takeTypedToken(request.allowSpaces)) {
            event = std::move(*token);
        } else if (queuedText_ && queuedText_(queued, echo)) {
            typeAhead(std::move(queued), echo);
            continue;
        } else if (!request.wait) {
            return InputEvent::end();  // nothing typed ahead: not a cancellation
        } else if (source_ == nullptr) {
            event = InputEvent::end();
        } else {
            event = source_->next(request);
            if (event.kind == InputEvent::Kind::Text) {
                typeAhead(event.text + "\n", true);
                continue;
            }
        }

        switch (event.kind) {
            case InputEvent::Kind::Text:
                return event;
            case InputEvent::Kind::Cancel:
            case InputEvent::Kind::End:
                ++cancellations_;
                return event;
            case InputEvent::Kind::Pick:
            case InputEvent::Kind::Move:
                if (!filterSwallows(event.message)) return event;
                continue;
            case InputEvent::Kind::Key:
                if (filterSwallows(event.message)) continue;
                if (event.message.keyCode == VK_ESCAPE) {
                    ++cancellations_;
                    return InputEvent::cancel();
                }
                if (event.message.keyCode == VK_RETURN) return InputEvent::typed("");
                continue;
        }
    }
}

int Editor::initGet(int flags, std::string_view keywords) {
    initGetFlags_ = flags;
    initGetKeywords_ = KeywordList(keywords);
    return RTNORM;
}

int Editor::getInput(std::string& text) const {
    text = lastInput_;
    return RTNORM;
}

int Editor::ask(InputRequest request, const Interpreter& interpret) {
    int flags = initGetFlags_;
    KeywordList keywords = std::move(initGetKeywords_);
    initGetFlags_ = 0;
    initGetKeywords_ = KeywordList();
    request.flags = flags;
    request.keywords = keywords.text();
    request.dragged = std::move(nextDragged_);
    request.motion = nextMotion_;
    nextDragged_.clear();
    bool pointRequest =
        request.kind == Kind::Point || request.kind == Kind::Corner || request.kind == Kind::Angle;

    print(request.prompt);
    for (;;) {
        InputEvent input = nextInput(request);
        switch (input.kind) {
            case InputEvent::Kind::Cancel:
            case InputEvent::Kind::End:
                print("*Cancel*");
                return RTCAN;
            case InputEvent::Kind::Move:
                if (pointRequest) reportInputPoint(input.message.point, &input.message);
                continue;
            case InputEvent::Kind::Key:
                continue;
            case InputEvent::Kind::Text:
                if (input.text.empty() && request.kind != Kind::String) {
                    if ((flags & RSG_NONULL) == 0) return RTNONE;
                    print(request.prompt);
                    continue;
                }
                if (request.kind != Kind::String && request.kind != Kind::Keyword) {
                    if (auto index = keywords.match(input.text)) {
                        lastInput_ = keywords.answer(*index);
                        return RTKWORD;
                    }
                }
                break;
            case InputEvent::Kind::Pick:
                break;
        }
        Answer answer = interpret(input);
        if (answer.code != 0) return answer.code;
        if ((flags & RSG_OTHER) != 0 && input.kind == InputEvent::Kind::Text) {
            lastInput_ = input.text;
            return RTKWORD;
        }
        print(answer.refusal);
        print(request.prompt);
    }
}

std::optional<ge::Point3d> Editor::pointOf(const InputEvent& input) const {
    if (input.kind == InputEvent::Kind::Pick) return input.message.point;
    if (input.kind == InputEvent::Kind::Text) return parsePoint(input.text, lastPoint());
    return std::nullopt;
}

void Editor::reportInputPoint(const ge::Point3d& point, const WindowMessage* message) {
    if (monitors_.empty()) return;
    InputPoint input;
    input.lastPoint = lastPoint();
    input.rawPoint = input.computedPoint = input.osnappedPoint = point;
    if (message != nullptr) {
        input.windowX = message->x;
        input.windowY = message->y;
    } else {
        input.history = kPointHistoryLastPt;
        input.windowX = static_cast<int>(std::lround(point.x));
        input.windowY = static_cast<int>(std::lround(point.y));
    }
    notifyInputPoint(input);
}

int Editor::askPoint(Kind kind, std::string_view prompt, ge::Point3d& result,
                     std::optional<ge::Point3d> basePoint) {
    ge::Point3d point;
    InputRequest request{kind, std::string(prompt), basePoint};
    int code = ask(request, [&](const InputEvent& input) -> Answer {
        auto p = pointOf(input);
        if (!p) return {0, "\nInvalid point."};
        if (input.kind == InputEvent::Kind::Text)
            reportInputPoint(*p, nullptr);
        else
            reportInputPoint(*p, &input.message);
        point = *p;
        return {RTNORM, {}};
    });
    if (code == RTNORM) {
        result = point;
        setLastPoint(point);
    }
    return code;
}

int Editor::getPoint(std::string_view prompt, ge::Point3d& result,
                     std::optional<ge::Point3d> basePoint) {
    return askPoint(Kind::Point, prompt, result, basePoint);
}

int Editor::getCorner(std::string_view prompt, const ge::Point3d& basePoint, ge::Point3d& result) {
    return askPoint(Kind::Corner, prompt, result, basePoint);
}

int Editor::getAngle(std::string_view prompt, double& result,
                     std::optional<ge::Point3d> basePoint) {
    double angle = 0.0;
    std::optional<ge::Point3d> firstPoint;
    int flags = initGetFlags_;
    InputRequest request{Kind::Angle, std::string(prompt), basePoint};
    int code = ask(request, [&](const InputEvent& input) -> Answer {
        if (input.kind == InputEvent::Kind::Text) {
            if (auto degrees = parseReal(input.text)) {
                angle = normalizeAngle(degreesToRadians(*degrees));
                if ((flags & RSG_NOZERO) != 0 && angle == 0.0)
                    return {0, "\nValue must be nonzero."};
                return {RTNORM, {}};
            }
        }
        auto p = pointOf(input);
        if (!p) return {0, "\nRequires numeric angle or second point."};
        if (basePoint)
            angle = angleBetween(*basePoint, *p);
        else
            firstPoint = p;
        return {RTNORM, {}};
    });
    if (code == RTNORM && firstPoint) {
        ge::Point3d second;
        code = askPoint(Kind::Point, "\nSpecify second point: ", second, firstPoint);
        if (code == RTNORM) angle = angleBetween(*firstPoint, second);
    }
    if (code == RTNORM) result = angle;
    return code;
}

int Editor::getString(std::string_view prompt, std::string& result, bool allowSpaces) {
    std::string text;
    InputRequest request{Kind::String, std::string(prompt)};
    request.allowSpaces = allowSpaces;
    int code = ask(request, [&](const InputEvent& input) -> Answer {
        if (input.kind != InputEvent::Kind::Text) return {0, {}};
        text = input.text;
        return {RTNORM, {}};
    });
    if (code == RTNORM) result = text;
    return code;
}

int Editor::getKeyword(std::string_view prompt, std::string& result) {
    if (initGetKeywords_.empty()) {
        initGet(0);
        return RTREJ;
    }
    const KeywordList keywords = initGetKeywords_;
    std::string answer;
    int code = ask({Kind::Keyword, std::string(prompt)}, [&](const InputEvent& input) -> Answer {
        if (input.kind == InputEvent::Kind::Text) {
            if (auto index = keywords.match(input.text)) {
                answer = keywords.answer(*index);
                return {RTNORM, {}};
            }
        }
        return {0, "\nInvalid option keyword."};
    });
    if (code == RTNORM) result = answer;
    if (code == RTKWORD) result = lastInput_;
    return code;
}

int Editor::getInteger(std::string_view prompt, int& result) {
    int value = 0;
    int flags = initGetFlags_;
    int code = ask({Kind::Integer, std::string(prompt)}, [&](const InputEvent& input) -> Answer {
        std::optional<long> number;
        if (input.kind == InputEvent::Kind::Text) number = parseInteger(input.text);
        if (!number) return {0, "\nRequires an integer value."};
        if (*number < -32768 || *number > 32767)
            return {0, "\nRequires an integer between -32768 and 32767."};
        if ((flags & RSG_NOZERO) != 0 && *number == 0) return {0, "\nValue must be nonzero."};
        if ((flags & RSG_NONEG) != 0 && *number < 0) return {0, "\nValue must be positive."};
        value = static_cast<int>(*number);
        return {RTNORM, {}};
    });
    if (code == RTNORM) result = value;
    return code;
}

int Editor::getReal(std::string_view prompt, double& result) {
    double value = 0.0;
    int flags = initGetFlags_;
    int code = ask({Kind::Real, std::string(prompt)}, [&](const InputEvent& input) -> Answer {
        std::optional<double> number;
        if (input.kind == InputEvent::Kind::Text) number = parseReal(input.text);
        if (!number) return {0, "\nRequires numeric value."};
        if ((flags & RSG_NOZERO) != 0 && *number == 0.0) return {0, "\nValue must be nonzero."};
        if ((flags & RSG_NONEG) != 0 && *number < 0.0) return {0, "\nValue must be positive."};
        value = *number;
        return {RTNORM, {}};
    });
    if (code == RTNORM) result = value;
    return code;
}

// ---- Monitors, filters, reactors ----

void Editor::addInputPointMonitor(InputPointMonitor* monitor) {
    if (std::find(monitors_.begin(), monitors_.end(), monitor) == monitors_.end())
        monitors_.push_back(monitor);
}

void Editor::removeInputPointMonitor(InputPointMonitor* monitor) {
    monitors_.erase(std::remove(monitors_.begin(), monitors_.end(), monitor), monitors_.end());
}

void Editor::notifyInputPoint(const InputPoint& input) {
    auto monitors = monitors_;
    for (InputPointMonitor* monitor : monitors) {
        InputPointMonitorResult result;
        monitor->monitorInputPoint(input, result);
    }
}

bool Editor::registerMessageFilter(FilterWinMsgFn filter) {
    if (filter == nullptr || std::find(filters_.begin(), filters_.end(), filter) != filters_.end())
        return false;
    filters_.push_back(filter);
    return true;
}

bool Editor::removeMessageFilter(FilterWinMsgFn filter) {
    auto it = std::find(filters_.begin(), filters_.end(), filter);
    if (it == filters_.end()) return false;
    filters_.erase(it);
    return true;
}

void Editor::addReactor(EditorReactor* reactor) {
    if (std::find(reactors_.begin(), reactors_.end(), reactor) == reactors_.end())
        reactors_.push_back(reactor);
}

void Editor::removeReactor(EditorReactor* reactor) {
    reactors_.erase(std::remove(reactors_.begin(), reactors_.end(), reactor), reactors_.end());
}

// ---- The process's editor ----

Editor& editor() {
    return installedEditor ? *installedEditor : defaultEditor;
}

void setEditor(Editor* installed) {
    installedEditor = installed;
}

void acutPrintf(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    editor().commandLine().vprintf(format, args);
    va_end(args);
}

}  // namespace cad::ed
