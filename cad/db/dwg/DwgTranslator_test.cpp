// Reading a real R14 drawing written by another program, and what a damaged or newer file
// gives: a message with the offset, never a crash.
#include "cad/db/dwg/DwgTranslator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/ObjectPtr.h"

namespace cad::db::dwg {
namespace {

std::string sampleBytes() {
    const auto path = std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus" /
                      "acadsharp__sample_AC1014.dwg";
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(DwgTranslator, SampleR14ReadsWithTheIndependentReadersCounts) {
    const std::string bytes = sampleBytes();
    ASSERT_FALSE(bytes.empty());
    DwgTranslation out;
    const auto error = DwgTranslator::translate(bytes, out);
    ASSERT_FALSE(error) << error->message;
    EXPECT_EQ(out.layout.acadVer, "AC1014");
    EXPECT_EQ(out.layout.codePageName, "ANSI_1252");
    EXPECT_TRUE(out.layout.warnings.empty());
    EXPECT_EQ(out.checkValueMismatches, 0);
    // The counts LibreDWG gives for this file (tests/cadtool runs it where it is installed).
    const std::map<std::string, int> expected{
        {"LINE", 98},        {"CIRCLE", 13},        {"ARC", 3},          {"POINT", 40},
        {"LWPOLYLINE", 23},  {"TEXT", 29},          {"MTEXT", 36},       {"INSERT", 14},
        {"ATTDEF", 5},       {"ATTRIB", 4},         {"SOLID", 14},       {"ELLIPSE", 1},
        {"3DFACE", 1},       {"RAY", 1},            {"XLINE", 1},        {"BLOCK_HEADER", 27},
        {"BLOCK", 27},       {"ENDBLK", 27},        {"LAYER", 21},       {"STYLE", 6},
        {"LTYPE", 8},        {"APPID", 44},         {"GROUP", 2},        {"DICTIONARY", 214},
        {"DICTIONARYVAR", 16}, {"VERTEX_3D", 5},    {"VERTEX_PFACE", 5}, {"SEQEND", 4},
        {"VERTEX_PFACE_FACE", 2}, {"POLYLINE_3D", 1}, {"POLYLINE_PFACE", 1},
        {"HATCH", 8},        {"SPLINE", 2},         {"DIMSTYLE", 6},     {"XRECORD", 342},
        {"DIMENSION_LINEAR", 3}, {"DIMENSION_ALIGNED", 2}, {"DIMENSION_ORDINATE", 2},
        {"DIMENSION_ANG3PT", 1}, {"DIMENSION_ANG2LN", 1}, {"DIMENSION_RADIUS", 1},
        {"DIMENSION_DIAMETER", 1}, {"LAYOUT", 4}, {"SCALE", 33}, {"VPORT", 1}, {"VIEW", 1},
        {"SORTENTSTABLE", 3}, {"VIEWPORT", 6}, {"LEADER", 1}, {"TOLERANCE", 3}, {"MLINE", 3},
        {"IMAGE", 1}, {"WIPEOUT", 1},
    };
    for (const auto& [type, count] : expected) {
        const auto it = out.read.find(type);
        EXPECT_EQ(it == out.read.end() ? 0 : it->second, count) << type;
    }
    // Types it does not decode are counted, not lost without a word.
    EXPECT_EQ(out.notRead["MULTILEADER"], 15);
    EXPECT_EQ(out.unreadable, 0) << testing::PrintToString(out.unreadableMessages);
    EXPECT_GT(out.dxf.size(), 10000u);
}

TEST(DwgTranslator, DatabaseReadsDwgByItsBytesWhateverItsName) {
    const auto folder = std::filesystem::temp_directory_path() / "vantor_dwg_name_test";
    std::filesystem::create_directories(folder);
    const auto path = folder / "named-like-a.dxf";
    {
        std::ofstream out(path, std::ios::binary);
        out << sampleBytes();
    }
    Database db(false);
    ASSERT_EQ(db.readDwgFile(path.string(), sys::ShareMode::DenyNone), ErrorStatus::eOk)
        << db.lastErrorMessage();
    std::size_t modelEntities = 0;
    {
        auto space = open<BlockTableRecord>(db.modelSpaceId(), OpenMode::ForRead);
        ASSERT_TRUE(space);
        modelEntities = space->entityIds().size();
    }
    EXPECT_GT(modelEntities, 100u);
    // Header variables come through with the names their handles point at.
    EXPECT_EQ(db.header().text("$DIMASZ"), "0.18");
    EXPECT_EQ(db.header().text("$PDMODE"), "34");
    EXPECT_EQ(db.header().text("$DIMSTYLE"), "CUSTOM_STYLE_LTYPES");
    EXPECT_EQ(db.header().text("$TEXTSTYLE"), "STANDARD");
    EXPECT_EQ(db.header().text("$LIMMAX"), "12.0");
    bool reported = false;
    for (const AuditIssue& issue : db.loadIssues()) {
        if (issue.code == kIssueNotReadFromDwg &&
            issue.message.find("MULTILEADER") != std::string::npos) {
            reported = true;
        }
    }
    EXPECT_TRUE(reported);
    EXPECT_EQ(db.openObjectCount(), 0);
    std::filesystem::remove_all(folder);
}

TEST(DwgTranslator, NewerAndOlderVersionsAreRefusedByName) {
    for (const auto& [code, name] : std::map<std::string, std::string>{
             {"AC1018", "DWG 2004 (AC1018)"},
             {"AC1032", "DWG 2018 (AC1032)"},
             {"AC1009", "DWG R11/R12 (AC1009)"}}) {
        std::string bytes = sampleBytes();
        bytes.replace(0, 6, code);
        DwgTranslation out;
        const auto error = DwgTranslator::translate(bytes, out);
        ASSERT_TRUE(error) << code;
        EXPECT_NE(error->message.find(name), std::string::npos) << error->message;
        EXPECT_EQ(error->offset, 0u);
    }
}

TEST(DwgTranslator, TruncatedFilesFailWithTheirOffset) {
    const std::string bytes = sampleBytes();
    for (const std::size_t length : {std::size_t{10}, std::size_t{40}, std::size_t{0x60},
                                     bytes.size() / 4, bytes.size() / 2, bytes.size() * 3 / 4}) {
        DwgTranslation out;
        const auto error = DwgTranslator::translate(bytes.substr(0, length), out);
        ASSERT_TRUE(error) << "length " << length;
        EXPECT_EQ(error->message.rfind("offset ", 0), 0u) << error->message;
        EXPECT_NE(error->message.find("expected"), std::string::npos) << error->message;
    }
}

TEST(DwgTranslator, DamagedBytesNeverCrash) {
    // Flipped bytes through the whole file: each read either fails with a message or loads.
    const std::string original = sampleBytes();
    for (std::size_t at = 0x19; at < original.size(); at += 9973) {
        std::string bytes = original;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x5A);
        DwgTranslation out;
        const auto error = DwgTranslator::translate(bytes, out);
        if (error) {
            EXPECT_FALSE(error->message.empty());
        }
    }
}

}  // namespace
}  // namespace cad::db::dwg
