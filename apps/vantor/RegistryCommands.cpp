// Subcommands that change a management window's registered drawings as the library window
// does: register drawings, scan a folder, optimise the list; the CSV export of the part records
// of a window's drawings, and the search among those parts.
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "apps/common/JsonWriter.h"
#include "apps/vantor/CliCommand.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/FileSystem.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/operations/DrawingRegistration.h"
#include "vantor/search/CachedParts.h"
#include "vantor/search/SearchScope.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/export/CsvExport.h"

namespace vantor::cli {

namespace {

// A relative path is taken from the working folder, since the list holds full paths; a full
// path is kept byte for byte, so the list's rules see what was typed.
std::string fullPath(const std::string& given) {
    if (!std::filesystem::path(given).is_relative()) return given;
    std::error_code ignored;
    std::filesystem::path absolute = std::filesystem::absolute(given, ignored);
    return absolute.empty() ? given : absolute.lexically_normal().string();
}

// One management window loaded as the library window loads it: its list read and every
// drawing's library data read into the tree, which sets the active flags. Confirmations are
// answered OK. Vantor.ini is read for curListName and the export settings but never written:
// the library window owns it.
class RegistrySession {
public:
    RegistrySession()
        : windows_(loadedSettings(settings_), list_, tree_, dialogs_),
          registration_(list_, tree_, windows_, dialogs_) {
        windows_.loadTabList();
    }

    bool select(int position) { return selectWindow(windows_, position); }

    ModuleSettings& settings() { return settings_; }
    DrawingList& list() { return list_; }
    CVNTreeBase& tree() { return tree_; }
    ManagementWindows& windows() { return windows_; }
    DrawingRegistration& registration() { return registration_; }
    cad::app::ScriptedDialogs& dialogs() { return dialogs_; }

    // Every message shown, as "[title] text", errors on stderr; answers whether one was an
    // error.
    bool printMessages() const {
        bool error = false;
        for (const auto& box : dialogs_.messageBoxes()) {
            const bool isError = box.icon() == cad::app::MB_ICONERROR;
            (isError ? std::cerr : std::cout) << '[' << box.title << "] " << box.text << '\n';
            error = error || isError;
        }
        return error;
    }

private:
    static ModuleSettings& loadedSettings(ModuleSettings& settings) {
        settings.load();
        return settings;
    }

    ModuleSettings settings_;
    DrawingList list_;
    cad::app::ScriptedDialogs dialogs_;
    CVNTreeBase tree_{dialogs_};
    ManagementWindows windows_;
    DrawingRegistration registration_;
};

void printEntries(const DrawingList& list, std::size_t from) {
    std::size_t index = 0;
    for (const RegisteredDrawing& entry : list) {
        if (index++ < from) continue;
        std::cout << "registered " << entry.path << (entry.active == 1 ? "" : " (inactive)")
                  << '\n';
    }
}

int runRegister(std::vector<std::string> args) {
    if (args.size() < 2) return usageError("usage: vantor register N PATH...");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");

    RegistrySession session;
    if (!session.select(*position)) return kExitFailure;
    std::vector<std::string> paths;
    for (std::size_t i = 1; i < args.size(); ++i) paths.push_back(fullPath(args[i]));
    const std::size_t before = session.list().size();
    session.registration().addPaths(paths);
    const bool error = session.printMessages();
    printEntries(session.list(), before);
    return error ? kExitFailure : kExitOk;
}

int runScan(std::vector<std::string> args) {
    if (args.size() != 2) return usageError("usage: vantor scan N FOLDER");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");
    const std::string folder = fullPath(args[1]);
    // A mistyped folder would otherwise empty the window's list.
    if (!cad::sys::folderExists(folder)) return failure("no folder " + folder);

    RegistrySession session;
    if (!session.select(*position)) return kExitFailure;
    session.dialogs().pushPath(folder);
    session.registration().scanFolder();
    const bool error = session.printMessages();
    printEntries(session.list(), 0);
    std::cout << session.list().size() << " drawings registered\n";
    return error ? kExitFailure : kExitOk;
}

int runOptimise(std::vector<std::string> args) {
    if (args.size() != 1) return usageError("usage: vantor optimise N");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");

    RegistrySession session;
    if (!session.select(*position)) return kExitFailure;
    const int removed = session.registration().optimise();
    // A list that could not be saved, or that another program held, was shown as an error.
    if (session.printMessages()) return kExitFailure;
    std::cout << "removed " << removed << " inactive drawings\n";
    return kExitOk;
}

std::optional<int> delimiterNamed(const std::string& name) {
    if (name == "comma") return 0;
    if (name == "bar") return 1;
    if (name == "tab") return 2;
    return std::nullopt;
}

int runExport(std::vector<std::string> args) {
    std::optional<int> delimiter;
    for (auto flag = args.begin(); flag != args.end(); ++flag) {
        if (*flag != "--delimiter") continue;
        if (flag + 1 == args.end() || !(delimiter = delimiterNamed(*(flag + 1))))
            return usageError("--delimiter takes comma, bar or tab");
        args.erase(flag, flag + 2);
        break;
    }
    if (args.size() != 2) return usageError("usage: vantor export N FILE [--delimiter ...]");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");

    RegistrySession session;
    if (!session.select(*position)) return kExitFailure;
    session.settings().savePath = fullPath(args[1]);
    if (delimiter) session.settings().delimiter = *delimiter;
    const bool written =
        CsvExport(session.settings(), session.tree()).runAndReport(session.dialogs());
    session.printMessages();
    return written ? kExitOk : failure("could not write " + session.settings().savePath);
}

std::string joinedKeys(const std::vector<std::string>& keys) {
    std::string joined;
    for (const std::string& key : keys) joined += (joined.empty() ? "" : "/") + key;
    return joined;
}

void printHits(const PartSearchResult& hits, bool json) {
    if (!json) {
        for (std::size_t i = 0; i < hits.size(); ++i) {
            const PartSearchEntry& part = hits.entry(i);
            std::cout << hits.drawingPath(i) << '\t' << joinedKeys(part.keys) << '\t'
                      << part.recordKey << '\t' << part.kname << '\t' << part.ename << '\t'
                      << part.spec << '\n';
        }
        return;
    }
    apps::JsonWriter out(std::cout);
    out.beginArray();
    for (std::size_t i = 0; i < hits.size(); ++i) {
        const PartSearchEntry& part = hits.entry(i);
        out.beginObject().member("drawing", hits.drawingPath(i)).key("group").beginArray();
        for (const std::string& key : part.keys) out.value(key);
        out.endArray()
            .member("key", part.recordKey)
            .member("kname", part.kname)
            .member("ename", part.ename)
            .member("spec", part.spec)
            .member("material", part.material)
            .endObject();
    }
    out.endArray();
    std::cout << '\n';
}

int runSearch(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    const bool everyWindow = takeFlag(args, "--all-windows");
    if (args.size() < 2) return usageError("usage: vantor search N WORDS... [--all-windows] [--json]");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");

    // Selecting the window loads its drawings, which brings their caches up to date.
    RegistrySession session;
    if (!session.select(*position)) return kExitFailure;
    std::vector<std::string> drawings = session.list().paths();
    if (everyWindow) {
        drawings = drawingsOfEveryWindow(session.windows());
        for (const std::string& path : drawings) session.tree().loadDrawing(path);
    }
    if (session.printMessages()) return kExitFailure;
    PartSearchIndex index;
    indexDrawings(index, drawings);
    std::string query;
    for (std::size_t i = 1; i < args.size(); ++i) query += (i > 1 ? " " : "") + args[i];
    const PartSearchResult hits = index.find(query);
    printHits(hits, json);
    // As grep does: a search that finds nothing is not an error, but a script can tell.
    if (hits.empty()) std::cerr << "vantor: no part holds every word of '" << query << "'\n";
    return hits.empty() ? kExitFailure : kExitOk;
}

}  // namespace

void addRegistryCommands(std::vector<CliCommand>& commands) {
    commands.push_back({"register",
                        "  register N PATH...\n"
                        "      Registers drawings in window N as the file dialog does: each one\n"
                        "      read at once (inactive when its library data cannot be read), each\n"
                        "      duplicate announced, the list saved.",
                        runRegister});
    commands.push_back(
        {"scan",
         "  scan N FOLDER\n"
         "      Replaces the list of window N with every *.dwg and *.dxf file below\n"
         "      FOLDER (subfolders first, then the folder's own files, in name\n"
         "      order) whose library data can be read, and saves it.",
         runScan});
    commands.push_back({"optimise",
                        "  optimise N\n"
                        "      Removes the drawings of window N whose library data cannot be read.",
                        runOptimise});
    commands.push_back({"export",
                        "  export N FILE [--delimiter comma|bar|tab]\n"
                        "      Writes the part records of every drawing of window N to FILE, one\n"
                        "      line per record, in code page 949 with CR LF line ends. Without\n"
                        "      --delimiter the separator set in Vantor.ini is used.",
                        runExport});
    commands.push_back({"search",
                        "  search N WORDS... [--all-windows] [--json]\n"
                        "      Lists the parts of window N's drawings (of every window with\n"
                        "      --all-windows) whose catalogue texts hold every word: in any order,\n"
                        "      anywhere in a word, Latin letters in either case, a Korean initial\n"
                        "      consonant for any syllable that begins with it. One line per part:\n"
                        "      drawing, group path, record key, Korean name, English name,\n"
                        "      specification, separated by tabs.",
                        runSearch});
}

}  // namespace vantor::cli
