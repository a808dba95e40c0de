// For tests: running the independent programs that check what the engine writes. ezdxf (a
// Python DXF library, Debian package python3-ezdxf) reads a file and audits it; LibreCAD
// renders it to a PDF. Tests skip when the program is not installed.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace vantor::test {

struct ExternalRun {
    int exitCode = -1;
    std::string output;  // standard output and error together
};

// Runs a shell command and collects what it prints.
inline ExternalRun runCommand(const std::string& command) {
    ExternalRun run;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) run.output.append(buffer, n);
    const int status = ::pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

inline std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

inline bool ezdxfAvailable() {
    return runCommand("/usr/bin/python3 -c 'import ezdxf'").exitCode == 0;
}

inline bool librecadAvailable() {
    return std::filesystem::exists("/usr/bin/librecad");
}

// Runs a Python script with ezdxf importable; the script gets the path as sys.argv[1] and
// `more` after it.
inline ExternalRun runEzdxf(const std::string& script, const std::string& path,
                            const std::vector<std::string>& more = {}) {
    std::string command = "/usr/bin/python3 -c " + shellQuoted(script) + " " + shellQuoted(path);
    for (const std::string& arg : more) command += " " + shellQuoted(arg);
    return runCommand(command);
}

// Reads each file with ezdxf.readfile and audits it; prints one line per file, "errors <n>
// fixes <n>" (with the errors' messages before it), or the exception that stopped the read.
// One run for many files: starting Python with ezdxf takes most of the time.
inline ExternalRun ezdxfAudit(const std::vector<std::string>& paths) {
    if (paths.empty()) return {};
    return runEzdxf(
        "import sys, ezdxf\n"
        "for path in sys.argv[1:]:\n"
        "    try:\n"
        "        auditor = ezdxf.readfile(path).audit()\n"
        "        for e in auditor.errors: print('error', e.code, e.message)\n"
        "        print('errors', len(auditor.errors), 'fixes', len(auditor.fixes))\n"
        "    except Exception as e:\n"
        "        print('failed', type(e).__name__, e)\n",
        paths.front(), std::vector<std::string>(paths.begin() + 1, paths.end()));
}

inline ExternalRun ezdxfAudit(const std::string& path) {
    return ezdxfAudit(std::vector{path});
}

// Renders `dxf` to a PDF with LibreCAD, headless; the PDF is written beside the file, with
// its name (this LibreCAD takes -o as a flag, not as the output's name). Answers its path.
inline std::string librecadToPdf(const std::string& dxf, ExternalRun& run) {
    const std::filesystem::path path(dxf);
    std::filesystem::path pdf = path;
    pdf.replace_extension(".pdf");
    std::filesystem::remove(pdf);
    run = runCommand("cd " + shellQuoted(path.parent_path().string()) +
                     " && QT_QPA_PLATFORM=offscreen timeout 120 /usr/bin/librecad dxf2pdf " +
                     shellQuoted(path.filename().string()));
    return pdf.string();
}

}  // namespace vantor::test
