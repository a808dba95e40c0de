// Scripted dialogs: queue-fed answers and a record of every call.
#include "cad/app/ScriptedDialogs.h"

namespace cad::app {

void ScriptedDialogs::pushPath(std::optional<std::string> path) {
    if (path)
        paths_.push_back(std::vector<std::string>{std::move(*path)});
    else
        paths_.push_back(std::nullopt);
}

std::vector<ScriptedDialogs::Call> ScriptedDialogs::calls(Kind kind) const {
    std::vector<Call> out;
    for (const Call& call : calls_)
        if (call.kind == kind) out.push_back(call);
    return out;
}

ScriptedDialogs::Call& ScriptedDialogs::record(Kind kind, std::string_view text,
                                               std::string_view title, std::string_view detail) {
    Call& call = calls_.emplace_back();
    call.kind = kind;
    call.text = text;
    call.title = title;
    call.detail = detail;
    return call;
}

int ScriptedDialogs::messageBox(std::string_view text, std::string_view title, unsigned flags) {
    Call& call = record(Kind::MessageBox, text, title);
    call.flags = flags;
    call.answer = IDOK;
    if (!answers_.empty()) {
        call.answer = answers_.front();
        answers_.pop_front();
    }
    if (sink_) sink_("[" + call.title + "] " + call.text);
    return call.answer;
}

std::optional<std::vector<std::string>> ScriptedDialogs::nextPaths() {
    if (paths_.empty()) return std::nullopt;
    auto paths = std::move(paths_.front());
    paths_.pop_front();
    // A dialog never answers OK with nothing chosen.
    if (paths && paths->empty()) return std::nullopt;
    return paths;
}

std::optional<std::vector<std::string>> ScriptedDialogs::openFiles(std::string_view title,
                                                                   std::string_view filter,
                                                                   std::string_view folder,
                                                                   bool multiple) {
    Call& call = record(Kind::OpenFiles, filter, title, folder);
    auto paths = nextPaths();
    if (paths && !multiple) paths->resize(1);
    call.cancelled = !paths;
    if (paths) call.paths = *paths;
    return paths;
}

std::optional<std::string> ScriptedDialogs::saveFile(std::string_view title,
                                                     std::string_view filter,
                                                     std::string_view defaultExtension,
                                                     std::string_view initialPath) {
    Call& call = record(Kind::SaveFile, filter, title, initialPath);
    auto paths = nextPaths();
    call.cancelled = !paths;
    if (!paths) return std::nullopt;
    std::string path = paths->front();
    // As the real dialog does: a name without an extension gets the default one.
    std::size_t slash = path.find_last_of("/\\");
    std::size_t dot = path.find_last_of('.');
    if (!defaultExtension.empty() &&
        (dot == std::string::npos || (slash != std::string::npos && dot < slash)))
        path += defaultExtension;
    call.paths = {path};
    return path;
}

std::optional<std::string> ScriptedDialogs::chooseFolder(std::string_view title,
                                                         std::string_view initialFolder) {
    Call& call = record(Kind::ChooseFolder, {}, title, initialFolder);
    auto paths = nextPaths();
    call.cancelled = !paths;
    if (!paths) return std::nullopt;
    call.paths = {paths->front()};
    return paths->front();
}

std::optional<std::string> ScriptedDialogs::askText(std::string_view title, std::string_view label,
                                                    std::string_view initialText) {
    Call& call = record(Kind::AskText, label, title, initialText);
    std::optional<std::string> text;
    if (!texts_.empty()) {
        text = std::move(texts_.front());
        texts_.pop_front();
    }
    call.cancelled = !text;
    if (text) call.paths = {*text};
    return text;
}

void ScriptedDialogs::progressShow() {
    record(Kind::ProgressShow);
}

void ScriptedDialogs::progressRange(int low, int high) {
    Call& call = record(Kind::ProgressRange);
    call.low = low;
    call.high = high;
}

void ScriptedDialogs::progressPosition(int position) {
    record(Kind::ProgressPosition).low = position;
}

void ScriptedDialogs::progressText(std::string_view text) {
    record(Kind::ProgressText, text);
}

void ScriptedDialogs::progressHide() {
    record(Kind::ProgressHide);
}

}  // namespace cad::app
