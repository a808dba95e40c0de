// Linetype files (".lin"): the definitions a drawing loads on demand, read from the text file
// shipped beside the module, and the loading of one linetype into a drawing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace vantor {

// The file every placement loads its linetypes from, in the module's folder.
inline constexpr std::string_view kLinetypeFileName = "acadiso.lin";

struct LinetypeDefinition {
    std::string name;
    std::string description;
    // Dashes positive, gaps negative, dots 0, in pattern order; empty for a solid line.
    std::vector<double> dashes;
};

class LinetypeFile {
public:
    // The definitions of a file's text, in file order. ";;" starts a comment line; each
    // "*NAME,description" line is followed by its "A,..." pattern line. A malformed file
    // answers false with "<file>:<line>: <what was expected>" in `error`.
    static bool parse(std::string_view text, std::string_view fileName,
                      std::vector<LinetypeDefinition>& definitions, std::string& error);
    // eFileNotFound when the file cannot be read, eInvalidInput when it does not parse.
    static cad::ErrorStatus read(const std::string& path,
                                 std::vector<LinetypeDefinition>& definitions, std::string& error);
};

// Adds the linetype `name` (any case) from the file to the drawing. eKeyNotFound when the file
// has no such linetype, eDuplicateKey when the drawing has one already.
cad::ErrorStatus loadLineTypeFile(cad::db::Database& db, std::string_view name,
                                  const std::string& path);

// The drawing's linetype `name`, loaded from the file first when the drawing lacks it. A
// failed load is printed on the command line with its status and answered.
cad::ErrorStatus loadLinetype(cad::db::Database& db, std::string_view name, const std::string& path,
                              cad::db::ObjectId& id, cad::ed::Editor& editor);

}  // namespace vantor
