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
