// Real drawings from other programs through the tag reader and the structure loader. The
// expected outlines were counted by a separate script over the files, not by this code.
#include "cad/db/dxf/DxfFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "cad/db/dxf/StructureLoader.h"
#include "cad/db/dxf/TagReader.h"
#include "cad/db/dxf/TextCodec.h"

namespace cad::db::dxf {
namespace {

std::filesystem::path corpus(std::string_view name) {
    return std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata/corpus" / name;
}

// "NAME=items ..." per section.
std::string outline(const DxfStructure& structure) {
    std::string text;
    for (const Section& section : structure.sections) {
        if (!text.empty()) text += ' ';
        text += section.name + "=" + std::to_string(section.items.size());
    }
    return text;
}

struct CorpusRow {
    const char* file;
    std::size_t tags;
    const char* acadVersion;
    const char* codePage;
    const char* outline;
};

class CorpusFile : public testing::TestWithParam<CorpusRow> {};

// Every tag of a file, read whole.
std::vector<Tag> allTags(const DxfFile& file, TextArena& arena) {
    std::vector<Tag> tags;
    EXPECT_FALSE(TagReader::read(file.bytes(), tags, arena));
    return tags;
}

TEST_P(CorpusFile, LoadsThroughBothStages) {
    DxfFile file = DxfFile::fromPath(corpus(GetParam().file));
    ASSERT_TRUE(file.ok()) << file.error()->message;
    TextArena arena;
    const std::vector<Tag> all = allTags(file, arena);
    EXPECT_EQ(all.size(), GetParam().tags);
    DxfStructure structure;
    const auto error = StructureLoader::load(file, structure);
    ASSERT_FALSE(error) << error->message;
    EXPECT_EQ(structure.acadVersion, GetParam().acadVersion);
    EXPECT_EQ(structure.codePageName, GetParam().codePage);
    EXPECT_EQ(outline(structure), GetParam().outline);
    // Every item reads again as the tags it stands for, from its code-0 tag on, and the items
    // of a section follow each other without gaps.
    std::map<std::uint32_t, std::size_t> indexAt;
    for (std::size_t i = 0; i < all.size(); ++i) indexAt.emplace(all[i].line, i);
    for (const Section& section : structure.sections) {
        std::size_t next = 0;
        for (std::size_t i = 0; i < section.items.size(); ++i) {
            const auto item = file.tagsOf(section.items[i]);
            ASSERT_TRUE(item) << section.name << " item " << i;
            ASSERT_EQ(item->front().code, 0) << section.name << " item " << i;
            const std::size_t first = indexAt.at(item->front().line);
            if (i > 0) {
                EXPECT_EQ(first, next) << section.name << " item " << i;
            }
            for (std::size_t k = 0; k < item->size(); ++k)
                ASSERT_EQ((*item)[k].value, all.at(first + k).value) << section.name << " " << i;
            next = first + item->size();
        }
    }
}

std::string rowName(const testing::TestParamInfo<CorpusRow>& row) {
    std::string name = std::filesystem::path(row.param.file).stem().string();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    Drawings, CorpusFile,
    testing::Values(
        CorpusRow{"acadsharp__dynamic-blocks_BLOCKVISIBILITYPARAMETER.dxf", 8665, "AC1032",
                  "ANSI_1252",
                  "HEADER=0 CLASSES=25 TABLES=55 BLOCKS=93 ENTITIES=4 OBJECTS=157 ACDSDATA=6"},
        CorpusRow{"acadsharp__sample_AC1009_ascii.dxf", 41123, "AC1009", "ANSI_1252",
                  "HEADER=0 TABLES=95 BLOCKS=3313 ENTITIES=681"},
        CorpusRow{"dxfparser__blocks.dxf", 54070, "AC1009", "ANSI_1252", "BLOCKS=3813"},
        CorpusRow{"dxfparser__extendeddata.dxf", 7359, "AC1027", "ANSI_1252",
                  "HEADER=0 CLASSES=9 TABLES=88 BLOCKS=4 ENTITIES=9 OBJECTS=138"},
        CorpusRow{"ezdxf-made__korean_catalogue_r2000_cp949.dxf", 3817, "AC1015", "ANSI_949",
                  "HEADER=0 CLASSES=15 TABLES=91 BLOCKS=20 ENTITIES=21 OBJECTS=56"},
        CorpusRow{"ezdxf__ASCII_R12.dxf", 595, "AC1009", "ANSI_1252",
                  "HEADER=0 TABLES=34 BLOCKS=7 ENTITIES=3"},
        CorpusRow{"ezdxf__Minimal_DXF_AC1021.dxf", 349, "AC1021", "ANSI_1252",
                  "HEADER=0 CLASSES=0 TABLES=28 BLOCKS=4 ENTITIES=0 OBJECTS=2"},
        CorpusRow{"ezdxf__bin_dxf_r2000.dxf", 1332, "AC1015", "ANSI_1252",
                  "HEADER=0 CLASSES=15 TABLES=30 BLOCKS=4 ENTITIES=1 OBJECTS=19"},
        CorpusRow{"ezdxf__custom_blocks.dxf", 4923, "AC1024", "ANSI_1252",
                  "HEADER=0 CLASSES=13 TABLES=41 BLOCKS=10 ENTITIES=5 OBJECTS=96"},
        CorpusRow{"ezdxf__duplicate_handles.dxf", 2652, "AC1012", "dos850",
                  "HEADER=0 CLASSES=0 TABLES=34 BLOCKS=4 ENTITIES=145 OBJECTS=4"},
        CorpusRow{"ezdxf__dxf_unicode.dxf", 1538, "AC1027", "ANSI_1252",
                  "HEADER=0 CLASSES=15 TABLES=32 BLOCKS=4 ENTITIES=0 OBJECTS=23"},
        CorpusRow{"ezdxf__groups.dxf", 6224, "AC1027", "ANSI_1252",
                  "HEADER=0 CLASSES=13 TABLES=31 BLOCKS=6 ENTITIES=13 OBJECTS=97 "
                  "THUMBNAILIMAGE=0"},
        CorpusRow{"ezdxf__hatches_1.dxf", 7876, "AC1032", "ANSI_1252",
                  "HEADER=0 CLASSES=17 TABLES=39 BLOCKS=6 ENTITIES=32 OBJECTS=124 ACDSDATA=6"},
        CorpusRow{"ezdxf__mtext_columns_R2000.dxf", 1597, "AC1015", "ANSI_1252",
                  "HEADER=0 CLASSES=15 TABLES=30 BLOCKS=4 ENTITIES=9 OBJECTS=20"},
        CorpusRow{"ezdxf__small_r13.dxf", 1502, "AC1012", "dos932",
                  "HEADER=0 CLASSES=7 TABLES=30 BLOCKS=4 ENTITIES=75 OBJECTS=10"},
        CorpusRow{"ezdxf__small_r14.dxf", 789, "AC1014", "ANSI_1252",
                  "HEADER=0 TABLES=29 BLOCKS=4 ENTITIES=0 OBJECTS=45"},
        CorpusRow{"ezdxf__text.dxf", 12055, "AC1032", "ANSI_1252",
                  "HEADER=0 CLASSES=21 TABLES=79 BLOCKS=17 ENTITIES=229 OBJECTS=113 ACDSDATA=8"},
        CorpusRow{"netdxf__sample.dxf", 20194, "AC1032", "ANSI_1252",
                  "HEADER=0 CLASSES=38 TABLES=80 BLOCKS=188 ENTITIES=347 OBJECTS=145 "
                  "ACDSDATA=6"}),
    rowName);

// The first value of `code` on or after `line`.
std::string_view valueAt(const std::vector<Tag>& tags, int code, std::uint32_t line) {
    for (const Tag& tag : tags) {
        if (tag.line >= line && tag.code == code) return tag.value;
    }
    return {};
}

TEST(CorpusText, DecodesWithTheCodePageTheHeaderNames) {
    struct Row {
        const char* file;
        int code;
        std::uint32_t line;
        const char* utf8;
    };
    for (const Row& row : {
             Row{"ezdxf-made__korean_catalogue_r2000_cp949.dxf", 2, 2058, "부품"},
             Row{"ezdxf-made__korean_catalogue_r2000_cp949.dxf", 2, 4648, "VALVE_밸브"},
             Row{"ezdxf__ASCII_R12.dxf", 8, 95, "ΛΑΓΕΡÄÜÖ"},
             Row{"ezdxf__dxf_unicode.dxf", 2, 1617, "Tschüss mit ü"},
         }) {
        DxfFile file = DxfFile::fromPath(corpus(row.file));
        ASSERT_TRUE(file.ok()) << row.file;
        DxfStructure structure;
        ASSERT_FALSE(StructureLoader::load(file, structure)) << row.file;
        const auto codePage = fileCodePage(structure.acadVersion, structure.codePageName);
        TextArena arena;
        EXPECT_EQ(decodeText(valueAt(allTags(file, arena), row.code, row.line), codePage), row.utf8)
            << row.file;
    }
}

TEST(CorpusFile, MissingFileIsAnError) {
    const auto path = std::filesystem::temp_directory_path() / "vantor-no-such-drawing.dxf";
    const DxfFile file = DxfFile::fromPath(path);
    ASSERT_FALSE(file.ok());
    EXPECT_EQ(file.error()->message, "cannot read " + path.string());
}

TEST(CorpusFile, LinesEndedByABareCarriageReturnReadAsAnyOther) {
    std::string bytes;
    {
        std::ifstream in(corpus("ezdxf__small_r14.dxf"), std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), {});
    }
    std::erase(bytes, '\r');
    std::string bareCr = bytes;
    std::replace(bareCr.begin(), bareCr.end(), '\n', '\r');
    DxfStructure expected;
    DxfFile lineFeeds = DxfFile::fromBytes(bytes);
    ASSERT_FALSE(StructureLoader::load(lineFeeds, expected));
    DxfStructure structure;
    DxfFile file = DxfFile::fromBytes(bareCr);
    ASSERT_FALSE(StructureLoader::load(file, structure));
    EXPECT_EQ(outline(structure), outline(expected));
    const TagRun& last = structure.sections.back().items.back();
    EXPECT_EQ(last.line, expected.sections.back().items.back().line);
    EXPECT_EQ(file.tagsOf(last)->back().value, lineFeeds.tagsOf(last)->back().value);
}

TEST(CorpusFile, Utf8TextIsToldFromOtherBytesAcrossTheScansSteps) {
    // The scan goes in steps of a few megabytes; the Hangul syllable straddles the first step.
    std::string padding((4u << 20) - 1, 'a');
    EXPECT_TRUE(DxfFile::fromBytes(padding + "한\n").hasUtf8Text());
    EXPECT_FALSE(DxfFile::fromBytes(padding + "caf\xE9\n").hasUtf8Text()) << "Western text";
    EXPECT_FALSE(DxfFile::fromBytes(padding + "\xBF\xBF\n").hasUtf8Text()) << "no lead";
    EXPECT_FALSE(DxfFile::fromBytes(padding + "\n").hasUtf8Text()) << "nothing beyond ASCII";
}

// Tags view into the file's bytes; moving the file must not leave them dangling, even for a
// file short enough to fit inside a std::string object.
TEST(CorpusFile, TagsSurviveMovingTheFile) {
    DxfFile moved = DxfFile::fromBytes("0\nSECTION\n2\nX\n0\nA\n0\nENDSEC\n0\nEOF\n");
    DxfStructure structure;
    ASSERT_FALSE(StructureLoader::load(moved, structure));
    const std::string_view before =
        moved.tagsOf(structure.sections.at(0).items.at(0))->front().value;
    DxfFile file = std::move(moved);
    const auto item = file.tagsOf(structure.sections.at(0).items.at(0));
    ASSERT_TRUE(item);
    EXPECT_EQ(item->front().value, "A");
    EXPECT_EQ(item->front().value.data(), before.data());
    EXPECT_EQ(item->front().value.data(), file.bytes().data() + 16);
}

}  // namespace
}  // namespace cad::db::dxf
