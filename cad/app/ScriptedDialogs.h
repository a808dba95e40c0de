// The user-dialogs port for tests and the headless host: every answer comes from a queue set up
// beforehand, and every call is recorded with its exact text, title and flags.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/app/UserDialogs.h"

namespace cad::app {

class ScriptedDialogs : public UserDialogs {
public:
    enum class Kind {
        MessageBox,
        OpenFiles,
        SaveFile,
        ChooseFolder,
        AskText,
        ProgressShow,
        ProgressRange,
        ProgressPosition,
        ProgressText,
        ProgressHide,
    };

    // One recorded call. `text` is the message, the filter of a file dialog, the label of the
    // name dialog or the progress text; `detail` the folder, default extension or initial text;
    // `flags` the message-box flags; `answer` the button given; `paths` the paths or text given
    // (empty when the dialog was cancelled, see `cancelled`); `low`/`high` the progress numbers.
    struct Call {
        Kind kind = Kind::MessageBox;
        std::string text;
        std::string title;
        std::string detail;
        unsigned flags = 0;
        int answer = 0;
        bool cancelled = false;
        std::vector<std::string> paths;
        int low = 0;
        int high = 0;

        unsigned icon() const { return flags & MB_ICON_MASK; }
        unsigned buttons() const { return flags & MB_BUTTON_MASK; }
    };

    // Answers, taken in order by the dialogs of the matching kind. An empty queue answers IDOK
    // for message boxes and cancel for every other dialog.
    void pushAnswer(int button) { answers_.push_back(button); }
    // The next open-files, save-file or choose-folder dialog gets these paths (save and folder
    // dialogs take the first); nullopt cancels it.
    void pushPaths(std::optional<std::vector<std::string>> paths) {
        paths_.push_back(std::move(paths));
    }
    void pushPath(std::optional<std::string> path);
    void pushText(std::optional<std::string> text) { texts_.push_back(std::move(text)); }

    const std::vector<Call>& calls() const { return calls_; }
    std::vector<Call> calls(Kind kind) const;
    std::vector<Call> messageBoxes() const { return calls(Kind::MessageBox); }
    void clearCalls() { calls_.clear(); }

    // Headless runs show each message box as a command-line line "[title] text".
    void setMessageSink(std::function<void(std::string_view line)> sink) {
        sink_ = std::move(sink);
    }

    int messageBox(std::string_view text, std::string_view title, unsigned flags) override;
    std::optional<std::vector<std::string>> openFiles(std::string_view title,
                                                      std::string_view filter,
                                                      std::string_view folder,
                                                      bool multiple) override;
    std::optional<std::string> saveFile(std::string_view title, std::string_view filter,
                                        std::string_view defaultExtension,
                                        std::string_view initialPath) override;
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view initialFolder) override;
    std::optional<std::string> askText(std::string_view title, std::string_view label,
                                       std::string_view initialText) override;

    void progressShow() override;
    void progressRange(int low, int high) override;
    void progressPosition(int position) override;
    void progressText(std::string_view text) override;
    void progressHide() override;

private:
    std::optional<std::vector<std::string>> nextPaths();
    Call& record(Kind kind, std::string_view text = {}, std::string_view title = {},
                 std::string_view detail = {});

    std::deque<int> answers_;
    std::deque<std::optional<std::vector<std::string>>> paths_;
    std::deque<std::optional<std::string>> texts_;
    std::vector<Call> calls_;
    std::function<void(std::string_view)> sink_;
};

}  // namespace cad::app
