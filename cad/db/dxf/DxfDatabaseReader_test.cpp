// Reading drawings into a database: the sample drawings of other programs, the repairs of
// damaged links, and files that cannot be understood.
#include "cad/db/dxf/DxfDatabaseReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "cad/db/Attribute.h"
#include "cad/db/Audit.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Ellipse.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Layout.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/TextStyleTableRecord.h"
#include "cad/db/Xrecord.h"
#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::db::dxf {
namespace {

const std::filesystem::path kCorpus = testing_support::corpusFolder();

std::map<std::string, int> countByType(const Database& db) {
    std::map<std::string, int> counts;
    for (const ObjectId id : db.objectIds()) {
        if (!id.isErased()) ++counts[std::string(id.slot()->object->dxfName())];
    }
    return counts;
}

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The structures of each type a file's object sections hold, counted by the lower stages
// alone. (Sections R2000 has no place for, such as ACDSDATA, are not kept.)
std::map<std::string, int> countInFile(const std::filesystem::path& path) {
    DxfFile file = DxfFile::fromBytes(fileBytes(path));
    DxfStructure structure;
    EXPECT_FALSE(StructureLoader::load(file, structure).has_value());
    std::map<std::string, int> counts;
    for (const Section& section : structure.sections) {
        if (section.name != "TABLES" && section.name != "BLOCKS" && section.name != "ENTITIES" &&
            section.name != "OBJECTS")
            continue;
        for (const TagRun& run : section.items)
            ++counts[std::string(trimBlanks(file.tagsOf(run)->front().value))];
    }
    counts.erase("ENDTAB");
    return counts;
}

ObjectId recordNamed(ObjectId tableId, std::string_view name) {
    ObjectId id;
    if (auto table = open<SymbolTable>(tableId, OpenMode::ForRead)) table->getAt(name, id);
    return id;
}

std::vector<int> issueCodes(const Database& db) {
    std::vector<int> codes;
    for (const AuditIssue& issue : db.loadIssues()) codes.push_back(issue.code);
    return codes;
}

class CorpusDrawing : public testing::TestWithParam<std::string> {};

// Every structure of a sample drawing is in the database (or dropped with a word why), and
// reading leaves nothing open.
TEST_P(CorpusDrawing, LoadsEveryStructure) {
    const std::filesystem::path path = kCorpus / GetParam();
    Database db(false);
    ASSERT_EQ(db.readDwgFile(path.string()), ErrorStatus::eOk) << db.lastErrorMessage();
    EXPECT_EQ(db.openObjectCount(), 0);
    EXPECT_EQ(db.fileName(), path.string());
    std::map<std::string, int> dropped;
    for (const AuditIssue& issue : db.loadIssues()) {
        if (issue.message.find("dropped") == std::string::npos) continue;
        for (const auto& [type, n] : countInFile(path)) {
            if (issue.message.find(": " + type + " ") != std::string::npos ||
                issue.message.starts_with(type + " "))
                ++dropped[type];
        }
    }
    const std::map<std::string, int> loaded = countByType(db);
    for (const auto& [type, n] : countInFile(path)) {
        const auto it = loaded.find(type);
        EXPECT_GE((it == loaded.end() ? 0 : it->second) + dropped[type], n) << type;
    }
    EXPECT_TRUE(db.modelSpaceId().isValid());
    EXPECT_TRUE(db.paperSpaceId().isValid());
    EXPECT_TRUE(db.layoutDictionaryId().isValid());
    EXPECT_TRUE(db.groupDictionaryId().isValid());
    EXPECT_TRUE(db.layerZero().isValid());
}

INSTANTIATE_TEST_SUITE_P(Samples, CorpusDrawing,
                         testing::ValuesIn(testing_support::corpusDrawings()),
                         testing_support::corpusRowName);

TEST(CorpusDrawings, DuplicateHandlesKeepBothObjects) {
    Database db(false);
    ASSERT_EQ(db.readDwgFile((kCorpus / "ezdxf__duplicate_handles.dxf").string()),
              ErrorStatus::eOk);
    const std::vector<int> codes = issueCodes(db);
    EXPECT_GT(std::count(codes.begin(), codes.end(), kIssueDuplicateHandle), 20);
    for (const AuditIssue& issue : db.loadIssues()) {
        EXPECT_TRUE(issue.fixed);
        EXPECT_FALSE(issue.handle.isNull());
    }
    // Repaired as it loaded, it leaves the audit nothing to find.
    const std::vector<AuditIssue> found = audit(db);
    EXPECT_TRUE(found.empty()) << found.front().message;
}

TEST(CorpusDrawings, KoreanTextDecodesFromCodePage949) {
    Database db(false);
    ASSERT_EQ(db.readDwgFile((kCorpus / "ezdxf-made__korean_catalogue_r2000_cp949.dxf").string()),
              ErrorStatus::eOk);
    EXPECT_EQ(db.codePage(), sys::CodePage::Ansi949);
    bool korean = false;
    if (auto table = open<SymbolTable>(db.layerTableId(), OpenMode::ForRead)) {
        for (const ObjectId id : table->recordIds()) {
            auto layer = open<LayerTableRecord>(id, OpenMode::ForRead);
            korean = korean || layer->name().find("\xEB") != std::string::npos;  // 0xEB: Hangul
        }
    }
    EXPECT_TRUE(korean) << "a layer with a Korean name in UTF-8";
}

// ---- Inline drawings ----

// An R2000 drawing with the tables it needs and the given entities and objects (after the root
// dictionary, handle 10, which lists `rootEntries`).
std::string drawing(const std::string& entities, const std::string& objects = "",
                    const std::string& rootEntries = "") {
    return "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n9\n$DWGCODEPAGE\n3\nANSI_949\n"
           "9\n$HANDSEED\n5\n200\n0\nENDSEC\n"
           "0\nSECTION\n2\nTABLES\n"
           "0\nTABLE\n2\nLAYER\n5\n2\n330\n0\n100\nAcDbSymbolTable\n70\n1\n"
           "0\nLAYER\n5\n3\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n"
           "2\n0\n70\n0\n62\n7\n6\nContinuous\n0\nENDTAB\n"
           "0\nTABLE\n2\nBLOCK_RECORD\n5\n4\n330\n0\n100\nAcDbSymbolTable\n70\n2\n"
           "0\nBLOCK_RECORD\n5\n5\n330\n4\n100\nAcDbSymbolTableRecord\n"
           "100\nAcDbBlockTableRecord\n2\n*Model_Space\n"
           "0\nBLOCK_RECORD\n5\n6\n330\n4\n100\nAcDbSymbolTableRecord\n"
           "100\nAcDbBlockTableRecord\n2\n*Paper_Space\n0\nENDTAB\n0\nENDSEC\n"
           "0\nSECTION\n2\nENTITIES\n" +
           entities +
           "0\nENDSEC\n"
           "0\nSECTION\n2\nOBJECTS\n"
           "0\nDICTIONARY\n5\n10\n330\n0\n100\nAcDbDictionary\n281\n1\n" +
           rootEntries + objects + "0\nENDSEC\n0\nEOF\n";
}

std::string line(const std::string& handle, const std::string& layer = "0") {
    return "0\nLINE\n5\n" + handle + "\n330\n5\n100\nAcDbEntity\n8\n" + layer +
           "\n100\nAcDbLine\n10\n0\n20\n0\n30\n0\n11\n1\n21\n1\n31\n0\n";
}

std::string xrecord(const std::string& handle, const std::string& owner) {
    return "0\nXRECORD\n5\n" + handle + "\n330\n" + owner + "\n100\nAcDbXrecord\n280\n1\n1\ndata\n";
}

std::string dictionary(const std::string& handle, const std::string& owner,
                       const std::string& entries = "") {
    return "0\nDICTIONARY\n5\n" + handle + "\n330\n" + owner + "\n100\nAcDbDictionary\n281\n1\n" +
           entries;
}

std::string damaged(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    return text.replace(at, from.size(), to);
}

struct Repair {
    const char* name;
    std::string text;
    int code;
};

class Repairs : public testing::TestWithParam<Repair> {};

// Each damage is repaired and listed once; the repaired drawing saves and reads back clean.
TEST_P(Repairs, AreListedAndLastThroughASave) {
    Database db(false);
    ASSERT_EQ(db.readDxfBytes(GetParam().text, "repair.dxf"), ErrorStatus::eOk)
        << db.lastErrorMessage();
    const std::vector<int> codes = issueCodes(db);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), GetParam().code), 1)
        << testing::PrintToString(codes);
    EXPECT_EQ(db.openObjectCount(), 0);

    const auto path = std::filesystem::temp_directory_path() /
                      ("vantor-repair-" + std::string(GetParam().name) + ".dxf");
    ASSERT_EQ(db.saveAs(path.string()), ErrorStatus::eOk);
    Database back(false);
    ASSERT_EQ(back.readDwgFile(path.string()), ErrorStatus::eOk) << back.lastErrorMessage();
    EXPECT_EQ(issueCodes(back), std::vector<int>{});
    std::filesystem::remove(path);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Repairs,
    testing::Values(
        Repair{"duplicate_handle", drawing(line("30") + line("30")), kIssueDuplicateHandle},
        Repair{"missing_handle", drawing("0\nLINE\n330\n5\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n"),
               kIssueMissingHandle},
        Repair{"owner_listed_elsewhere", drawing("", xrecord("40", "99"), "3\nKEEP\n360\n40\n"),
               kIssueDanglingOwner},
        Repair{"owner_nowhere_unlisted", drawing("", xrecord("40", "99")), kIssueDanglingOwner},
        Repair{"owner_does_not_list_it",
               drawing("", dictionary("41", "10") + xrecord("40", "41"),
                       "3\nD\n350\n41\n3\nX\n350\n40\n"),
               kIssueDanglingOwner},
        Repair{"entry_names_nothing", drawing("", "", "3\nGONE\n350\n77\n"),
               kIssueDanglingDictionaryEntry},
        Repair{"owner_cycle",
               drawing("", dictionary("41", "42", "3\nB\n350\n42\n") +
                               dictionary("42", "41", "3\nA\n350\n41\n")),
               kIssueOwnerCycle},
        Repair{"missing_layer", drawing(line("30", "GHOST")), kIssueMissingSymbol},
        Repair{"missing_block",
               drawing("0\nINSERT\n5\n31\n330\n5\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockReference"
                       "\n2\nNOBLOCK\n10\n0\n20\n0\n30\n0\n"),
               kIssueMissingBlock},
        Repair{"stray_attribute", drawing(line("30") + "0\nATTRIB\n5\n32\n8\n0\n"),
               kIssueStraySubentity},
        Repair{"name_for_a_handle", drawing("", xrecord("40", "Standard"), "3\nX\n350\n40\n"),
               kIssueUnreadableLink},
        // Found by fuzzing: a layout that is dropped leaves its block without one, so one is
        // made.
        Repair{"dropped_layout",
               damaged(drawing("",
                               "0\nLAYOUT\n5\n60\n330\n99\n100\nAcDbPlotSettings\n"
                               "100\nAcDbLayout\n1\nSheet\n330\n6\n"),
                       "2\n*Paper_Space\n", "2\n*Paper_Space\n340\n60\n"),
               kIssueDanglingOwner},
        // Found by fuzzing: dropping a misplaced record that claimed its table as owned took
        // the table along.
        Repair{"record_claiming_its_table",
               damaged(drawing(""), "6\nContinuous\n0\nENDTAB\n",
                       "6\nContinuous\n0\nLAYERX\n5\n20\n360\n2\n0\nENDTAB\n"),
               kIssueBadTableRecord},
        // Found by fuzzing: an entity among the objects was not written, and what listed it
        // dangled.
        Repair{"entity_among_objects",
               drawing("", "0\nLINE\n5\n45\n330\n10\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n",
                       "3\nODD\n350\n45\n"),
               kIssueStraySubentity},
        // Found by fuzzing: a record that lost its name was written as a BLOCK without one.
        Repair{"nameless_block_record",
               damaged(drawing(""), "AcDbBlockTableRecord\n2\n*Paper_Space\n",
                       "AcDbBlockTableRecord\n"),
               kIssueBadTableRecord}),
    [](const testing::TestParamInfo<Repair>& row) { return std::string(row.param.name); });

TEST(InlineDrawings, Utf8TextUnderAWesternCodePageIsReadAsUtf8) {
    const auto layerOfLine = [](const std::string& layerBytes) {
        std::string bytes = drawing(line("30", layerBytes));
        bytes.replace(bytes.find("ANSI_949"), 8, "ANSI_1252");
        Database db(false);
        EXPECT_EQ(db.readDxfBytes(bytes, "western.dxf"), ErrorStatus::eOk);
        ObjectId lineId;
        db.getObjectId(lineId, false, Handle{0x30});
        auto layer = open<LayerTableRecord>(open<Entity>(lineId, OpenMode::ForRead)->layerId(),
                                            OpenMode::ForRead);
        return layer ? layer->name() : std::string("(none)");
    };
    EXPECT_EQ(layerOfLine("부품"), "부품");
    EXPECT_EQ(layerOfLine("caf\xE9"), "café") << "bytes that are no UTF-8 keep the declared page";
}

// Text styles that load shape files have no name, and a drawing may have several of them.
TEST(InlineDrawings, NamelessShapeStylesAreAllKept) {
    std::string shapes = "0\nTABLE\n2\nSTYLE\n5\n7\n330\n0\n100\nAcDbSymbolTable\n70\n3\n";
    for (const char* handle : {"8", "9"}) {
        shapes += std::string("0\nSTYLE\n5\n") + handle +
                  "\n330\n7\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n"
                  "2\n\n70\n1\n40\n0\n41\n1\n50\n0\n71\n0\n42\n1\n3\nshape" +
                  handle + ".shx\n4\n\n";
    }
    const std::string text = damaged(drawing(""), "0\nENDTAB\n0\nENDSEC\n",
                                     "0\nENDTAB\n" + shapes + "0\nENDTAB\n0\nENDSEC\n");
    const auto shapeFiles = [](const Database& db) {
        std::vector<std::string> files;
        for (const ObjectId id :
             open<SymbolTable>(db.textStyleTableId(), OpenMode::ForRead)->recordIds()) {
            auto style = open<TextStyleTableRecord>(id, OpenMode::ForRead);
            if (style->name().empty()) files.push_back(style->fileName());
        }
        return files;
    };
    Database db(false);
    ASSERT_EQ(db.readDxfBytes(text, "shapes.dxf"), ErrorStatus::eOk) << db.lastErrorMessage();
    const std::vector<int> codes = issueCodes(db);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), kIssueBadTableRecord), 0);
    EXPECT_EQ(shapeFiles(db), (std::vector<std::string>{"shape8.shx", "shape9.shx"}));
    sys::TestTempFolder folder;
    ASSERT_EQ(db.saveAs(folder.file("shapes.dxf")), ErrorStatus::eOk);
    Database back(false);
    ASSERT_EQ(back.readDwgFile(folder.file("shapes.dxf")), ErrorStatus::eOk);
    EXPECT_EQ(shapeFiles(back), shapeFiles(db));
}

TEST(Repairs, MadeRecordsAreWhatTheReferencesName) {
    Database db(false);
    ASSERT_EQ(
        db.readDxfBytes(
            drawing(line("30", "GHOST") +
                    "0\nINSERT\n5\n31\n330\n5\n100\nAcDbEntity\n8\n0\n"
                    "100\nAcDbBlockReference\n66\n1\n2\nNOBLOCK\n10\n0\n20\n0\n30\n0\n"
                    "0\nATTRIB\n5\n32\n330\n31\n100\nAcDbEntity\n8\n0\n100\nAcDbText\n"
                    "10\n0\n20\n0\n30\n0\n40\n1\n1\nvalue\n100\nAcDbAttribute\n2\nTAG\n70\n0\n"
                    "0\nSEQEND\n5\n33\n330\n31\n100\nAcDbEntity\n8\n0\n"),
            "made.dxf"),
        ErrorStatus::eOk);
    ObjectId lineId;
    db.getObjectId(lineId, false, Handle{0x30});
    const ObjectId ghost = recordNamed(db.layerTableId(), "GHOST");
    ASSERT_TRUE(ghost.isValid());
    EXPECT_EQ(open<Entity>(lineId, OpenMode::ForRead)->layerId(), ghost);

    ObjectId insertId;
    db.getObjectId(insertId, false, Handle{0x31});
    auto insert = open<BlockReference>(insertId, OpenMode::ForRead);
    ASSERT_TRUE(insert);
    const ObjectId block = recordNamed(db.blockTableId(), "NOBLOCK");
    EXPECT_EQ(insert->blockTableRecord(), block);
    auto record = open<BlockTableRecord>(block, OpenMode::ForRead);
    EXPECT_TRUE(record->blockBeginId().isValid());
    EXPECT_TRUE(record->blockEndId().isValid());
    ASSERT_EQ(insert->attributeIds().size(), 1u);
    EXPECT_EQ(open<Attribute>(insert->attributeIds()[0], OpenMode::ForRead)->tag(), "TAG");
    EXPECT_EQ(insert->sequenceEndId().handle(), Handle{0x33});
    EXPECT_EQ(open<Entity>(insert->sequenceEndId(), OpenMode::ForRead)->ownerId(), insertId);
}

TEST(InlineDrawings, FieldsOfALeftOutMarkerAreFoundInTheSubclassBefore) {
    // As some writers do: the ellipse's fields follow the entity's, under "AcDbEntity" alone.
    Database db(false);
    ASSERT_EQ(db.readDxfBytes(drawing("0\nELLIPSE\n5\n30\n330\n5\n100\nAcDbEntity\n8\n0\n"
                                      "10\n2\n20\n3\n30\n0\n11\n4\n21\n0\n31\n0\n40\n0.5\n"),
                              "ellipse.dxf"),
              ErrorStatus::eOk)
        << db.lastErrorMessage();
    ObjectId id;
    db.getObjectId(id, false, Handle{0x30});
    auto ellipse = open<Ellipse>(id, OpenMode::ForRead);
    ASSERT_TRUE(ellipse);
    EXPECT_EQ(ellipse->center(), (ge::Point3d{2, 3, 0}));
    EXPECT_EQ(ellipse->majorAxis(), (ge::Vector3d{4, 0, 0}));
    EXPECT_EQ(ellipse->radiusRatio(), 0.5);
    EXPECT_TRUE(ellipse->keptTags().empty());
}

TEST(Repairs, AnR12DrawingGetsWhatLaterVersionsHave) {
    // No handles, no BLOCK_RECORD table, no OBJECTS: everything a drawing has is made, and
    // quietly, since R12 had none of it. Names made from references read as they were
    // written (here as escapes, so the code page plays no part).
    Database db(false);
    ASSERT_EQ(db.readDxfBytes(
                  "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\nENDSEC\n"
                  "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\n\\U+BD80\\U+D488\n70\n0\n"
                  "10\n0\n"
                  "20\n0\n0\nCIRCLE\n8\n\\U+BC30\\U+AD00\n10\n0\n20\n0\n40\n1\n0\nENDBLK\n8\n0\n"
                  "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nINSERT\n8\n0\n2\n\\U+BD80\\U+D488\n"
                  "10\n5\n20\n5\n0\nLINE\n8\n0\n67\n1\n10\n0\n20\n0\n11\n1\n21\n1\n"
                  "0\nENDSEC\n0\nEOF\n",
                  "r12.dxf"),
              ErrorStatus::eOk);
    EXPECT_EQ(issueCodes(db), std::vector<int>{kIssueMissingSymbol}) << "the circle's layer";
    EXPECT_TRUE(recordNamed(db.layerTableId(), "배관").isValid());
    EXPECT_EQ(db.originalFileVersion(), DxfVersion::R12);
    const ObjectId part = recordNamed(db.blockTableId(), "부품");
    ASSERT_TRUE(part.isValid());
    EXPECT_EQ(open<BlockTableRecord>(part, OpenMode::ForRead)->entityIds().size(), 1u);
    EXPECT_EQ(open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead)->entityIds().size(), 1u);
    EXPECT_EQ(open<BlockTableRecord>(db.paperSpaceId(), OpenMode::ForRead)->entityIds().size(), 1u)
        << "67 1 puts the line in paper space";
    // Layouts and their blocks name each other.
    for (const ObjectId space : {db.modelSpaceId(), db.paperSpaceId()}) {
        const ObjectId layout = open<BlockTableRecord>(space, OpenMode::ForRead)->layoutId();
        ASSERT_TRUE(layout.isValid());
        EXPECT_EQ(open<Layout>(layout, OpenMode::ForRead)->blockTableRecordId(), space);
    }
    for (const ObjectId id : db.objectIds()) EXPECT_LT(id.handle(), db.handseed());
}

// ---- Files that cannot be understood ----

struct Damage {
    const char* name;
    std::string bytes;
    const char* expected;  // in the message, after the file name
};

class Damaged : public testing::TestWithParam<Damage> {};

// A damaged file answers 190 with the file, the line and what was expected, and the database
// keeps what it held: one row for each stage that can refuse a file (the tables of the lower
// stages hold the rest of their refusals).
TEST_P(Damaged, IsRefusedAndLeavesTheDatabaseAsItWas) {
    Database db(true);
    const std::vector<ObjectId> before = db.objectIds();
    EXPECT_EQ(db.readDxfBytes(GetParam().bytes, "broken.dxf"), ErrorStatus::eBadDwgFile);
    EXPECT_TRUE(db.lastErrorMessage().starts_with("broken.dxf: ")) << db.lastErrorMessage();
    EXPECT_NE(db.lastErrorMessage().find(GetParam().expected), std::string::npos)
        << db.lastErrorMessage();
    EXPECT_EQ(db.objectIds(), before);
    EXPECT_TRUE(db.modelSpaceId().isValid());
    EXPECT_EQ(db.openObjectCount(), 0);
}

const std::string kGood = drawing(line("30"));

// A binary file whose two-byte group code reads as negative (found by fuzzing).
const std::string kNegativeCode = std::string("AutoCAD Binary DXF\r\n\x1a\0", 22) +
                                  std::string("\0\0SECTION\0\x02\0ENTITIES\0\0\0LINE\0", 28) +
                                  std::string("\x9a\x9ax\0\0\0ENDSEC\0\0\0EOF\0", 20);

INSTANTIATE_TEST_SUITE_P(
    Rows, Damaged,
    testing::Values(Damage{"truncated", kGood.substr(0, kGood.size() / 2), "line "},
                    Damage{"coordinate_not_a_number", damaged(kGood, "11\n1\n", "11\none\n"),
                           "expected a number for group code 11"},
                    Damage{"record_outside_a_table", damaged(kGood, "0\nTABLE\n2\nLAYER\n", ""),
                           "expected 0 TABLE before 0 LAYER"},
                    Damage{"block_without_end",
                           damaged(kGood, "0\nSECTION\n2\nENTITIES\n",
                                   "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nB\n0\nENDSEC\n"
                                   "0\nSECTION\n2\nENTITIES\n"),
                           "expected 0 ENDBLK"},
                    Damage{"entity_outside_a_block",
                           damaged(kGood, "0\nSECTION\n2\nENTITIES\n",
                                   "0\nSECTION\n2\nBLOCKS\n" + line("50") +
                                       "0\nENDSEC\n"
                                       "0\nSECTION\n2\nENTITIES\n"),
                           "expected 0 BLOCK before 0 LINE"},
                    Damage{"header_value_not_a_number",
                           damaged(kGood, "9\n$HANDSEED\n", "9\n$LTSCALE\n40\nbig\n9\n$HANDSEED\n"),
                           "for group code 40, found 'big'"},
                    Damage{"negative_binary_group_code", kNegativeCode,
                           "offset 50: expected a group code from 0 to 32767, found -25958"}),
    [](const testing::TestParamInfo<Damage>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace cad::db::dxf
