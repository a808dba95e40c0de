// The drawing explorer's operations on a drawing file chosen in it: reading it to show its
// library data, with the messages for a missing, damaged or shared file, and writing an R14
// copy of it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace cad::app {
class DocumentManager;
class UserDialogs;
}  // namespace cad::app
namespace cad::db {
class Database;
}

namespace vantor {

class DrawingExplorer {
public:
    enum class Selection {
        Shown,     // read; the views show its library data
        ReadOnly,  // another program holds it: read shared, and the user told it is read only
        Missing,   // 76, told
        Damaged,   // 190, told
        NoData,    // any other failure: the views stay empty without a word
    };
    enum class Copy {
        Written,
        Refused,    // open in the host: converting it would not write what the user sees
        Cancelled,  // the save dialog was cancelled
        Failed,     // told
    };

    DrawingExplorer(cad::app::DocumentManager& documents, cad::app::UserDialogs& dialogs);
    ~DrawingExplorer();

    // Reads the chosen drawing into a fresh database, which stays the selected drawing's.
    Selection selectDrawing(const std::string& path);
    const std::string& selectedPath() const { return path_; }
    // The selected drawing's database; nullptr when it could not be read.
    cad::db::Database* selectedDatabase() const { return database_.get(); }

    // True when a document of the host has the drawing open.
    bool isOpenInHost(const std::string& path) const;

    // Refused while the drawing is open in the host; otherwise the save dialog, and the
    // selected drawing written as an R14 DWG file to the path chosen.
    Copy writeR14Copy();
    // The copy is a DWG file: a chosen name whose extension is not ".dwg" (in any case) gets
    // ".dwg" appended.
    static std::string r14CopyPath(std::string_view chosen);

private:
    cad::app::DocumentManager& documents_;
    cad::app::UserDialogs& dialogs_;
    std::string path_;
    std::unique_ptr<cad::db::Database> database_;
};

}  // namespace vantor
