// Writing the part records of the category tree's drawings as separated text.
#include "vantor/ui/export/CsvExport.h"

#include <memory>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/CrtFile.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

// The first 13 labels name the record's texts after the group: KName to User6.
constexpr std::size_t kRecordFieldCount = FieldLabels::User6 + 1;

class LineWriter {
public:
    LineWriter(cad::sys::CrtFile& file, std::string_view separator)
        : file_(file), separator_(separator) {}

    void field(std::string_view text) {
        line_ += text;
        line_ += separator_;
    }
    // The last field of a line is followed by the line feed instead, which text mode stores
    // as CR LF.
    void lastField(std::string_view text) {
        line_ += text;
        line_ += '\n';
        const std::string bytes = cad::sys::utf8ToCp949(line_);
        file_.write(bytes.data(), bytes.size());
        line_.clear();
    }

private:
    cad::sys::CrtFile& file_;
    std::string_view separator_;
    std::string line_;
};

// The header names the view slots and the first 13 fields before "그룹명" and the 13 fields
// again after it, so it is longer than a record line. Spreadsheets made from these files
// expect that layout.
void writeHeader(LineWriter& out, const FieldLabels::Texts& labels) {
    out.field("도면위치");
    for (const std::string& label : labels) out.field(label);
    out.field("그룹명");
    for (std::size_t i = 0; i + 1 < kRecordFieldCount; ++i) out.field(labels[i]);
    out.lastField(labels[kRecordFieldCount - 1]);
}

void writeRecord(LineWriter& out, std::string_view location, const PartRecord& record) {
    out.field(location);
    for (const std::string& block : record.viewBlocks) out.field(block);
    // Texts 0 to 13: the group, then the 13 fields.
    for (std::size_t i = 0; i + 1 < PartRecord::kTextCount; ++i) out.field(record.text(i));
    out.lastField(record.text(PartRecord::kTextCount - 1));
}

// Records in tree order, depth first; a record that cannot be read is left out.
void writeRecordsBelow(LineWriter& out, cad::db::Database& db, const TreeNode& node) {
    for (const auto& child : node.children) {
        if (child->isDictionary()) {
            writeRecordsBelow(out, db, *child);
            continue;
        }
        PartRecord record;
        if (readPartRecord(objectIdOfNode(db, child->id), record) == cad::ErrorStatus::eOk)
            writeRecord(out, child->drawingPath, record);
    }
}

}  // namespace

CsvExport::CsvExport(const ModuleSettings& settings, const CVNTreeBase& tree)
    : settings_(settings), tree_(tree) {}

std::string_view CsvExport::separator(int delimiter) {
    switch (delimiter) {
        case 0:
            return ",";
        case 1:
            return "|";
        case 2:
            return "\t";
        default:
            return "";
    }
}

bool CsvExport::run() const {
    cad::sys::CrtFile file;
    if (file.open(settings_.savePath, "w") != cad::ErrorStatus::eOk) return false;
    LineWriter out(file, separator(settings_.delimiter));
    writeHeader(out, settings_.labels);

    // A drawing's two libraries stand side by side among the roots; it is read once for both.
    std::unique_ptr<cad::db::Database> db;
    for (const auto& root : tree_.roots()) {
        if (!db || db->fileName() != root->drawingPath) db = openLibraryDrawing(root->drawingPath);
        if (db) writeRecordsBelow(out, *db, *root);
    }
    file.close();
    return true;
}

bool CsvExport::runAndReport(cad::app::UserDialogs& dialogs) const {
    if (settings_.savePath.empty()) {
        dialogs.messageBox("저장위치를 지정하지 않았습니다.", "외부저장에러",
                           cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    if (!run()) return false;
    dialogs.messageBox(settings_.savePath + "\"\n에 저장되었습니다.", "저장완료",
                       cad::app::MB_OK | cad::app::MB_ICONINFORMATION);
    return true;
}

}  // namespace vantor
