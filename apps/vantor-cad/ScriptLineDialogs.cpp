// Dialog answers from the headless input.
#include "ScriptLineDialogs.h"

#include <strings.h>

namespace vantorcad {

namespace {

bool sameWord(std::string_view a, std::string_view b) {
    return a.size() == b.size() && ::strncasecmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace

ScriptLineDialogs::ScriptLineDialogs(ScriptLineSource& input, Print print)
    : input_(input), print_(std::move(print)) {
    setMessageSink([this](std::string_view line) { print_("\n" + std::string(line)); });
}

std::optional<int> ScriptLineDialogs::answerFor(std::string_view word, unsigned flags) {
    using namespace cad::app;
    const unsigned buttons = flags & MB_BUTTON_MASK;
    const bool okCancel = buttons == MB_OK || buttons == MB_OKCANCEL;
    const bool yesNo = buttons == MB_YESNO || buttons == MB_YESNOCANCEL;
    const bool cancel = buttons == MB_OKCANCEL || buttons == MB_YESNOCANCEL;
    if (okCancel && sameWord(word, "OK")) return IDOK;
    if (cancel && sameWord(word, "Cancel")) return IDCANCEL;
    if (yesNo && sameWord(word, "Yes")) return IDYES;
    if (yesNo && sameWord(word, "No")) return IDNO;
    return std::nullopt;
}

int ScriptLineDialogs::messageBox(std::string_view text, std::string_view title, unsigned flags) {
    using namespace cad::app;
    const unsigned buttons = flags & MB_BUTTON_MASK;
    if (buttons == MB_OK) {
        // Nothing to decide: an "OK" line is taken when the script gives one.
        if (const std::string* line = input_.peekLine(); line && sameWord(*line, "OK"))
            input_.takeLine();
        pushAnswer(IDOK);
    } else {
        std::optional<std::string> line = input_.takeLine();
        std::optional<int> answer = line ? answerFor(*line, flags) : std::nullopt;
        if (line && !answer && !ScriptLineSource::isCancelToken(*line))
            print_("\nNo button \"" + *line + "\" in the next dialog: it is cancelled.");
        // Closing a box answers its Cancel; a Yes/No box has none and answers No.
        pushAnswer(answer.value_or(buttons == MB_YESNO ? IDNO : IDCANCEL));
    }
    return ScriptedDialogs::messageBox(text, title, flags);
}

std::optional<std::string> ScriptLineDialogs::answerLine() {
    std::optional<std::string> line = input_.takeLine();
    if (!line || line->empty() || ScriptLineSource::isCancelToken(*line) ||
        sameWord(*line, "Cancel"))
        return std::nullopt;
    return line;
}

std::optional<std::vector<std::string>> ScriptLineDialogs::openFiles(std::string_view title,
                                                                     std::string_view filter,
                                                                     std::string_view folder,
                                                                     bool multiple) {
    std::optional<std::string> line = answerLine();
    if (!line) {
        pushPaths(std::nullopt);
    } else {
        std::vector<std::string> paths;
        std::string_view rest = *line;
        while (!rest.empty()) {
            std::size_t semicolon = rest.find(';');
            if (semicolon != 0) paths.emplace_back(rest.substr(0, semicolon));
            if (semicolon == std::string_view::npos) break;
            rest.remove_prefix(semicolon + 1);
        }
        pushPaths(std::move(paths));
    }
    return ScriptedDialogs::openFiles(title, filter, folder, multiple);
}

std::optional<std::string> ScriptLineDialogs::saveFile(std::string_view title,
                                                       std::string_view filter,
                                                       std::string_view defaultExtension,
                                                       std::string_view initialPath) {
    pushPath(answerLine());
    return ScriptedDialogs::saveFile(title, filter, defaultExtension, initialPath);
}

std::optional<std::string> ScriptLineDialogs::chooseFolder(std::string_view title,
                                                           std::string_view initialFolder) {
    pushPath(answerLine());
    return ScriptedDialogs::chooseFolder(title, initialFolder);
}

// A name may be empty (the dialog's rules say whether it will do), so only a cancelling line
// or the end of the input cancels here.
std::optional<std::string> ScriptLineDialogs::askText(std::string_view title,
                                                      std::string_view label,
                                                      std::string_view initialText) {
    std::optional<std::string> line = input_.takeLine();
    if (line && (ScriptLineSource::isCancelToken(*line) || sameWord(*line, "Cancel"))) line.reset();
    pushText(std::move(line));
    return ScriptedDialogs::askText(title, label, initialText);
}

void ScriptLineDialogs::progressText(std::string_view text) {
    ScriptedDialogs::progressText(text);
    print_("\n" + std::string(text));
}

}  // namespace vantorcad
