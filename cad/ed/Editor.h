// The editor: the command line and every request for input in the drawing (points, angles,
// texts, keywords, numbers, entities and selection sets), the system variables, the message
// filters and input-point monitors, and the editor reactors.
//
// Input is drawn, in this order, from window messages posted by filters, text typed ahead
// (queued command strings), the current document's command queue, and the input source (the
// GUI, a script or a test). Typed text is split at Enter, and at a space too unless the prompt
// takes spaces, exactly as keyboard input is; the character 0x03 in typed text is Esc.
// Every request answers one of the host's result codes (RTNORM, RTNONE, RTCAN, RTKWORD ...).
#pragma once

#include <cstdarg>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/ed/CommandLine.h"
#include "cad/ed/EntityName.h"
#include "cad/ed/InputEvent.h"
#include "cad/ed/InputRequest.h"
#include "cad/ed/InputSource.h"
#include "cad/ed/KeywordList.h"
#include "cad/ed/SystemVariables.h"
#include "cad/ed/ViewRecord.h"
#include "cad/ed/WindowMessage.h"

namespace cad::db {
class Database;
}

namespace cad::ed {

class DragPreview;
class EditorReactor;
class HitTester;
class InputPointMonitor;
class SelectionSet;
struct InputPoint;

class Editor {
public:
    Editor();
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    // ---- Command-line output ----
    CommandLine& commandLine() { return commandLine_; }
    const CommandLine& commandLine() const { return commandLine_; }
    void print(std::string_view text) { commandLine_.print(text); }
    void printf(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // ---- Input ----
    void setInputSource(InputSource* source) { source_ = source; }
    InputSource* inputSource() const { return source_; }
    // Text typed ahead of the prompts that will read it; `echo` shows it on the command line.
    void typeAhead(std::string text, bool echo = true);
    bool hasTypeAhead() const { return !typeAhead_.empty(); }
    void clearTypeAhead() { typeAhead_.clear(); }
    // Where queued command strings come from once the typed-ahead text is used up: answers
    // false when there is none. The document manager hands out the current document's queue.
    void setQueuedTextSource(std::function<bool(std::string& text, bool& echo)> source) {
        queuedText_ = std::move(source);
    }
    // A window message to deliver before any other input (filters use it to make the view
    // sample again); it passes the filters like any other.
    void postWindowMessage(const WindowMessage& message) { posted_.push_back(message); }

    // The next input for `request`, after filters: Text (one typed answer, "" for Enter; echoed
    // when typed), Pick, Move, Cancel or End. Keys never come out: Esc becomes Cancel, Enter an
    // empty Text, others are for the filters only. Requests use it; so do the jig and the
    // command processor.
    InputEvent nextInput(const InputRequest& request);
    // How many times input was cancelled (Esc, or the source ended): a command that saw one
    // was cancelled.
    int cancellations() const { return cancellations_; }

    // ---- Input requests ----
    // Flags (RSG_...) and keywords for the next request only.
    int initGet(int flags, std::string_view keywords = {});
    // Entities the view shows following the cursor during the next request only (a base
    // point request's second point, or an angle about it).
    void dragEntities(std::vector<db::ObjectId> ids, InputRequest::Motion motion) {
        nextDragged_ = std::move(ids);
        nextMotion_ = motion;
    }
    // The keyword (or, with RSG_OTHER, the text) of the last RTKWORD answer.
    int getInput(std::string& text) const;

    int getPoint(std::string_view prompt, ge::Point3d& result,
                 std::optional<ge::Point3d> basePoint = std::nullopt);
    // The opposite corner of a rectangle from `basePoint`.
    int getCorner(std::string_view prompt, const ge::Point3d& basePoint, ge::Point3d& result);
    // Radians in [0, 2π). Typed numbers are degrees; a point gives the angle from the base
    // point, and without one a first point becomes the base and a second is asked for.
    int getAngle(std::string_view prompt, double& result,
                 std::optional<ge::Point3d> basePoint = std::nullopt);
    // Enter answers RTNORM with the empty text.
    int getString(std::string_view prompt, std::string& result, bool allowSpaces = false);
    // The keyword as spelled in the list (its global name when the list has them).
    int getKeyword(std::string_view prompt, std::string& result);
    int getInteger(std::string_view prompt, int& result);  // -32768 to 32767, as the host
    int getReal(std::string_view prompt, double& result);
    // One entity, picked at a point or typed by handle. RTERROR when nothing is there, RTNONE
    // on Enter. `picked` is the point used (the entity's position when typed by handle).
    int entSel(std::string_view prompt, EntityName& entity, ge::Point3d& picked);

    // ---- Selection sets ----
    enum class SelectMode {
        // ask: points pick (on nothing they start a window: to the right it takes what is
        // inside, to the left what crosses), handles name, "W" a window, "C" a crossing
        // window, "ALL" everything
        Prompt,
        Point,    // the entity at p1
        Window,   // entities whose extents lie inside the rectangle p1-p2
        All,      // every entity of model space
        Implied,  // the pick-first set
    };
    // RTNORM with a non-empty set, RTERROR when nothing was selected, RTCAN on Esc.
    // `types` keeps only entities of these DXF names ("INSERT", "LINE"; any case).
    int ssget(SelectMode mode, SelectionSet& result, const ge::Point3d& p1 = {},
              const ge::Point3d& p2 = {}, const std::vector<std::string>& types = {});
    // The entities selected before a command started (kept for ACRX_CMD_USEPICKSET commands).
    void setPickfirst(std::vector<db::ObjectId> ids) { pickfirst_ = std::move(ids); }
    const std::vector<db::ObjectId>& pickfirst() const { return pickfirst_; }

    // ---- The current document ----
    // The database input works on and the drawing's own system variables (nullptr: the
    // editor's defaults).
    void setDocumentContext(db::Database* database, SystemVariables* drawingVariables);
    db::Database* database() const { return database_; }

    // ---- System variables ----
    int getVar(std::string_view name, SysVarValue& value) const;
    // RTERROR for an unknown or read-only name or a value of the wrong type.
    int setVar(std::string_view name, const SysVarValue& value);
    SystemVariables& applicationVariables() { return appVariables_; }
    SystemVariables& drawingVariables() { return *drawingVariables_; }
    // Makes the view current: VIEWCTR, VIEWSIZE, VIEWDIR, TARGET, LENSLENGTH, VIEWTWIST,
    // FRONTZ, BACKZ and VIEWMODE follow it. RTNORM.
    int setCurrentView(const ViewRecord& view);
    ViewRecord currentView() const;

    // ---- Monitors, filters, reactors, drag display ----
    void addInputPointMonitor(InputPointMonitor* monitor);
    void removeInputPointMonitor(InputPointMonitor* monitor);
    void notifyInputPoint(const InputPoint& input);
    // Tells the monitors of a point taken from a view event (`message`) or typed (nullptr).
    void reportInputPoint(const ge::Point3d& point, const WindowMessage* message);
    // False when the filter is already registered (or not, for removal).
    bool registerMessageFilter(FilterWinMsgFn filter);
    bool removeMessageFilter(FilterWinMsgFn filter);
    void addReactor(EditorReactor* reactor);
    void removeReactor(EditorReactor* reactor);
    // A copy, so a reactor may remove itself while being told.
    std::vector<EditorReactor*> reactors() const { return reactors_; }
    void setDragPreview(DragPreview* preview) { dragPreview_ = preview; }
    // The view that picks and windows are measured in; nullptr: by the entities' extents.
    void setHitTester(HitTester* tester) { hitTester_ = tester; }
    HitTester* hitTester() const { return hitTester_; }
    DragPreview* dragPreview() const { return dragPreview_; }

    ge::Point3d lastPoint() const;
    void setLastPoint(const ge::Point3d& point);

private:
    struct TypedChunk {
        std::string text;
        bool echo;
    };
    // What an interpreter makes of one input: a result code, or a refusal with its message.
    struct Answer {
        int code = 0;  // 0: refused
        std::string refusal;
    };
    using Interpreter = std::function<Answer(const InputEvent&)>;

    std::optional<InputEvent> takeTypedToken(bool allowSpaces);
    bool filterSwallows(WindowMessage& message);
    // One input request: prompt, input, keywords, Enter, Esc, refusals and re-prompts.
    int ask(InputRequest request, const Interpreter& interpret);
    int askPoint(InputRequest::Kind kind, std::string_view prompt, ge::Point3d& result,
                 std::optional<ge::Point3d> basePoint);
    std::optional<ge::Point3d> pointOf(const InputEvent& input) const;

    db::ObjectId entityAt(const ge::Point3d& point, const std::vector<std::string>& types) const;
    db::ObjectId entityByHandle(std::string_view text, const std::vector<std::string>& types) const;
    std::vector<db::ObjectId> entitiesIn(const ge::Point3d& corner1, const ge::Point3d& corner2,
                                         const std::vector<std::string>& types, bool crossing = false) const;
    // A window from `first` by the opposite corner asked for; nullopt on Esc (RTCAN in `code`).
    std::optional<std::vector<db::ObjectId>> windowFrom(const ge::Point3d& first, std::optional<bool> crossing,
                                                        const std::vector<std::string>& types, int& code);
    int promptSelection(SelectionSet& result, const std::vector<std::string>& types);

    CommandLine commandLine_;
    InputSource* source_ = nullptr;
    std::deque<TypedChunk> typeAhead_;
    std::string partial_;  // typed without Enter: it starts the next answer
    std::function<bool(std::string&, bool&)> queuedText_;
    std::deque<WindowMessage> posted_;
    int cancellations_ = 0;

    int initGetFlags_ = 0;
    std::vector<db::ObjectId> nextDragged_;
    InputRequest::Motion nextMotion_ = InputRequest::Motion::Move;
    KeywordList initGetKeywords_;
    std::string lastInput_;

    std::vector<db::ObjectId> pickfirst_;
    db::Database* database_ = nullptr;
    SystemVariables appVariables_;
    SystemVariables ownDrawingVariables_;
    SystemVariables* drawingVariables_ = &ownDrawingVariables_;
    double viewAspect_ = 420.0 / 297.0;  // width over height of the last view made current

    std::vector<InputPointMonitor*> monitors_;
    std::vector<FilterWinMsgFn> filters_;
    std::vector<EditorReactor*> reactors_;
    DragPreview* dragPreview_ = nullptr;
    HitTester* hitTester_ = nullptr;
};

// The editor of the process (one the host installed, else a default one without input).
Editor& editor();
void setEditor(Editor* editor);  // nullptr restores the default

// Prints to the command line of the process's editor, printf style.
void acutPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace cad::ed
