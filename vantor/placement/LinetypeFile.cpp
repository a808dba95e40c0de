// Reading linetype files and loading their definitions into drawings.
#include "vantor/placement/LinetypeFile.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <memory>

#include "cad/db/Database.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"

namespace vantor {

using cad::ErrorStatus;

namespace {

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool parseNumber(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

// The pattern line after "A,": comma-separated lengths; nothing at all is a solid line.
bool parsePattern(std::string_view text, std::vector<double>& dashes) {
    if (trimmed(text).empty()) return true;
    while (true) {
        const std::size_t comma = text.find(',');
        double length = 0.0;
        if (!parseNumber(text.substr(0, comma), length)) return false;
        dashes.push_back(length);
        if (comma == std::string_view::npos) return true;
        text.remove_prefix(comma + 1);
    }
}

}  // namespace

bool LinetypeFile::parse(std::string_view text, std::string_view fileName,
                         std::vector<LinetypeDefinition>& definitions, std::string& error) {
    auto fail = [&](int line, std::string_view expected) {
        error = std::string(fileName) + ":" + std::to_string(line) + ": " + std::string(expected);
        return false;
    };
    int lineNumber = 0;
    bool awaitingPattern = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++lineNumber;
        if (line.empty() || line.starts_with(";;")) continue;
        if (awaitingPattern) {
            if (!line.starts_with("A,") && line != "A")
                return fail(lineNumber, "expected the pattern line \"A,...\"");
            if (!parsePattern(line.substr(line.size() > 1 ? 2 : 1), definitions.back().dashes))
                return fail(lineNumber, "expected lengths separated by commas");
            awaitingPattern = false;
            continue;
        }
        if (!line.starts_with("*")) return fail(lineNumber, "expected \"*NAME,description\"");
        const std::size_t comma = line.find(',');
        LinetypeDefinition definition;
        definition.name = std::string(trimmed(line.substr(1, comma - 1)));
        if (comma != std::string_view::npos)
            definition.description = std::string(trimmed(line.substr(comma + 1)));
        if (definition.name.empty()) return fail(lineNumber, "expected a linetype name after '*'");
        definitions.push_back(std::move(definition));
        awaitingPattern = true;
    }
    if (awaitingPattern) return fail(lineNumber, "expected the pattern line of the last linetype");
    return true;
}

ErrorStatus LinetypeFile::read(const std::string& path,
                               std::vector<LinetypeDefinition>& definitions, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path + ": cannot be read";
        return ErrorStatus::eFileNotFound;
    }
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return parse(text, path, definitions, error) ? ErrorStatus::eOk : ErrorStatus::eInvalidInput;
}

ErrorStatus loadLineTypeFile(cad::db::Database& db, std::string_view name,
                             const std::string& path) {
    std::vector<LinetypeDefinition> definitions;
    std::string error;
    if (ErrorStatus es = LinetypeFile::read(path, definitions, error); es != ErrorStatus::eOk)
        return es;
    for (const LinetypeDefinition& definition : definitions) {
        if (!cad::db::equalNames(definition.name, name)) continue;
        auto table =
            cad::db::open<cad::db::SymbolTable>(db.linetypeTableId(), cad::db::OpenMode::ForWrite);
        if (!table) return table.openStatus();
        if (table->has(definition.name)) return ErrorStatus::eDuplicateKey;
        auto record = std::make_unique<cad::db::LinetypeTableRecord>();
        record->setName(definition.name);
        record->setComments(definition.description);
        std::vector<cad::db::LinetypeTableRecord::Dash> dashes;
        for (double length : definition.dashes) {
            cad::db::LinetypeTableRecord::Dash dash;
            dash.length = length;
            dashes.push_back(dash);
        }
        record->setDashes(std::move(dashes));
        cad::db::ObjectId id;
        return table->add(std::move(record), id);
    }
    return ErrorStatus::eKeyNotFound;
}

ErrorStatus loadLinetype(cad::db::Database& db, std::string_view name, const std::string& path,
                         cad::db::ObjectId& id, cad::ed::Editor& editor) {
    auto lookUp = [&] {
        auto table =
            cad::db::open<cad::db::SymbolTable>(db.linetypeTableId(), cad::db::OpenMode::ForRead);
        if (!table) return table.openStatus();
        return table->getAt(name, id);
    };
    if (lookUp() == ErrorStatus::eOk) return ErrorStatus::eOk;
    if (ErrorStatus es = loadLineTypeFile(db, name, path); es != ErrorStatus::eOk) {
        editor.printf("\n%s", std::string(cad::errorStatusName(es)).c_str());
        return es;
    }
    return lookUp();
}

}  // namespace vantor
