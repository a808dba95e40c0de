// The CSV export of a small library, compared byte for byte with the layout built here from
// the file's description (header, record lines, each separator, CR LF, code page 949), and
// the caller's messages.
#include "vantor/ui/export/CsvExport.h"

#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::db::ObjectId;
using Fields = std::vector<std::string>;
using testing_support::addDictionary;

// Korean texts in code page 949, written out so the expected bytes do not come from the
// converter under test.
const std::string kLocationTitle = "\xB5\xB5\xB8\xE9\xC0\xA7\xC4\xA1";  // 도면위치
const std::string kGroupTitle = "\xB1\xD7\xB7\xEC\xB8\xED";             // 그룹명
const std::string kKNameTitle = "\xC7\xB0\xB8\xED";                     // 품명
const std::string kHexBolt = "\xC0\xB0\xB0\xA2\xBA\xBC\xC6\xAE";        // 육각볼트

void addRecord(ObjectId group, const std::string& key, const cad::db::ResBufChain& chain) {
    auto dictionary = cad::db::open<cad::db::Dictionary>(group, cad::db::OpenMode::ForWrite);
    auto xrecord = std::make_unique<cad::db::Xrecord>();
    xrecord->setFromRbChain(chain);
    ObjectId id;
    EXPECT_EQ(dictionary->setAt(key, std::move(xrecord), id), cad::ErrorStatus::eOk);
}

class Export : public testing::TestWithParam<int> {
protected:
    Export() {
        settings.savePath = folder.file("parts.csv");
        settings.labels = {"품명", "EN", "SP", "MA", "WE", "PR", "RE", "U1", "U2", "U3",
                           "U4",   "U5", "U6", "V1", "V2", "V3", "V4", "V5", "V6"};
        settings.delimiter = GetParam();
    }

    // A supplier group whose record's spec holds a comma; a user group with a full record, a
    // record of group and name only and one too short to be a part record (left out).
    void writeLibrary() {
        cad::db::Database db;
        ObjectId named = db.namedObjectsDictionaryId();
        PartRecord flange;
        flange.viewBlocks = {"FL-F", "", "FL-P", "", "", ""};
        flange.group = "F";
        flange.kname = "Flange";
        flange.spec = "10K, 50A";
        addRecord(addDictionary(addDictionary(named, "Adv data list"), "F"), "QRB_VANTORDATA-0",
                  flange.toChain());

        ObjectId bolts = addDictionary(addDictionary(named, "User data list"), "육각볼트");
        PartRecord full;
        full.viewBlocks = {"B1", "B2", "B3", "B4", "B5", "B6"};
        for (std::size_t i = 0; i < PartRecord::kTextCount; ++i)
            full.text(i) = "t" + std::to_string(i);
        full.group = "육각볼트";
        addRecord(bolts, "QRB_VANTORDATA-0", full.toChain());
        PartRecord named2;
        named2.group = "육각볼트";
        named2.kname = "M12";
        addRecord(bolts, "QRB_VANTORDATA-1", named2.toChain());
        addRecord(bolts, "QRB_VANTORDATA-2", {cad::db::ResBuf{1, std::string("short")}});
        ASSERT_EQ(db.saveAs(folder.file("a.dxf")), cad::ErrorStatus::eOk);
        ASSERT_EQ(tree.loadDrawing(folder.file("a.dxf")), CVNTreeBase::LoadResult::Loaded);
    }

    std::string line(const Fields& fields) const {
        const std::string separator[] = {",", "|", "\t"};
        std::string text;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i > 0 && GetParam() < 3) text += separator[GetParam()];
            text += fields[i];
        }
        return text + "\r\n";
    }
    // The location, all 19 titles, the group, then the 13 field titles again.
    std::string header() const {
        Fields fields = {kLocationTitle, kKNameTitle};
        for (const char* title : {"EN", "SP", "MA", "WE", "PR", "RE", "U1", "U2", "U3", "U4", "U5",
                                  "U6", "V1", "V2", "V3", "V4", "V5", "V6"})
            fields.push_back(title);
        fields.push_back(kGroupTitle);
        const Fields recordTitles(fields.begin() + 1, fields.begin() + 14);
        fields.insert(fields.end(), recordTitles.begin(), recordTitles.end());
        return line(fields);
    }

    cad::sys::TestTempFolder folder;
    cad::app::ScriptedDialogs dialogs;
    ModuleSettings settings;
    CVNTreeBase tree{dialogs};
    CsvExport exporter{settings, tree};
};

TEST_P(Export, WritesTheHeaderAndOneLinePerReadableRecordInTreeOrder) {
    writeLibrary();
    ASSERT_TRUE(exporter.run());

    const std::string a = folder.file("a.dxf");
    const Fields empty(12, "");
    Fields flange = {a, "FL-F", "", "FL-P", "", "", "", "F", "Flange", "", "10K, 50A"};
    flange.resize(21);
    Fields full = {a, "B1", "B2", "B3", "B4", "B5", "B6", kHexBolt};
    for (int i = 1; i < 14; ++i) full.push_back("t" + std::to_string(i));
    Fields named = {a, "", "", "", "", "", "", kHexBolt, "M12"};
    named.insert(named.end(), empty.begin(), empty.end());
    EXPECT_EQ(folder.readBytes("parts.csv"), header() + line(flange) + line(full) + line(named));
}

TEST_P(Export, WithoutLoadedDrawingsOnlyTheHeaderReplacesTheFile) {
    folder.writeBytes("parts.csv", "an older export, longer than the header line by far ...");
    ASSERT_TRUE(exporter.run());
    EXPECT_EQ(folder.readBytes("parts.csv"), header());
}

// Fields are not quoted, so a line break would cut the record in two: control characters are
// left out (a tab only where it separates the fields), the user is told which records lost
// some, and a caret stays a caret, since spreadsheets know no escapes.
TEST_P(Export, ControlCharactersAreLeftOutAndTheRecordNamed) {
    {
        cad::db::Database db;
        PartRecord pasted;
        pasted.group = "G";
        pasted.kname = "two\nlines";
        pasted.spec = "cr\r tab\t caret^ eof\x1A end";
        addRecord(
            addDictionary(addDictionary(db.namedObjectsDictionaryId(), "User data list"), "G"),
            "QRB_VANTORDATA-0", pasted.toChain());
        ASSERT_EQ(db.saveAs(folder.file("a.dxf")), cad::ErrorStatus::eOk);
        ASSERT_EQ(tree.loadDrawing(folder.file("a.dxf")), CVNTreeBase::LoadResult::Loaded);
    }
    ASSERT_TRUE(exporter.runAndReport(dialogs));

    const std::string a = folder.file("a.dxf");
    const std::string tab = GetParam() == 2 ? "" : "\t";
    Fields fields = {
        a, "", "", "", "", "", "", "G", "twolines", "", "cr tab" + tab + " caret^ eof end"};
    fields.resize(21);
    EXPECT_EQ(folder.readBytes("parts.csv"), header() + line(fields));
    EXPECT_EQ(
        testing_support::boxesShown(dialogs),
        (Fields{"외부저장: 줄바꿈 같은 제어 문자는 이 파일에 쓸 수 없어 빼고 저장했습니다:\n" + a +
                    ": twolines [warning]",
                "저장완료: " + settings.savePath + "\"\n에 저장되었습니다. [information]"}));
}

std::string delimiterName(const testing::TestParamInfo<int>& row) {
    static const char* const kNames[] = {"comma", "bar", "tab"};
    return row.param < 3 ? kNames[row.param] : "unknown";
}

INSTANTIATE_TEST_SUITE_P(Delimiters, Export, testing::Values(0, 1, 2, 7), delimiterName);

// The saved and no-path messages are pinned with the export dialog; a file that cannot be
// opened is not reported.
TEST(ExportMessages, AFileThatCannotBeOpenedIsNotReported) {
    cad::sys::TestTempFolder folder;
    cad::app::ScriptedDialogs dialogs;
    ModuleSettings settings;
    CVNTreeBase tree{dialogs};
    CsvExport exporter{settings, tree};
    settings.savePath = folder.file("missing/parts.csv");
    EXPECT_FALSE(exporter.runAndReport(dialogs));
    EXPECT_TRUE(dialogs.calls().empty());
}

}  // namespace
}  // namespace vantor
