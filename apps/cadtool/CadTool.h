// cadtool: the drawing engine from the command line. `info` describes a drawing, `convert`
// writes it again as R2000 or R14, `audit` lists (and fixes) its data problems, `render` draws
// it into a picture.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace cad::db {
class Database;
}

namespace cadtool {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;  // the command failed, or the audit found errors
inline constexpr int kExitUsage = 2;

class CadTool {
public:
    CadTool(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    // Runs the command in `args` (the words after the program name); answers the exit code.
    int run(const std::vector<std::string>& args);

    static const char* helpText();

private:
    int info(const std::vector<std::string>& args);
    int convert(const std::vector<std::string>& args);
    int audit(const std::vector<std::string>& args);
    int render(const std::vector<std::string>& args);

    int usageError(const std::string& message);
    // Reads `path`; on failure says why on stderr ("cadtool: FILE: status (detail)").
    bool load(const std::string& path, cad::db::Database& db);
    bool save(const std::string& path, cad::db::Database& db, bool r14);

    std::ostream& out_;
    std::ostream& err_;
};

}  // namespace cadtool
