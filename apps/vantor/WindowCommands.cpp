// Subcommands over the management windows and their registered-drawing lists: list, add,
// rename and delete windows, and show a window's drawings.
#include <iostream>
#include <string>
#include <vector>

#include "apps/common/JsonWriter.h"
#include "apps/vantor/CliCommand.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/FileError.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor::cli {

namespace {

using apps::JsonWriter;

using Outcome = ManagementWindows::Outcome;

// The command line does not read drawings, so there is no tree to rebuild.
class NoTree : public TreeRebuilder {
public:
    void rebuildFromList(DrawingList&) override {}
};

// The management windows of the module folder, with dialogs that answer OK (and the name
// given on the command line). Settings are read for curListName but never written back: the
// library window owns Vantor.ini.
class WindowSession {
public:
    WindowSession() : windows_(loadedSettings(settings_), list_, tree_, dialogs_) {
        windows_.loadTabList();
    }

    ManagementWindows& windows() { return windows_; }
    DrawingList& list() { return list_; }
    cad::app::ScriptedDialogs& dialogs() { return dialogs_; }

    bool select(int position) { return selectWindow(windows_, position); }

    // Every message the operation showed, as "[title] text"; errors go to stderr.
    void printMessages() const {
        for (const auto& box : dialogs_.messageBoxes()) {
            std::ostream& out = box.icon() == cad::app::MB_ICONERROR ? std::cerr : std::cout;
            out << '[' << box.title << "] " << box.text << '\n';
        }
    }

    int finish(Outcome outcome) const {
        printMessages();
        switch (outcome) {
            case Outcome::Done:
                return kExitOk;
            case Outcome::NotSaved:
                return failure(cad::sys::lastFileError().text);
            case Outcome::Cancelled:
            case Outcome::Refused:
                break;
        }
        return kExitFailure;
    }

private:
    static ModuleSettings& loadedSettings(ModuleSettings& settings) {
        settings.load();
        return settings;
    }

    ModuleSettings settings_;
    DrawingList list_;
    NoTree tree_;
    cad::app::ScriptedDialogs dialogs_;
    ManagementWindows windows_;
};

int runWindows(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    if (!args.empty()) return usageError("windows takes no arguments but --json");
    WindowSession session;
    const ManagementWindows& windows = session.windows();
    const auto& names = windows.names();

    auto entries = [&](int position) {
        auto texts = ListFile::readAll(windows.listFile(position));
        return texts ? static_cast<int>(texts->size()) : 0;
    };
    if (json) {
        JsonWriter out(std::cout);
        out.beginObject().member("selected", windows.selection()).key("windows").beginArray();
        for (int i = 0; i < static_cast<int>(names.size()); ++i) {
            out.beginObject()
                .member("position", i)
                .member("name", names[i])
                .member("listFile", windows.listFile(i))
                .member("entries", entries(i))
                .endObject();
        }
        out.endArray().endObject();
        std::cout << '\n';
    } else {
        for (int i = 0; i < static_cast<int>(names.size()); ++i) {
            std::cout << (i == windows.selection() ? "* " : "  ") << i << '\t' << names[i] << '\t'
                      << windows.listFile(i) << '\t' << entries(i) << '\n';
        }
    }
    session.printMessages();
    return kExitOk;
}

int runWindow(std::vector<std::string> args) {
    if (args.empty()) return usageError("window needs add, rename or delete");
    const std::string action = args[0];
    if (action == "add") {
        if (args.size() != 2) return usageError("usage: vantor window add NAME");
        WindowSession session;
        session.dialogs().pushText(args[1]);
        const int code = session.finish(session.windows().addWindow());
        if (code == kExitOk) {
            std::cout << "added window " << session.windows().names().size() - 1 << ": " << args[1]
                      << '\n';
        }
        return code;
    }

    const bool rename = action == "rename";
    if (!rename && action != "delete") {
        return usageError("unknown window action '" + action + "'");
    }
    if (args.size() != (rename ? 3u : 2u)) {
        return usageError(rename ? "usage: vantor window rename N NAME"
                                 : "usage: vantor window delete N");
    }
    const auto position = parsePosition(args[1]);
    if (!position) return usageError("'" + args[1] + "' is not a window position");

    WindowSession session;
    if (!session.select(*position)) return kExitFailure;
    if (rename) {
        session.dialogs().pushText(args[2]);
        return session.finish(session.windows().renameWindow());
    }
    return session.finish(session.windows().deleteWindow());
}

int runList(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    if (args.size() != 1) return usageError("usage: vantor list N [--json]");
    const auto position = parsePosition(args[0]);
    if (!position) return usageError("'" + args[0] + "' is not a window position");

    WindowSession session;
    if (!session.select(*position)) return kExitFailure;
    const DrawingList& list = session.list();
    if (json) {
        JsonWriter out(std::cout);
        out.beginObject()
            .member("position", *position)
            .member("name", session.windows().names()[*position])
            .key("drawings")
            .beginArray();
        for (const RegisteredDrawing& entry : list) {
            out.beginObject()
                .member("path", entry.path)
                .member("drive", entry.drive)
                .member("dir", entry.dir)
                .member("name", entry.name)
                .member("ext", entry.ext)
                .member("active", entry.active)
                .endObject();
        }
        out.endArray().endObject();
        std::cout << '\n';
    } else {
        for (const RegisteredDrawing& entry : list) {
            std::cout << entry.path << '\t' << entry.drive << '\t' << entry.dir << '\t'
                      << entry.name << '\t' << entry.ext << '\t' << entry.active << '\n';
        }
    }
    session.printMessages();
    return kExitOk;
}

}  // namespace

void addWindowCommands(std::vector<CliCommand>& commands) {
    commands.push_back({"windows",
                        "  windows [--json]\n"
                        "      The management windows: position, name, list file and the number\n"
                        "      of registered drawings; '*' marks the window selected last.",
                        runWindows});
    commands.push_back({"window",
                        "  window add NAME\n"
                        "      Appends a management window (its list starts empty).\n"
                        "  window rename N NAME\n"
                        "      Renames window N; its list file stays.\n"
                        "  window delete N\n"
                        "      Deletes window N and its list, renumbering the list files behind\n"
                        "      it. Window 0, the main window, cannot be deleted.",
                        runWindow});
    commands.push_back({"list",
                        "  list N [--json]\n"
                        "      The registered drawings of window N: path, drive, folder, name,\n"
                        "      extension and active flag.",
                        runList});
}

}  // namespace vantor::cli
