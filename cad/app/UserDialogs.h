// The user-dialogs port: every message box, confirmation, file or folder dialog, name dialog and
// progress display of the host and the module goes through it. The GUI host installs real Qt
// dialogs; tests and the headless host install ScriptedDialogs, which answers from a queue and
// records every text, title and icon, so the exact words can be asserted.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cad::app {

// Message-box flags and answers with the Win32 values the module passes and tests.
inline constexpr unsigned MB_OK = 0x0000;
inline constexpr unsigned MB_OKCANCEL = 0x0001;
inline constexpr unsigned MB_YESNOCANCEL = 0x0003;
inline constexpr unsigned MB_YESNO = 0x0004;
inline constexpr unsigned MB_ICONERROR = 0x0010;
inline constexpr unsigned MB_ICONQUESTION = 0x0020;
inline constexpr unsigned MB_ICONWARNING = 0x0030;
inline constexpr unsigned MB_ICONINFORMATION = 0x0040;
inline constexpr unsigned MB_BUTTON_MASK = 0x000F;
inline constexpr unsigned MB_ICON_MASK = 0x00F0;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

class UserDialogs {
public:
    virtual ~UserDialogs() = default;

    // Shows `text` (UTF-8; "\n" breaks lines) under `title`; answers the button pressed.
    virtual int messageBox(std::string_view text, std::string_view title, unsigned flags) = 0;

    // File-open dialog; with `multiple` several files may be chosen. nullopt on cancel.
    // `filter` is "Drawings (*.dxf *.dwg)" style text.
    virtual std::optional<std::vector<std::string>> openFiles(std::string_view title,
                                                              std::string_view filter,
                                                              std::string_view folder,
                                                              bool multiple) = 0;
    // File-save dialog: asks before overwriting, appends `defaultExtension` (".csv") when the
    // name has none. nullopt on cancel.
    virtual std::optional<std::string> saveFile(std::string_view title, std::string_view filter,
                                                std::string_view defaultExtension,
                                                std::string_view initialPath) = 0;
    virtual std::optional<std::string> chooseFolder(std::string_view title,
                                                    std::string_view initialFolder) = 0;
    // The one-field name dialog (OK and Cancel). nullopt on cancel.
    virtual std::optional<std::string> askText(std::string_view title, std::string_view label,
                                               std::string_view initialText) = 0;

    // The modeless progress display of long work: a status text and a bar.
    virtual void progressShow() = 0;
    virtual void progressRange(int low, int high) = 0;
    virtual void progressPosition(int position) = 0;
    virtual void progressText(std::string_view text) = 0;
    virtual void progressHide() = 0;
};

// The port installed for the process (ScriptedDialogs until a host installs its own).
UserDialogs& userDialogs();
void setUserDialogs(UserDialogs* dialogs);  // nullptr restores the default

}  // namespace cad::app
