// Writing the part records of the category tree's drawings as separated text.
#include "vantor/ui/export/CsvExport.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>
#include <vector>

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

// What a field of this file can hold: a control character would break the record's line (or
// end a text-mode read) and is left out, a tab only where it is the separator. `cut` is set
// when something was left out.
std::string heldText(std::string_view text, std::string_view separator, bool& cut) {
    std::string held;
    held.reserve(text.size());
    for (char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 && (c != '\t' || separator == "\t")) {
            cut = true;
            continue;
        }
        held += c;
    }
    return held;
}

class LineWriter {
public:
    LineWriter(cad::sys::CrtFile& file, std::string_view separator)
        : file_(file), separator_(separator) {}

    void field(std::string_view text) {
        line_ += heldText(text, separator_, cut_);
        line_ += separator_;
    }
    // The last field of a line is followed by the line feed instead, which text mode stores
    // as CR LF.
    void lastField(std::string_view text) {
        line_ += heldText(text, separator_, cut_);
        line_ += '\n';
        const std::string bytes = cad::sys::utf8ToCp949(line_);
        file_.write(bytes.data(), bytes.size());
        line_.clear();
    }
    // Whether a field written since the last call lost characters.
    bool takeCut() { return std::exchange(cut_, false); }
    std::string_view separator() const { return separator_; }

private:
    cad::sys::CrtFile& file_;
    std::string_view separator_;
    std::string line_;
    bool cut_ = false;
};

// The columns of a record line after the drawing location, in the field table's CSV order:
// the six view blocks, the group, then the 13 texts.
std::span<const PartFields::Id, PartFields::kCount> recordColumns() {
    return PartFields::inCsvOrder();
}

// The header names every titled field in title order before "그룹명" and the record line's
// columns after the group again after it, so it is longer than a record line. Spreadsheets
// made from these files expect that layout.
void writeHeader(LineWriter& out, const FieldLabels::Texts& labels) {
    out.field("도면위치");
    for (const std::string& label : labels) out.field(label);
    out.field("그룹명");
    const auto columns = recordColumns();
    const auto group = std::find(columns.begin(), columns.end(), PartFields::Group);
    for (auto column = group + 1; column + 1 < columns.end(); ++column) out.field(labels[*column]);
    out.lastField(labels[columns.back()]);
}

// A record that lost characters is named in `cut` by its drawing and its name as written.
void writeRecord(LineWriter& out, std::string_view location, const PartRecord& record,
                 std::vector<std::string>& cut) {
    out.field(location);
    const auto columns = recordColumns();
    for (auto column = columns.begin(); column + 1 < columns.end(); ++column)
        out.field(record.text(*column));
    out.lastField(record.text(columns.back()));
    if (out.takeCut()) {
        bool ignored = false;
        cut.push_back(std::string(location) + ": " +
                      heldText(record.kname, out.separator(), ignored));
    }
}

// Records in tree order, depth first; a record that cannot be read is left out.
void writeRecordsBelow(LineWriter& out, cad::db::Database& db, const TreeNode& node,
                       std::vector<std::string>& cut) {
    for (const auto& child : node.children) {
        if (child->isDictionary()) {
            writeRecordsBelow(out, db, *child, cut);
            continue;
        }
        PartRecord record;
        if (readPartRecord(objectIdOfNode(db, child->id), record) == cad::ErrorStatus::eOk)
            writeRecord(out, child->drawingPath, record, cut);
    }
}

// At most this many records are named in the message; the rest are counted.
constexpr std::size_t kCutRecordsNamed = 10;

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

bool CsvExport::run(std::vector<std::string>* cutRecords) const {
    cad::sys::CrtFile file;
    if (file.open(settings_.savePath, "w") != cad::ErrorStatus::eOk) return false;
    LineWriter out(file, separator(settings_.delimiter));
    writeHeader(out, settings_.labels);
    out.takeCut();  // labels come from the settings dialog, which takes no control characters

    // A drawing's two libraries stand side by side among the roots; it is read once for both.
    std::vector<std::string> cut;
    std::unique_ptr<cad::db::Database> db;
    for (const auto& root : tree_.roots()) {
        if (!db || db->fileName() != root->drawingPath) db = openLibraryDrawing(root->drawingPath);
        if (db) writeRecordsBelow(out, *db, *root, cut);
    }
    file.close();
    if (cutRecords != nullptr) *cutRecords = std::move(cut);
    return true;
}

bool CsvExport::runAndReport(cad::app::UserDialogs& dialogs) const {
    if (settings_.savePath.empty()) {
        dialogs.messageBox("저장위치를 지정하지 않았습니다.", "외부저장에러",
                           cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    std::vector<std::string> cut;
    if (!run(&cut)) return false;
    if (!cut.empty()) {
        std::string text = "줄바꿈 같은 제어 문자는 이 파일에 쓸 수 없어 빼고 저장했습니다:";
        for (std::size_t i = 0; i < cut.size() && i < kCutRecordsNamed; ++i) text += "\n" + cut[i];
        if (cut.size() > kCutRecordsNamed)
            text += "\n외 " + std::to_string(cut.size() - kCutRecordsNamed) + "건";
        dialogs.messageBox(text, "외부저장", cad::app::MB_OK | cad::app::MB_ICONWARNING);
    }
    dialogs.messageBox(settings_.savePath + "\"\n에 저장되었습니다.", "저장완료",
                       cad::app::MB_OK | cad::app::MB_ICONINFORMATION);
    return true;
}

}  // namespace vantor
