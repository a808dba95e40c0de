// Real drawings from other programs through the tag reader and the structure loader. The
// expected outlines were counted by a separate script over the files, not by this code.
#include "cad/db/dxf/DxfFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "cad/db/dxf/StructureLoader.h"
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

TEST_P(CorpusFile, LoadsThroughBothStages) {
    const DxfFile file = DxfFile::fromPath(corpus(GetParam().file));
    ASSERT_TRUE(file.ok()) << file.error()->message;
    EXPECT_EQ(file.tags().size(), GetParam().tags);
    DxfStructure structure;
    const auto error = StructureLoader::load(file.tags(), structure, file.place());
    ASSERT_FALSE(error) << error->message;
    EXPECT_EQ(structure.acadVersion, GetParam().acadVersion);
    EXPECT_EQ(structure.codePageName, GetParam().codePage);
    EXPECT_EQ(outline(structure), GetParam().outline);
    // Every item starts at a code-0 tag and items of a section follow each other without gaps.
    for (const Section& section : structure.sections) {
        for (std::size_t i = 0; i < section.items.size(); ++i) {
            ASSERT_EQ(section.items[i].front().code, 0) << section.name << " item " << i;
            if (i > 0) {
                EXPECT_EQ(section.items[i - 1].data() + section.items[i - 1].size(),
                          section.items[i].data());
            }
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
std::string_view valueAt(const DxfFile& file, int code, std::uint32_t line) {
    for (const Tag& tag : file.tags()) {
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
        const DxfFile file = DxfFile::fromPath(corpus(row.file));
        ASSERT_TRUE(file.ok()) << row.file;
        DxfStructure structure;
        ASSERT_FALSE(StructureLoader::load(file.tags(), structure)) << row.file;
        const auto codePage = fileCodePage(structure.acadVersion, structure.codePageName);
        EXPECT_EQ(decodeText(valueAt(file, row.code, row.line), codePage), row.utf8) << row.file;
    }
}

TEST(CorpusFile, DwgIsRefusedWithAClearMessage) {
    const DxfFile file = DxfFile::fromPath(corpus("acadsharp__sample_AC1014.dwg"));
    ASSERT_FALSE(file.ok());
    EXPECT_EQ(file.error()->message, "DWG files cannot be read; save the drawing as DXF");
    EXPECT_TRUE(file.tags().empty());
}

TEST(CorpusFile, MissingFileIsAnError) {
    const auto path = std::filesystem::temp_directory_path() / "vantor-no-such-drawing.dxf";
    const DxfFile file = DxfFile::fromPath(path);
    ASSERT_FALSE(file.ok());
    EXPECT_EQ(file.error()->message, "cannot read " + path.string());
}

// Tags view into the file's bytes; moving the file must not leave them dangling, even for a
// file short enough to fit inside a std::string object.
TEST(CorpusFile, TagsSurviveMovingTheFile) {
    DxfFile moved = DxfFile::fromBytes("0\nEOF\n");
    const DxfFile file = std::move(moved);
    ASSERT_EQ(file.tags().size(), 1u);
    EXPECT_EQ(file.tags()[0].value, "EOF");
    EXPECT_EQ(file.tags()[0].value.data(), file.bytes().data() + 2);
}

}  // namespace
}  // namespace cad::db::dxf
