// The structure loader on inline files: sections, items and header variables, fragments that
// other programs read, and the errors that name where a section started.
#include "cad/db/dxf/StructureLoader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cad/db/dxf/DxfFile.h"
#include "cad/db/dxf/TagReader.h"

namespace cad::db::dxf {
namespace {

struct Loaded {
    DxfFile file;
    DxfStructure structure;
    std::optional<DxfError> error;
};

Loaded load(std::string text) {
    Loaded loaded{DxfFile::fromBytes(std::move(text)), {}, {}};
    EXPECT_TRUE(loaded.file.ok()) << loaded.file.error()->message;
    loaded.error = StructureLoader::load(loaded.file, loaded.structure);
    return loaded;
}

// "NAME:item,item|" per section, each item named by its code-0 value and tag count, as read
// again from the file.
std::string outline(Loaded& loaded) {
    std::string text;
    for (const Section& section : loaded.structure.sections) {
        text += section.name + ":";
        for (const TagRun& run : section.items) {
            const auto item = loaded.file.tagsOf(run);
            if (!item) return "unreadable";
            text += std::string(item->front().value) + "/" + std::to_string(item->size()) + ",";
        }
        text += "|";
    }
    return text;
}

constexpr const char* kDrawing =
    "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n"
    "  9\n$EXTMIN\n 10\n0.0\n 20\n-1.5\n 30\n0.0\n  9\n$DWGCODEPAGE\n  3\nANSI_949\n"
    "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n 10\n1.0\n"
    "  0\nPOLYLINE\n  8\n0\n  0\nVERTEX\n  8\n0\n  0\nSEQEND\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nTHUMBNAILIMAGE\n 90\n2\n310\nABCD\n  0\nENDSEC\n  0\nEOF\n";

TEST(StructureLoader, GroupsSectionsIntoItemsStartingAtCodeZero) {
    Loaded loaded = load(kDrawing);
    ASSERT_FALSE(loaded.error) << loaded.error->message;
    EXPECT_EQ(outline(loaded),
              "HEADER:|ENTITIES:LINE/3,POLYLINE/2,VERTEX/2,SEQEND/1,|THUMBNAILIMAGE:|");
    const Section* entities = loaded.structure.section("ENTITIES");
    ASSERT_NE(entities, nullptr);
    EXPECT_EQ(entities->line, 23u);
    EXPECT_EQ(entities->items[0].line, 27u);
    EXPECT_EQ(loaded.structure.section("OBJECTS"), nullptr);
}

// Runs read again give exactly the tags a whole-file reading gives, wherever comments, CR LF
// line ends and a byte order mark stand, and carry the handle each structure gives itself.
TEST(StructureLoader, RunsReadAgainAsTheWholeFileReads) {
    const std::string text =
        "\xEF\xBB\xBF  0\r\nSECTION\r\n  2\r\nTABLES\r\n999\r\nnote\r\n  0\r\nDIMSTYLE\r\n"
        "105\r\n1A\r\n  5\r\nFF\r\n  0\r\nLAYER\r\n  5\r\n2b\r\n999\r\nnote\r\n  2\r\n0\r\n"
        "  0\r\nLINE\r\n100\r\nAcDbEntity\r\n  5\r\n3C\r\n  0\r\nENDSEC\r\n  0\r\nEOF\r\n";
    Loaded loaded = load(text);
    ASSERT_FALSE(loaded.error) << loaded.error->message;
    std::vector<Tag> whole;
    TextArena arena;
    ASSERT_FALSE(TagReader::read(text, whole, arena));
    const std::vector<TagRun>& runs = loaded.structure.sections.at(0).items;
    ASSERT_EQ(runs.size(), 3u);
    std::size_t next = 2;  // after SECTION and its name
    for (const TagRun& run : runs) {
        const auto item = loaded.file.tagsOf(run);
        ASSERT_TRUE(item);
        for (const Tag& tag : *item) {
            EXPECT_EQ(tag.code, whole.at(next).code);
            EXPECT_EQ(tag.value, whole.at(next).value);
            EXPECT_EQ(tag.line, whole.at(next++).line);
        }
    }
    EXPECT_EQ(runs[0].handle, Handle{0x1A}) << "DIMSTYLE gives its handle with 105";
    EXPECT_EQ(runs[1].handle, Handle{0x2B});
    EXPECT_TRUE(runs[2].handle.isNull()) << "a handle after the first subclass is not its own";
    // A run that no longer reads as it did (the file changed on disk) is refused.
    EXPECT_FALSE(loaded.file.tagsOf(TagRun{runs[1].start + 3, runs[1].line, runs[1].count, {}}));
    EXPECT_FALSE(loaded.file.tagsOf(TagRun{runs[2].start, runs[2].line, runs[2].count + 9, {}}));
}

TEST(StructureLoader, ReadsHeaderVariablesUpToTheNextNine) {
    Loaded loaded = load(kDrawing);
    ASSERT_FALSE(loaded.error) << loaded.error->message;
    ASSERT_EQ(loaded.structure.header.size(), 3u);
    const HeaderVariable* extmin = loaded.structure.variable("$EXTMIN");
    ASSERT_NE(extmin, nullptr);
    ASSERT_EQ(extmin->tags.size(), 3u);
    EXPECT_EQ(extmin->tags[1].code, 20);
    EXPECT_EQ(extmin->tags[1].value, "-1.5");
    EXPECT_EQ(loaded.structure.variable("$DWGCODEPAGE")->tags.size(), 1u);
    EXPECT_EQ(loaded.structure.acadVersion, "AC1015");
    EXPECT_EQ(loaded.structure.codePageName, "ANSI_949");
}

struct FragmentRow {
    const char* name;
    const char* file;
    const char* outline;
    const char* acadVersion;
    const char* codePage;
};

class LoadFragment : public testing::TestWithParam<FragmentRow> {};

TEST_P(LoadFragment, LoadsWithDefaultsForWhatIsMissing) {
    Loaded loaded = load(GetParam().file);
    ASSERT_FALSE(loaded.error) << loaded.error->message;
    EXPECT_EQ(outline(loaded), GetParam().outline);
    EXPECT_EQ(loaded.structure.acadVersion, GetParam().acadVersion);
    EXPECT_EQ(loaded.structure.codePageName, GetParam().codePage);
}

INSTANTIATE_TEST_SUITE_P(
    Files, LoadFragment,
    testing::Values(
        FragmentRow{"only_eof", "  0\nEOF\n", "", "AC1009", "ANSI_1252"},
        FragmentRow{"blocks_alone",
                    "  0\nSECTION\n  2\nBLOCKS\n  0\nBLOCK\n  2\nA\n  0\nLINE\n  0\nENDBLK\n"
                    "  0\nENDSEC\n  0\nEOF\n",
                    "BLOCKS:BLOCK/2,LINE/1,ENDBLK/1,|", "AC1009", "ANSI_1252"},
        FragmentRow{"empty_section", "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n",
                    "ENTITIES:|", "AC1009", "ANSI_1252"},
        FragmentRow{"unknown_section_kept",
                    "  0\nSECTION\n  2\nACDSDATA\n  0\nACDSSCHEMA\n 90\n0\n  0\nENDSEC\n  0\nEOF\n",
                    "ACDSDATA:ACDSSCHEMA/2,|", "AC1009", "ANSI_1252"},
        FragmentRow{
            "header_without_code_page",
            "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1032\n  0\nENDSEC\n  0\nEOF\n",
            "HEADER:|", "AC1032", "ANSI_1252"},
        FragmentRow{"markers_with_blanks",
                    "  0\nSECTION \n  2\nENTITIES\r\n  0\n ENDSEC\n  0\nEOF \n", "ENTITIES:|",
                    "AC1009", "ANSI_1252"}),
    [](const testing::TestParamInfo<FragmentRow>& row) { return row.param.name; });

struct BrokenRow {
    const char* name;
    const char* file;
    std::uint32_t line;
    const char* message;
};

class LoadBroken : public testing::TestWithParam<BrokenRow> {};

TEST_P(LoadBroken, NamesTheLineAndWhatWasExpected) {
    Loaded loaded = load(GetParam().file);
    ASSERT_TRUE(loaded.error);
    EXPECT_EQ(loaded.error->line, GetParam().line);
    EXPECT_EQ(loaded.error->message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Files, LoadBroken,
    testing::Values(
        BrokenRow{"missing_endsec_before_next_section",
                  "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n"
                  "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n",
                  1,
                  "line 1: section HEADER has no end: expected 0 ENDSEC before 0 'SECTION' at "
                  "line 9"},
        BrokenRow{
            "missing_endsec_before_eof", "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  0\nEOF\n", 1,
            "line 1: section ENTITIES has no end: expected 0 ENDSEC before 0 'EOF' at line 7"},
        BrokenRow{
            "missing_endsec_at_end_of_file",
            "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nSECTION\n  2\nBLOCKS\n  0\nBLOCK\n", 7,
            "line 7: section BLOCKS has no end: expected 0 ENDSEC before the end of the file"},
        BrokenRow{"missing_eof", "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n", 5,
                  "line 5: expected 0 EOF after the last section, found the end of the file"},
        BrokenRow{"tags_outside_sections", "  0\nLINE\n  8\n0\n  0\nEOF\n", 1,
                  "line 1: expected 0 SECTION or 0 EOF, found 0 'LINE' outside any section"},
        BrokenRow{"tags_between_sections",
                  "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  8\nlayer\n  0\nEOF\n", 7,
                  "line 7: expected 0 SECTION or 0 EOF, found 8 'layer' outside any section"},
        BrokenRow{"section_without_name", "  0\nSECTION\n  0\nENDSEC\n  0\nEOF\n", 1,
                  "line 1: expected the section name (group code 2) after 0 SECTION"},
        BrokenRow{"no_tags_at_all", "999\nonly a comment\n", 1,
                  "line 1: expected 0 SECTION or 0 EOF, found the end of the file"}),
    [](const testing::TestParamInfo<BrokenRow>& row) { return row.param.name; });

TEST(StructureLoader, BinaryFilesArePlacedByOffset) {
    DxfFile file = DxfFile::fromBytes(std::string("AutoCAD Binary DXF\r\n\x1a\0", 22) +
                                      std::string("\0\0SECTION\0\2\0BLOCKS\0", 19));
    ASSERT_TRUE(file.ok()) << file.error()->message;
    DxfStructure structure;
    const auto error = StructureLoader::load(file, structure);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message,
              "offset 22: section BLOCKS has no end: expected 0 ENDSEC before the end of the file");
}

}  // namespace
}  // namespace cad::db::dxf
