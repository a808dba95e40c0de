// Drawings written as DWG 2000 and read back: every entity, name, attribute and xrecord chain
// comes back as the DXF reader gave it, in code page 949 too.
#include "cad/db/dwg/DwgWriter.h"

#include <gtest/gtest.h>

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
        {"VIEW", 1},       {"VPORT", 1},
    };
    for (const auto& [type, count] : expected) EXPECT_EQ(rewritten.read[type], count) << type;
    // Everything the reader took from the file, the writer writes.
    EXPECT_TRUE(messages.empty()) << testing::PrintToString(messages);
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
