// The library window's export of the part records shown in the category tree to a flat text
// file for spreadsheets: one line per record, fields as stored, joined by the separator the
// settings choose.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class CVNTreeBase;
class ModuleSettings;

class CsvExport {
public:
    CsvExport(const ModuleSettings& settings, const CVNTreeBase& tree);

    // "," for Delimiter 0, "|" for 1, a tab for 2 and nothing for any other value, so that the
    // fields of a file written with an unknown setting run together as they always have.
    static std::string_view separator(int delimiter);

    // Writes savePath (replacing it) in text mode and code page 949: the header line, then
    // the records of every drawing the tree shows, in tree order. Fields are not quoted, so a
    // separator inside one adds a column. Control characters cannot be held (a line break
    // would split the record) and are left out; each record that lost some is named in
    // `cutRecords` ("<drawing>: <name>"). False only when the file cannot be opened.
    bool run(std::vector<std::string>* cutRecords = nullptr) const;
    // What the library window does after the settings dialog: without a save path it says so;
    // otherwise it exports and, when that worked, names the records that lost control
    // characters and says where the file went.
    bool runAndReport(cad::app::UserDialogs& dialogs) const;

private:
    const ModuleSettings& settings_;
    const CVNTreeBase& tree_;
};

}  // namespace vantor
