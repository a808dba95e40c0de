// Headless dialogs: each dialog takes its answer from the next line of the same input the
// command line reads, and is recorded and echoed as ScriptedDialogs does ("[title] text" for
// a message box). Progress texts are printed as lines.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "ScriptLineSource.h"
#include "cad/app/ScriptedDialogs.h"

namespace vantorcad {

class ScriptLineDialogs : public cad::app::ScriptedDialogs {
public:
    using Print = std::function<void(std::string_view text)>;

    // `print` shows a line on the command line.
    ScriptLineDialogs(ScriptLineSource& input, Print print);

    // A question's answer word for the box's buttons ("OK", "Cancel", "Yes", "No", any case);
    // nullopt for a word the box has no button for.
    static std::optional<int> answerFor(std::string_view word, unsigned flags);

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
    void progressText(std::string_view text) override;

private:
    // The next line, unless it cancels the dialog (the end of the input does too).
    std::optional<std::string> answerLine();

    ScriptLineSource& input_;
    Print print_;
};

}  // namespace vantorcad
