// Drawings written as DWG 2000 and read back: every entity, name, attribute and xrecord chain
// comes back as the DXF reader gave it, in code page 949 too.
#include "cad/db/dwg/DwgWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/dwg/DwgTranslator.h"
#include "cad/db/dxf/DxfDatabaseWriter.h"
#include "cad/sys/CodePage.h"

namespace cad::db::dwg {
namespace {

std::string corpus(const std::string& name) {
    return (std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus" / name).string();
}

// The block definitions and entities as the DXF writer writes them: what must survive the
// trip through DWG unchanged, handles included.
std::string entitiesOf(Database& db) {
    std::string text;
    std::vector<std::string> messages;
    EXPECT_EQ(dxf::DxfDatabaseWriter::write(db, DxfVersion::R2000, text, messages),
              ErrorStatus::eOk);
    const std::size_t blocks = text.find("\nBLOCKS\n");
    const std::size_t objects = text.find("\nOBJECTS\n");
    if (blocks == std::string::npos || objects == std::string::npos) return text;
    std::string body = text.substr(blocks, objects - blocks);
    // R14 DXF files spell the two spaces in capitals; DWG knows them by their place in the
    // block table, and they are read back with the names DXF writers give them.
    for (const auto& [from, to] : {std::pair<std::string, std::string>{"*MODEL_SPACE", "*Model_Space"},
                                   {"*PAPER_SPACE", "*Paper_Space"}}) {
        for (std::size_t at = body.find(from); at != std::string::npos;
             at = body.find(from, at + to.size())) {
            body.replace(at, from.size(), to);
        }
    }
    // A viewport's settings from 2004 on have no place in a DWG 2000 file: viewports are
    // counted, not compared.
    for (std::size_t at = body.find("\n  0\nVIEWPORT\n"); at != std::string::npos;
         at = body.find("\n  0\nVIEWPORT\n", at + 1)) {
        const std::size_t end = body.find("\n  0\n", at + 1);
        body.replace(at, end - at, "\n  0\nVIEWPORT");
    }
    // The paper-space flag (67) of a BLOCK or ENDBLK is DXF's alone; DWG has the owner.
    for (const char* structure : {"\nBLOCK\n", "\nENDBLK\n"}) {
        for (std::size_t at = body.find(structure); at != std::string::npos;
             at = body.find(structure, at + 1)) {
            const std::size_t end = body.find("\n  0\n", at + 1);
            const std::size_t flag = body.find("\n 67\n1\n", at);
            if (flag != std::string::npos && flag < end) body.erase(flag, 6);
        }
    }
    return body;
}

class DwgRoundTrip : public testing::TestWithParam<const char*> {};

TEST_P(DwgRoundTrip, WrittenAndReadBackTheDrawingIsUnchanged) {
    Database source(false);
    ASSERT_EQ(source.readDwgFile(corpus(GetParam()), sys::ShareMode::DenyNone), ErrorStatus::eOk)
        << source.lastErrorMessage();
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);

    DwgTranslation translation;
    const auto error = DwgTranslator::translate(bytes, translation);
    ASSERT_FALSE(error) << error->message;
    EXPECT_TRUE(translation.layout.warnings.empty())
        << testing::PrintToString(translation.layout.warnings);
    EXPECT_EQ(translation.checkValueMismatches, 0);
    EXPECT_EQ(translation.unreadable, 0) << testing::PrintToString(translation.unreadableMessages);

    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk)
        << back.lastErrorMessage();
    // These drawings hold only entities the writer encodes; the objects it leaves out are
    // named in the messages.
    EXPECT_EQ(entitiesOf(back), entitiesOf(source));
    for (const std::string& message : messages) {
        EXPECT_NE(message.find("not written to DWG"), std::string::npos) << message;
    }
    EXPECT_EQ(back.openObjectCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Corpus, DwgRoundTrip,
                         testing::Values("ezdxf__small_r14.dxf", "ezdxf__groups.dxf",
                                         "dxfparser__extendeddata.dxf",
                                         "ezdxf-made__korean_catalogue_r2000_cp949.dxf"),
                         [](const auto& row) {
                             std::string name(row.param);
                             name = name.substr(0, name.find('.'));
                             for (char& c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             }
                             return name;
                         });

// The XRECORD structure with handle `handle` as the DXF writer writes it.
std::string xrecordOf(Database& db, const std::string& handle) {
    std::string text;
    std::vector<std::string> messages;
    dxf::DxfDatabaseWriter::write(db, DxfVersion::R2000, text, messages);
    const std::size_t at = text.find("XRECORD\n  5\n" + handle + "\n");
    if (at == std::string::npos) return "(no xrecord " + handle + ")";
    return text.substr(at, text.find("\n  0\n", at) - at);
}

TEST(DwgWriter, SampleR14RewrittenAs2000KeepsEveryEntityItWrites) {
    Database source(false);
    ASSERT_EQ(source.readDwgFile(corpus("acadsharp__sample_AC1014.dwg"), sys::ShareMode::DenyNone),
              ErrorStatus::eOk);
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    DwgTranslation rewritten;
    ASSERT_FALSE(DwgTranslator::translate(bytes, rewritten));
    EXPECT_EQ(rewritten.layout.acadVer, "AC1015");
    EXPECT_EQ(rewritten.unreadable, 0) << testing::PrintToString(rewritten.unreadableMessages);
    EXPECT_EQ(rewritten.checkValueMismatches, 0);
    // Dimensions of every kind, hatches, splines, viewports, faces and the rest, counted as
    // the original's reading counted them.
    const std::map<std::string, int> expected{
        {"LINE", 98},      {"CIRCLE", 13},       {"ARC", 3},          {"HATCH", 8},
        {"SPLINE", 2},     {"VIEWPORT", 6},      {"3DFACE", 1},       {"RAY", 1},
        {"XLINE", 1},      {"DIMENSION_LINEAR", 3}, {"DIMENSION_ORDINATE", 2},
        {"DIMENSION_ANG2LN", 1}, {"DIMENSION_DIAMETER", 1}, {"INSERT", 14}, {"ATTRIB", 4},
        {"LAYOUT", 4},     {"DIMSTYLE", 6},      {"VERTEX_PFACE", 5}, {"VERTEX_PFACE_FACE", 2},
        {"LEADER", 1},     {"TOLERANCE", 3},     {"SCALE", 33},       {"SORTENTSTABLE", 3},
        {"VIEW", 1},       {"VPORT", 1},         {"MLINE", 3},        {"WIPEOUT", 1},
        {"IMAGE", 1},      {"IMAGEDEF", 1},      {"IMAGEDEF_REACTOR", 1},
    };
    for (const auto& [type, count] : expected) EXPECT_EQ(rewritten.read[type], count) << type;
    // Everything the reader took from the file, the writer writes.
    EXPECT_TRUE(messages.empty()) << testing::PrintToString(messages);
}

// Tags written one per line as "code value"; "|" separates them.
std::string dxfOf(const std::string& tags) {
    std::string text;
    for (std::size_t at = 0; at < tags.size();) {
        const std::size_t end = std::min(tags.find('|', at), tags.size());
        const std::string tag = tags.substr(at, end - at);
        const std::size_t blank = tag.find(' ');
        text += tag.substr(0, blank) + "\n" + (blank == std::string::npos ? "" : tag.substr(blank + 1)) + "\n";
        at = end + 1;
    }
    return text;
}

TEST(DwgWriter, EveryShortFormOfTheEncodingReadsBack) {
    // Each entity takes another of the branches DWG 2000 has for saving bits: Z zero or not,
    // text data flags all default or none, the four scale forms of an insert, polyline widths
    // and bulges, face edge flags, hatch edges of every kind, splines by fit points.
    const std::string entities =
        "0 LINE|5 101|330 1F|100 AcDbEntity|8 0|100 AcDbLine|10 1.5|20 2.5|30 0.0|11 1.5|21 9.0|31 0.0|"
        "0 LINE|5 102|330 1F|100 AcDbEntity|8 0|62 3|370 35|6 Continuous|100 AcDbLine|39 2.0|"
        "10 1.0|20 2.0|30 3.0|11 4.0|21 5.0|31 -6.0|210 0.0|220 0.0|230 -1.0|"
        "0 TEXT|5 103|330 1F|100 AcDbEntity|8 0|100 AcDbText|10 1.0|20 2.0|30 0.0|40 2.5|1 plain|100 AcDbText|"
        "0 TEXT|5 104|330 1F|100 AcDbEntity|8 0|100 AcDbText|10 1.0|20 2.0|30 4.0|40 2.5|1 all set|"
        "50 30.0|41 0.8|51 15.0|71 2|72 1|11 7.0|21 8.0|31 4.0|100 AcDbText|73 2|"
        "0 INSERT|5 105|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 1.0|20 1.0|30 0.0|"
        "0 INSERT|5 106|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 1.0|20 1.0|30 0.0|"
        "41 2.0|42 2.0|43 2.0|50 45.0|"
        "0 INSERT|5 107|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 1.0|20 1.0|30 0.0|"
        "42 3.0|43 0.5|"
        "0 INSERT|5 108|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 1.0|20 1.0|30 0.0|"
        "41 -1.0|42 2.0|43 4.0|"
        "0 LWPOLYLINE|5 109|330 1F|100 AcDbEntity|8 0|100 AcDbPolyline|90 3|70 129|43 0.5|38 2.0|"
        "10 0.0|20 0.0|42 0.5|10 10.0|20 0.0|10 10.0|20 10.0|42 -1.0|"
        "0 LWPOLYLINE|5 10A|330 1F|100 AcDbEntity|8 0|100 AcDbPolyline|90 2|70 0|"
        "10 0.0|20 0.0|40 1.0|41 2.0|10 5.0|20 5.0|"
        "0 3DFACE|5 10B|330 1F|100 AcDbEntity|8 0|100 AcDbFace|10 0.0|20 0.0|30 1.0|11 1.0|21 0.0|31 1.0|"
        "12 1.0|22 1.0|32 2.0|13 0.0|23 1.0|33 2.0|70 5|"
        "0 SPLINE|5 10C|330 1F|100 AcDbEntity|8 0|100 AcDbSpline|70 8|71 3|72 0|73 0|74 3|42 1e-10|43 1e-10|"
        "44 1e-10|12 1.0|22 0.0|32 0.0|13 0.0|23 1.0|33 0.0|11 0.0|21 0.0|31 0.0|11 5.0|21 5.0|31 0.0|"
        "11 10.0|21 0.0|31 0.0|"
        "0 HATCH|5 10D|330 1F|100 AcDbEntity|8 0|100 AcDbHatch|10 0.0|20 0.0|30 0.0|210 0.0|220 0.0|230 1.0|"
        "2 USER|70 0|71 0|91 2|92 1|93 4|72 1|10 0.0|20 0.0|11 10.0|21 0.0|72 2|10 10.0|20 5.0|40 5.0|"
        "50 270.0|51 90.0|73 1|72 3|10 5.0|20 10.0|11 5.0|21 0.0|40 0.5|50 0.0|51 180.0|73 0|"
        "72 4|94 3|73 0|74 0|95 8|96 4|40 0.0|40 0.0|40 0.0|40 0.0|40 1.0|40 1.0|40 1.0|40 1.0|"
        "10 0.0|20 10.0|10 0.0|20 7.0|10 0.0|20 3.0|10 0.0|20 0.0|97 0|92 7|72 1|73 1|93 3|"
        "10 2.0|20 2.0|42 0.25|10 4.0|20 2.0|42 0.0|10 3.0|20 4.0|42 0.0|97 0|75 1|76 0|52 30.0|"
        "41 2.0|77 1|78 1|53 30.0|43 0.0|44 0.0|45 -0.5|46 0.866|79 2|49 1.0|49 -0.5|47 0.01|98 1|"
        "10 1.0|20 1.0|";
    const std::string dxf = dxfOf(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 BLOCKS|"
        "0 BLOCK|5 F0|330 F1|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 B|70 0|10 0.0|20 0.0|30 0.0|3 B|1 |"
        "0 ENDBLK|5 F2|330 F1|100 AcDbEntity|8 0|100 AcDbBlockEnd|0 ENDSEC|"
        "0 SECTION|2 ENTITIES|" + entities + "0 ENDSEC|0 EOF");
    Database source(false);
    ASSERT_EQ(source.readDxfBytes(dxf, "forms.dxf"), ErrorStatus::eOk) << source.lastErrorMessage();
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    EXPECT_TRUE(messages.empty()) << testing::PrintToString(messages);
    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_EQ(translation.unreadable, 0) << testing::PrintToString(translation.unreadableMessages);
    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);
    EXPECT_EQ(entitiesOf(back), entitiesOf(source));
}

// The structures of one type in DXF text, one after another.
std::string structuresOf(const std::string& text, const std::string& type) {
    std::string out;
    const std::string start = "\n  0\n" + type + "\n";
    // Reals are compared as numbers would be: "1E-16" and "1e-16" are one value.
    for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
        out += text.substr(at, text.find("\n  0\n", at + 1) - at);
    }
    for (char& c : out) {
        if (c == 'E') c = 'e';
    }
    return out;
}

// The values of the given codes in DXF text, in order, as "code value" lines.
std::string valuesOf(const std::string& text, std::initializer_list<int> codes) {
    std::string out;
    std::size_t at = text.find('\n') + 1;
    while (at < text.size()) {
        const std::size_t codeEnd = text.find('\n', at);
        const std::size_t valueEnd = std::min(text.find('\n', codeEnd + 1), text.size());
        const int code = std::stoi(text.substr(at, codeEnd - at));
        if (std::find(codes.begin(), codes.end(), code) != codes.end()) {
            out += std::to_string(code) + " " + text.substr(codeEnd + 1, valueEnd - codeEnd - 1) + "\n";
        }
        at = valueEnd + 1;
    }
    return out;
}

TEST(DwgWriter, MultilinesAndWipeoutsKeepEveryFieldThroughBothVersions) {
    // The engine keeps both as their tags. DWG stores a multiline's vertices with the
    // directions of each segment and miter, and per line of its style the dash and fill
    // parameters; a wipeout is an image of no picture, with its clip outline in pixels.
    Database source(false);
    ASSERT_EQ(source.readDwgFile(corpus("netdxf__sample.dxf"), sys::ShareMode::DenyNone),
              ErrorStatus::eOk);
    const std::string before = entitiesOf(source);
    for (const DwgVersion version : {DwgVersion::R2000, DwgVersion::R14}) {
        std::string bytes;
        std::vector<std::string> messages;
        ASSERT_EQ(DwgWriter::write(source, bytes, messages, version), ErrorStatus::eOk);
        DwgTranslation translation;
        ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
        Database back(false);
        ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);
        const std::string after = entitiesOf(back);
        for (const auto& [type, count] : {std::pair<std::string, int>{"MLINE", 2}, {"WIPEOUT", 1}}) {
            for (const std::string& message : messages) {
                EXPECT_EQ(message.find(" " + type + " "), std::string::npos) << message;
            }
            EXPECT_EQ(translation.read[type], count) << type;
            ASSERT_NE(structuresOf(before, type), "") << type;
            if (type == "MLINE") {
                EXPECT_EQ(structuresOf(after, type), structuresOf(before, type));
                continue;
            }
            // What DWG 2000 has of a wipeout: later files add proxy graphics and clip modes.
            const std::initializer_list<int> kept{5,  10, 20, 30, 11, 21, 31,  12,  22,  32, 13,
                                                  23, 70, 71, 91, 14, 24, 280, 281, 282, 283};
            EXPECT_NE(valuesOf(structuresOf(before, type), kept).find("\n91 6\n14 -0.5\n"),
                      std::string::npos);
            EXPECT_EQ(valuesOf(structuresOf(after, type), kept),
                      valuesOf(structuresOf(before, type), kept));
        }
    }
}

TEST(DwgWriter, ALargeModelSpaceReadsBackWholeAndInOrder) {
    // Past some thousands of entities the model space is read in two halves side by side:
    // polylines with their vertices and references with their attributes on either side of
    // the cut come back in their places, and counted.
    std::string entities;
    int handle = 0x200;
    const auto next = [&handle] {
        char text[16];
        std::snprintf(text, sizeof text, "%X", handle++);
        return std::string(text);
    };
    const auto parents = [&](double at) {
        const std::string polyline = next();
        entities += "0 POLYLINE|5 " + polyline + "|330 1F|100 AcDbEntity|8 0|100 AcDb2dPolyline|" +
                    "66 1|10 0.0|20 0.0|30 0.0|70 1|";
        for (int v = 0; v < 3; ++v) {
            entities += "0 VERTEX|5 " + next() + "|330 " + polyline +
                        "|100 AcDbEntity|8 0|100 AcDbVertex|100 AcDb2dVertex|10 " +
                        std::to_string(at + v) + "|20 1.0|30 0.0|70 0|";
        }
        entities += "0 SEQEND|5 " + next() + "|330 " + polyline + "|100 AcDbEntity|8 0|";
        const std::string insert = next();
        entities += "0 INSERT|5 " + insert + "|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|" +
                    "66 1|2 B|10 " + std::to_string(at) + "|20 2.0|30 0.0|";
        entities += "0 ATTRIB|5 " + next() + "|330 " + insert +
                    "|100 AcDbEntity|8 0|100 AcDbText|10 0.0|20 0.0|30 0.0|40 1.0|1 V" +
                    std::to_string(at) + "|100 AcDbAttribute|2 TAG|70 0|";
        entities += "0 SEQEND|5 " + next() + "|330 " + insert + "|100 AcDbEntity|8 0|";
    };
    constexpr int kLines = 9000;
    for (int i = 0; i < kLines; ++i) {
        if (i == 10 || i == kLines / 2 || i == kLines - 10) parents(i);
        entities += "0 LINE|5 " + next() + "|330 1F|100 AcDbEntity|8 0|100 AcDbLine|10 " +
                    std::to_string(i) + "|20 0.0|30 0.0|11 " + std::to_string(i) +
                    "|21 5.0|31 0.0|";
    }
    const std::string dxf = dxfOf(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 BLOCKS|"
        "0 BLOCK|5 F0|330 F1|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 B|70 2|10 0.0|20 0.0|30 0.0|3 B|1 |"
        "0 ATTDEF|5 F3|330 F1|100 AcDbEntity|8 0|100 AcDbText|10 0.0|20 0.0|30 0.0|40 1.0|1 |"
        "100 AcDbAttributeDefinition|3 P|2 TAG|70 0|"
        "0 ENDBLK|5 F2|330 F1|100 AcDbEntity|8 0|100 AcDbBlockEnd|0 ENDSEC|"
        "0 SECTION|2 ENTITIES|" + entities + "0 ENDSEC|0 EOF");
    Database source(false);
    ASSERT_EQ(source.readDxfBytes(dxf, "large.dxf"), ErrorStatus::eOk) << source.lastErrorMessage();
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_EQ(translation.read["LINE"], kLines);
    EXPECT_EQ(translation.read["VERTEX_2D"], 9);
    EXPECT_EQ(translation.read["ATTRIB"], 3);
    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);
    EXPECT_EQ(entitiesOf(back), entitiesOf(source));
}

TEST(DwgWriter, HeaderVariablesTheEngineUsesReadBack) {
    const std::string dxf = dxfOf(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $INSBASE|10 1.5|20 2.5|30 0.0|"
        "9 $EXTMIN|10 -1.0|20 -2.0|30 0.0|9 $EXTMAX|10 100.0|20 50.0|30 0.0|"
        "9 $LIMMAX|10 594.0|20 420.0|9 $LTSCALE|40 2.5|9 $PDMODE|70 34|9 $PDSIZE|40 1.25|"
        "9 $DIMSCALE|40 10.0|9 $DIMASZ|40 3.0|9 $INSUNITS|70 4|9 $LUNITS|70 2|9 $LUPREC|70 3|"
        "9 $CECOLOR|62 1|9 $CLAYER|8 PARTS|9 $TEXTSTYLE|7 Standard|"
        "0 ENDSEC|0 SECTION|2 TABLES|0 TABLE|2 LAYER|5 2|330 0|100 AcDbSymbolTable|70 2|"
        "0 LAYER|5 10|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 Continuous|"
        "0 LAYER|5 11|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 PARTS|70 0|62 -5|6 Continuous|"
        "0 ENDTAB|0 ENDSEC|0 EOF");
    Database source(false);
    ASSERT_EQ(source.readDxfBytes(dxf, "header.dxf"), ErrorStatus::eOk) << source.lastErrorMessage();
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_TRUE(translation.layout.warnings.empty())
        << testing::PrintToString(translation.layout.warnings);
    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);
    for (const char* name : {"$INSBASE", "$EXTMIN", "$EXTMAX", "$LIMMAX", "$LTSCALE", "$PDMODE",
                             "$PDSIZE", "$DIMSCALE", "$DIMASZ", "$INSUNITS", "$LUPREC", "$CECOLOR",
                             "$CLAYER"}) {
        EXPECT_EQ(back.header().text(name), source.header().text(name)) << name;
    }
    EXPECT_EQ(back.header().text("$CLAYER"), "PARTS");
}

TEST(DwgWriter, R14KeepsWhatR14Holds) {
    // The encodings R14 has in place of 2000's (whole thickness and extrusion, texts, scales,
    // lines and faces without their short forms, layers by bits, the dimension variables in
    // their R14 order, classes for polylines, hatches and xrecords) read back the same.
    for (const char* name : {"acadsharp__sample_AC1014.dwg",
                             "ezdxf-made__korean_catalogue_r2000_cp949.dxf"}) {
        SCOPED_TRACE(name);
        Database source(false);
        ASSERT_EQ(source.readDwgFile(corpus(name), sys::ShareMode::DenyNone), ErrorStatus::eOk);
        std::string bytes;
        std::vector<std::string> messages;
        ASSERT_EQ(DwgWriter::write(source, bytes, messages, DwgVersion::R14), ErrorStatus::eOk);
        DwgTranslation r14;
        ASSERT_FALSE(DwgTranslator::translate(bytes, r14));
        EXPECT_EQ(r14.layout.acadVer, "AC1014");
        EXPECT_TRUE(r14.layout.warnings.empty()) << testing::PrintToString(r14.layout.warnings);
        EXPECT_EQ(r14.unreadable, 0) << testing::PrintToString(r14.unreadableMessages);
        EXPECT_EQ(r14.checkValueMismatches, 0);
        Database back(false);
        ASSERT_EQ(back.readDxfBytes(r14.dxf, "back.dxf"), ErrorStatus::eOk);
        // R14 has no layouts, and R14 DXF writes no line weights: those are the differences.
        for (const std::string& message : messages) {
            EXPECT_NE(message.find("not written to DWG"), std::string::npos) << message;
        }
        std::string before = entitiesOf(source), after = entitiesOf(back);
        for (std::string* text : {&before, &after}) {
            for (std::size_t at = text->find("\n370\n"); at != std::string::npos;
                 at = text->find("\n370\n", at)) {
                text->erase(at, text->find('\n', at + 5) - at);
            }
        }
        if (std::string(name).ends_with(".dxf")) {
            EXPECT_EQ(after, before);
        }
    }
}

TEST(DwgWriter, XrecordChainsKeepEveryKindOfValue) {
    // A 280 among the data (not only the cloning flag), texts, integers of every width,
    // reals, points, binary chunks and links.
    const std::string dxf =
        "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n"
        "0\nSECTION\n2\nOBJECTS\n"
        "0\nDICTIONARY\n5\nC\n330\n0\n100\nAcDbDictionary\n3\nPARTS\n350\nD1\n"
        "0\nXRECORD\n5\nD1\n330\nC\n100\nAcDbXrecord\n280\n1\n1\nvalve ^J two\n280\n7\n"
        "70\n-3\n90\n100000\n40\n2.5\n10\n1.0\n20\n2.0\n30\n3.0\n310\nABCD00\n"
        "330\nC\n1071\n5\n160\n4294967296\n"
        "0\nENDSEC\n0\nEOF\n";
    Database source(false);
    ASSERT_EQ(source.readDxfBytes(dxf, "xrecord.dxf"), ErrorStatus::eOk) << source.lastErrorMessage();
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_EQ(translation.unreadable, 0) << testing::PrintToString(translation.unreadableMessages);
    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);
    EXPECT_EQ(xrecordOf(back, "D1"), xrecordOf(source, "D1"));
    EXPECT_NE(xrecordOf(source, "D1").find("4294967296"), std::string::npos);
}

TEST(DwgWriter, KoreanCatalogueKeepsItsNamesAttributesAndXrecords) {
    Database source(false);
    ASSERT_EQ(source.readDwgFile(corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf"),
                                 sys::ShareMode::DenyNone),
              ErrorStatus::eOk);
    std::string bytes;
    std::vector<std::string> messages;
    ASSERT_EQ(DwgWriter::write(source, bytes, messages), ErrorStatus::eOk);
    // What it cannot encode yet is named, type by type.
    for (const std::string& message : messages) {
        EXPECT_NE(message.find("not written to DWG"), std::string::npos) << message;
    }
    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_EQ(translation.layout.codePageName, "ANSI_949");
    Database back(false);
    ASSERT_EQ(back.readDxfBytes(translation.dxf, "back.dxf"), ErrorStatus::eOk);

    // Entities of every block by type and layer, attributes with their values, and every
    // xrecord's chain, compared as the DXF writer spells them.
    const auto summary = [](Database& db) {
        std::map<std::string, int> out;
        std::string text;
        std::vector<std::string> unused;
        dxf::DxfDatabaseWriter::write(db, DxfVersion::R2000, text, unused);
        for (const std::string needle : {"\n부품\n", "VALVE_밸브", "게이트 밸브", "볼 밸브",
                                         "한글 텍스트 테스트 ABC", "\nXRECORD\n", "\nATTRIB\n",
                                         "\nINSERT\n", "\nLAYOUT\n", "\nGROUP\n"}) {
            const std::string encoded = sys::fromUtf8(needle, sys::CodePage::Ansi949);
            int count = 0;
            for (std::size_t at = text.find(encoded); at != std::string::npos;
                 at = text.find(encoded, at + 1)) {
                ++count;
            }
            out[needle] = count;
        }
        return out;
    };
    const auto before = summary(source);
    EXPECT_EQ(summary(back), before);
    EXPECT_GT(before.at("\nXRECORD\n"), 0);
    EXPECT_GT(before.at("게이트 밸브"), 0);
}

}  // namespace
}  // namespace cad::db::dwg
