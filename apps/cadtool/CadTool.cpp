// The commands of cadtool. Output is for people unless --json is given; JSON keys are written
// in byte order so scripts can compare outputs as text.
#include "apps/cadtool/CadTool.h"

#include <QGuiApplication>
#include <malloc.h>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "apps/cadtool/DrawingSummary.h"
#include "apps/common/JsonWriter.h"
#include "cad/db/Audit.h"
#include "cad/db/Database.h"
#include "cad/gs/OffscreenRender.h"

namespace cadtool {
namespace {

// "1 problem", "2 problems".
std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

using cad::ErrorStatus;
using cad::db::AuditIssue;
using cad::db::Database;

// The words of a command split into file arguments and options; an option in `valued` takes
// the next word as its value.
struct Arguments {
    std::vector<std::string> files;
    std::map<std::string, std::string> options;
    std::string error;  // set when an option is unknown or lacks its value

    Arguments(const std::vector<std::string>& words, const std::vector<std::string>& flags,
              const std::vector<std::string>& valued) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (word.size() < 2 || word.compare(0, 2, "--") != 0) {
                files.push_back(word);
            } else if (contains(flags, word)) {
                options[word] = "";
            } else if (contains(valued, word)) {
                if (i + 1 == words.size()) {
                    error = word + " needs a value";
                    return;
                }
                options[word] = words[++i];
            } else {
                error = "unknown option '" + word + "'";
                return;
            }
        }
    }
    bool has(const std::string& option) const { return options.count(option) != 0; }

    static bool contains(const std::vector<std::string>& list, const std::string& word) {
        for (const std::string& item : list) {
            if (item == word) return true;
        }
        return false;
    }
};

// A DWG file starts with its version ("AC1015"); a DXF file never does.
bool looksLikeDwg(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char head[6] = {};
    if (!in.read(head, sizeof head)) return false;
    const std::string_view text(head, sizeof head);
    return text.substr(0, 3) == "AC1" && text[3] >= '0' && text[3] <= '9';
}

std::string statusText(ErrorStatus es, const std::string& path) {
    switch (es) {
        case ErrorStatus::eFileNotFound:
            return "file not found";
        case ErrorStatus::eFileAccessErr:
            return "file locked or not accessible";
        case ErrorStatus::eBadDwgFile:
            return looksLikeDwg(path) ? "DWG file not read" : "damaged file";
        case ErrorStatus::eFileReadError:
            return "file cannot be read";
        case ErrorStatus::eFileWriteError:
            return "file cannot be written";
        default:
            return "error " + std::to_string(static_cast<int>(es));
    }
}

// The engine's messages start with the file name, which the tool's message names already.
std::string detailOf(const std::string& message, const std::string& path) {
    const std::string prefix = path + ": ";
    if (message.compare(0, prefix.size(), prefix) == 0) return message.substr(prefix.size());
    return message;
}

void writeIssueJson(apps::JsonWriter& json, const AuditIssue& issue,
                    std::optional<std::string_view> source) {
    json.beginObject();
    json.member("code", issue.code);
    json.member("fixed", issue.fixed);
    json.member("handle", issue.handle.toHex());
    json.member("message", issue.message);
    if (source) json.member("source", *source);
    json.endObject();
}

void writeCountsJson(apps::JsonWriter& json, const std::map<std::string, std::size_t>& counts) {
    json.beginObject();
    for (const auto& [type, count] : counts) json.member(type, count);
    json.endObject();
}

void writeCountsText(std::ostream& out, const char* title,
                     const std::map<std::string, std::size_t>& counts) {
    std::size_t total = 0;
    for (const auto& entry : counts) total += entry.second;
    out << title << ": " << total << '\n';
    for (const auto& [type, count] : counts) out << "  " << type << ' ' << count << '\n';
}

void writeIssueText(std::ostream& out, const AuditIssue& issue, std::string_view how) {
    out << issue.code << ' ' << issue.handle.toHex() << ' ' << issue.message;
    if (issue.fixed) out << " [" << how << ']';
    out << '\n';
}

// "1920x1080".
bool parseSize(const std::string& text, int& width, int& height) {
    char tail = 0;
    return std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &tail) == 2 && width > 0 &&
           height > 0 && width <= 16384 && height <= 16384;
}

// "X1,Y1,X2,Y2", any two opposite corners.
bool parseWindow(const std::string& text, cad::gs::Box2d& box) {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    char tail = 0;
    if (std::sscanf(text.c_str(), "%lf,%lf,%lf,%lf%c", &x1, &y1, &x2, &y2, &tail) != 4) return false;
    box = {};
    box.add(x1, y1);
    box.add(x2, y2);
    return !box.isEmpty() && box.width() > 0.0 && box.height() > 0.0;
}

// Fonts and pictures need Qt's GUI side; without a display it runs on the offscreen platform.
void ensureGuiApplication() {
    if (QGuiApplication::instance() != nullptr) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "cadtool";
    static char* argv[] = {name, nullptr};
    static QGuiApplication application(argc, argv);
}

}  // namespace

const char* CadTool::helpText() {
    return R"help(Usage: cadtool COMMAND FILE... [OPTIONS]

Reads DXF drawings (ASCII or binary, R12 to 2018) and DWG drawings (R13, R14 and 2000)
with the drawing engine; DWG 2004 and later are refused. Problems found while reading are
repaired as the drawing is loaded and reported as load issues; DWG objects of types the
engine does not read are listed there too (code 118).

Commands:
  cadtool info FILE [--json]
      The drawing's version ($ACADVER as read), code page, the number of entities, objects
      and table records of each type, the keys of the named-objects dictionary, and the
      problems repaired while loading. Entities are counted in every block and layout,
      attributes and polyline vertices included, BLOCK, ENDBLK and SEQEND not; objects are
      what the OBJECTS section holds; erased objects are not counted.

  cadtool convert IN OUT [--r14]
      Reads IN and writes OUT as an R2000 (AC1015) DXF file, or R14 (AC1014) with --r14; an
      OUT named .dwg is written as a DWG file of that version, whose left-out types are named.
      What R14 cannot hold (names longer than 31 bytes or with characters it refuses, block
      previews) is reported on stderr as "cadtool: warning: OUT: ..." and written unchanged
      or left out. OUT is replaced only once it is completely written.

  cadtool audit FILE [--json] [--fix OUT]
      Lists the problems repaired while loading and the data problems the audit finds
      (broken owner links, references naming nothing, dangling dictionary entries, layouts
      and block records that disagree), one per line: CODE HANDLE MESSAGE, with
      "[repaired on load]" or "[fixed]" after those that were repaired. With --fix the
      problems that are safe to repair are repaired and the drawing is written to OUT
      (R2000). Exits with 1 when a problem is left unrepaired.

  cadtool render FILE OUT [--size WxH] [--window X1,Y1,X2,Y2] [--layout NAME]
                 [--block NAME] [--background black|white]
      Draws the drawing into OUT, a PNG, SVG or PDF file by its extension: model space, a
      layout (its paper with the viewports' views) or one block definition (--block, with
      its attribute definitions' tags), fitted to its extents or to the window given in
      drawing units. --size is in pixels (points for PDF), 1920x1080 unless given; the
      background is black unless white is asked for. OUT is replaced only once it is
      completely written. Prints the window drawn, so another renderer can draw the same.

  cadtool --help
      This text.

JSON output (--json): one object on one line, UTF-8, keys in byte order.
  info:
    {"codepage": "ANSI_949",
     "entities": {"INSERT": 2, "LINE": 12, ...},
     "load_issues": [ISSUE, ...],
     "named_objects": ["ACAD_GROUP", "ACAD_LAYOUT", ...],
     "objects": {"DICTIONARY": 14, "XRECORD": 3, ...},
     "tables": {"BLOCK_RECORD": 2, "LAYER": 1, ...},
     "version": "AC1015"}
  audit:
    {"errors": 1,
     "issues": [ISSUE, ...]}
    where "errors" counts the issues left unrepaired.
  ISSUE:
    {"code": 105, "fixed": true, "handle": "1F", "message": "...", "source": "audit"}
    "source" ("load" or "audit") is written in the audit's list only; "handle" is the
    object's handle in hexadecimal, "0" when the problem concerns no one object.

Issue codes:
  101 duplicate handle          102 missing handle          103 owner names no object
  104 owners form a loop        105 dangling dictionary entry or extension dictionary
  106 missing symbol table record                           107 missing block
  108 missing standard object   109 bad table record        110 stray sub-entity
  111 unreadable link           112 owner does not list it  113 no owner
  114 listed twice              115 reference names nothing
  116 hard pointer to an erased object                      117 layout link broken
  118 DWG objects of a type not read (per type, with the count)
  119 DWG check values that do not match (the count; read as it stands)

Exit codes: 0 success; 1 failure (the message on stderr names the file and the reason,
e.g. "cadtool: drawing.dxf: damaged file (line 1234: ...)") or problems left by the audit;
2 bad usage.
)help";
}

int CadTool::run(const std::vector<std::string>& args) {
    if (args.empty()) return usageError("no command given");
    const std::string& command = args.front();
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "--help" || command == "-h" || command == "help") {
        out_ << helpText();
        return kExitOk;
    }
    if (command == "info") return info(rest);
    if (command == "convert") return convert(rest);
    if (command == "audit") return audit(rest);
    if (command == "render") return render(rest);
    return usageError("unknown command '" + command + "'");
}

int CadTool::usageError(const std::string& message) {
    err_ << "cadtool: " << message << "\nTry 'cadtool --help'.\n";
    return kExitUsage;
}

bool CadTool::load(const std::string& path, Database& db) {
    // Deny-none: the tool only reads, so a drawing a host holds open can still be inspected.
    const ErrorStatus es = db.readDwgFile(path, cad::sys::ShareMode::DenyNone);
    if (es == ErrorStatus::eOk) return true;
    const std::string detail = detailOf(db.lastErrorMessage(), path);
    err_ << "cadtool: " << path << ": " << statusText(es, path);
    if (!detail.empty()) err_ << " (" << detail << ')';
    err_ << '\n';
    return false;
}

bool CadTool::save(const std::string& path, Database& db, bool r14) {
    const ErrorStatus es =
        db.saveAs(path, r14 ? cad::db::DxfVersion::R14 : cad::db::DxfVersion::R2000);
    for (const std::string& message : db.saveMessages())
        err_ << "cadtool: warning: " << path << ": " << message << '\n';
    if (es == ErrorStatus::eOk) return true;
    const std::string detail = detailOf(db.lastErrorMessage(), path);
    err_ << "cadtool: " << path << ": " << statusText(es, path);
    if (!detail.empty()) err_ << " (" << detail << ')';
    err_ << '\n';
    return false;
}

int CadTool::info(const std::vector<std::string>& words) {
    const Arguments args(words, {"--json"}, {});
    if (!args.error.empty()) return usageError(args.error);
    if (args.files.size() != 1) return usageError("info takes one FILE");
    Database db(false, true);
    if (!load(args.files[0], db)) return kExitFailure;
    const DrawingSummary summary = DrawingSummary::of(db);

    if (args.has("--json")) {
        apps::JsonWriter json(out_);
        json.beginObject();
        json.member("codepage", summary.codePage);
        json.key("entities");
        writeCountsJson(json, summary.entities);
        json.key("load_issues").beginArray();
        for (const AuditIssue& issue : db.loadIssues()) writeIssueJson(json, issue, std::nullopt);
        json.endArray();
        json.key("named_objects").beginArray();
        for (const std::string& key : summary.namedObjects) json.value(key);
        json.endArray();
        json.key("objects");
        writeCountsJson(json, summary.objects);
        json.key("tables");
        writeCountsJson(json, summary.tables);
        json.member("version", summary.version);
        json.endObject();
        out_ << '\n';
        return kExitOk;
    }
    out_ << "version: " << summary.version << '\n';
    out_ << "code page: " << summary.codePage << '\n';
    writeCountsText(out_, "entities", summary.entities);
    writeCountsText(out_, "objects", summary.objects);
    writeCountsText(out_, "table records", summary.tables);
    out_ << "named objects:";
    for (const std::string& key : summary.namedObjects) out_ << ' ' << key;
    out_ << '\n';
    out_ << "load issues: " << db.loadIssues().size() << '\n';
    for (const AuditIssue& issue : db.loadIssues()) {
        out_ << "  ";
        writeIssueText(out_, issue, "repaired on load");
    }
    return kExitOk;
}

int CadTool::convert(const std::vector<std::string>& words) {
    const Arguments args(words, {"--r14"}, {});
    if (!args.error.empty()) return usageError(args.error);
    if (args.files.size() != 2) return usageError("convert takes IN and OUT");
    Database db(false, true);
    if (!load(args.files[0], db)) return kExitFailure;
    const bool r14 = args.has("--r14");
    if (!save(args.files[1], db, r14)) return kExitFailure;
    out_ << args.files[0] << " -> " << args.files[1] << " (" << (r14 ? "AC1014" : "AC1015")
         << ")\n";
    if (!db.loadIssues().empty()) {
        const std::size_t count = db.loadIssues().size();
        out_ << counted(count, "problem") << (count == 1 ? " was" : " were")
             << " repaired while reading (cadtool audit lists them)\n";
    }
    return kExitOk;
}

int CadTool::audit(const std::vector<std::string>& words) {
    const Arguments args(words, {"--json"}, {"--fix"});
    if (!args.error.empty()) return usageError(args.error);
    if (args.files.size() != 1) return usageError("audit takes one FILE");
    Database db(false, true);
    if (!load(args.files[0], db)) return kExitFailure;
    const bool fix = args.has("--fix");
    const std::vector<AuditIssue> found = cad::db::audit(db, fix);
    if (fix && !save(args.options.at("--fix"), db, false)) return kExitFailure;

    std::size_t errors = 0;
    for (const AuditIssue& issue : found) {
        if (!issue.fixed) ++errors;
    }
    if (args.has("--json")) {
        apps::JsonWriter json(out_);
        json.beginObject();
        json.member("errors", errors);
        json.key("issues").beginArray();
        for (const AuditIssue& issue : db.loadIssues()) writeIssueJson(json, issue, "load");
        for (const AuditIssue& issue : found) writeIssueJson(json, issue, "audit");
        json.endArray();
        json.endObject();
        out_ << '\n';
    } else {
        for (const AuditIssue& issue : db.loadIssues())
            writeIssueText(out_, issue, "repaired on load");
        for (const AuditIssue& issue : found) writeIssueText(out_, issue, "fixed");
        const std::size_t total = db.loadIssues().size() + found.size();
        if (total == 0) {
            out_ << "no problems\n";
        } else {
            out_ << counted(total, "problem") << ", " << total - errors << " repaired, " << errors
                 << " left\n";
        }
    }
    return errors == 0 ? kExitOk : kExitFailure;
}

int CadTool::render(const std::vector<std::string>& words) {
    const Arguments args(words, {}, {"--size", "--window", "--layout", "--block", "--background"});
    if (!args.error.empty()) return usageError(args.error);
    if (args.files.size() != 2) return usageError("render takes FILE and OUT");
    cad::gs::RenderRequest request;
    if (args.has("--size") && !parseSize(args.options.at("--size"), request.width, request.height))
        return usageError("--size wants WIDTHxHEIGHT in pixels, e.g. 1920x1080");
    if (args.has("--window")) {
        cad::gs::Box2d box;
        if (!parseWindow(args.options.at("--window"), box))
            return usageError("--window wants X1,Y1,X2,Y2 with two different corners");
        request.window = box;
    }
    if (args.has("--layout")) request.layout = args.options.at("--layout");
    if (args.has("--block")) request.block = args.options.at("--block");
    if (args.has("--background")) {
        const std::string& background = args.options.at("--background");
        if (background != "black" && background != "white")
            return usageError("--background is black or white");
        request.whiteBackground = background == "white";
    }
    Database db(false, true);
    if (!load(args.files[0], db)) return kExitFailure;
    // What the read needed on its way is handed back before the drawing's geometry is built,
    // so the two never add up.
    malloc_trim(0);
    ensureGuiApplication();
    cad::gs::Box2d shown;
    const std::string error = cad::gs::renderToFile(db, request, args.files[1], &shown);
    if (!error.empty()) {
        err_ << "cadtool: " << args.files[1] << ": " << error << '\n';
        return kExitFailure;
    }
    // The window shown, exactly, so another renderer can be asked for the same picture.
    char window[160];
    std::snprintf(window, sizeof window, "%.17g,%.17g,%.17g,%.17g", shown.minX, shown.minY, shown.maxX, shown.maxY);
    out_ << args.files[0] << " -> " << args.files[1] << " (window " << (shown.isEmpty() ? "none" : window)
         << ")\n";
    return kExitOk;
}

}  // namespace cadtool
