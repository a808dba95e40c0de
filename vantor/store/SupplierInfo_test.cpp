// The supplier record: logo chunks, the read-back rule with its tail placement, the logo file
// refusals, storing and replacing the record, and the panel's internet link.
#include "vantor/store/SupplierInfo.h"

#include <gtest/gtest.h>

#include <string>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/TestDrawing.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/SupplierPanel.h"

namespace vantor {
namespace {

using cad::db::BinaryChunk;
using cad::db::ResBufChain;

// Bytes 1, 2, 3, ... (never 0), so a zero read back is one the reader put there.
std::string logoOf(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(1 + i % 251);
    return bytes;
}

SupplierInfo infoWithLogo(std::size_t size) {
    SupplierInfo info;
    info.logo = logoOf(size);
    info.texts = {"(주)반토",         "서울시 강남구",      "02-123-4567", "02-123-4568",
                  "www.vantor.co.kr", "sales@vantor.co.kr", "비고"};
    return info;
}

const std::string& chunk(const ResBufChain& chain, std::size_t i) {
    return std::get<BinaryChunk>(chain.at(1 + i).value).bytes;
}

TEST(SupplierChain, LogoOf508BytesFillsTwoChunksThenZeroBytes) {
    ResBufChain chain = infoWithLogo(508).toChain();
    ASSERT_EQ(chain.size(), 127u);
    EXPECT_EQ(chain[0].code, 90);
    EXPECT_EQ(std::get<std::int32_t>(chain[0].value), 508);
    const std::string logo = logoOf(508);
    EXPECT_EQ(chunk(chain, 0), logo.substr(0, 254));
    EXPECT_EQ(chunk(chain, 1), logo.substr(254));
    for (std::size_t i = 2; i < 119; ++i) EXPECT_EQ(chunk(chain, i), std::string(1, '\0')) << i;
    for (std::size_t i = 1; i < 120; ++i) EXPECT_EQ(chain[i].code, 310);
    EXPECT_EQ(chain[120].code, 1);
    EXPECT_EQ(*chain[120].text(), "(주)반토");
    EXPECT_EQ(*chain[126].text(), "비고");
}

// The tail of `size % 254` bytes is read back at that length's offset from the start of its
// chunk, and the last fillers land there too when they are as long.
TEST(SupplierChain, ReadBackFollowsTheTailRule) {
    const std::string logo300 = logoOf(300);  // a tail of 46 bytes after one whole chunk
    std::string logo255 = logoOf(255);        // a tail of one, overwritten by the fillers
    logo255[1] = logo255[254] = '\0';
    const std::pair<std::size_t, std::string> rows[] = {
        {0, ""},
        {508, logoOf(508)},
        {30226, logoOf(30226)},
        {300, logo300.substr(0, 46) + logo300.substr(254) + logo300.substr(92, 162) +
                  std::string(46, '\0')},
        {255, logo255},
    };
    for (const auto& [size, expected] : rows) {
        std::optional<SupplierInfo> read = SupplierInfo::fromChain(infoWithLogo(size).toChain());
        ASSERT_TRUE(read) << size;
        EXPECT_EQ(read->logo, expected) << size;
        EXPECT_EQ(read->texts, infoWithLogo(0).texts) << size;
    }
}

// A DXF file holds at most 127 bytes per binary value: the chunks come back in pieces.
ResBufChain splitAsDxf(const ResBufChain& chain) {
    ResBufChain split;
    for (const cad::db::ResBuf& value : chain) {
        const auto* chunk = std::get_if<BinaryChunk>(&value.value);
        if (chunk == nullptr) {
            split.push_back(value);
            continue;
        }
        for (std::size_t at = 0; at == 0 || at < chunk->bytes.size(); at += 127)
            split.push_back({310, BinaryChunk{chunk->bytes.substr(at, 127)}});
    }
    return split;
}

TEST(SupplierChain, ChunksSplitByADxfFileAreJoinedAgain) {
    for (std::size_t size : {0u, 127u, 381u, 508u, 18134u, 30226u}) {
        const ResBufChain chain = infoWithLogo(size).toChain();
        std::optional<SupplierInfo> whole = SupplierInfo::fromChain(chain);
        std::optional<SupplierInfo> split = SupplierInfo::fromChain(splitAsDxf(chain));
        ASSERT_TRUE(whole && split) << size;
        EXPECT_EQ(split->logo, whole->logo) << size;
        EXPECT_EQ(split->texts, whole->texts) << size;
    }
    ResBufChain damaged = splitAsDxf(infoWithLogo(508).toChain());
    damaged.erase(damaged.begin() + 2);
    EXPECT_FALSE(SupplierInfo::fromChain(damaged));
}

TEST(SupplierChain, SizeIsTakenAsSigned16Bits) {
    ResBufChain chain = infoWithLogo(508).toChain();
    chain[0].value = std::int32_t{0x10000 + 508};
    EXPECT_EQ(SupplierInfo::fromChain(chain)->logo, logoOf(508));
    chain[0].value = std::int32_t{0x8000};
    EXPECT_EQ(SupplierInfo::fromChain(chain)->logo, "");
}

TEST(SupplierChain, UnusableChainsAreNoRecord) {
    EXPECT_FALSE(SupplierInfo::fromChain({}));
    ResBufChain shortChain = infoWithLogo(10).toChain();
    shortChain.pop_back();
    EXPECT_FALSE(SupplierInfo::fromChain(shortChain));
    ResBufChain wrongType = infoWithLogo(10).toChain();
    wrongType[5] = {1, std::string("text where a chunk belongs")};
    EXPECT_FALSE(SupplierInfo::fromChain(wrongType));
}

class SupplierStore : public cad::db::testing_support::DrawingTest {
protected:
    cad::sys::TestTempFolder folder;
    cad::app::ScriptedDialogs dialogs;
};

TEST_F(SupplierStore, WritesAndReplacesTheRecord) {
    EXPECT_FALSE(SupplierInfo::readFrom(db));
    SupplierInfo info = infoWithLogo(0);
    folder.writeBytes("logo.bmp", logoOf(508));
    info.logoPath = folder.file("logo.bmp");
    ASSERT_EQ(info.writeTo(db, dialogs), cad::ErrorStatus::eOk);
    std::optional<SupplierInfo> read = SupplierInfo::readFrom(db);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->logo, logoOf(508));
    EXPECT_EQ(read->texts, info.texts);

    info.texts[SupplierInfo::CompanyName] = "새 회사";
    ASSERT_EQ(info.writeTo(db, dialogs), cad::ErrorStatus::eOk);
    EXPECT_EQ(SupplierInfo::readFrom(db)->texts[SupplierInfo::CompanyName], "새 회사");
    auto named = cad::db::open<cad::db::Dictionary>(db.namedObjectsDictionaryId(),
                                                    cad::db::OpenMode::ForRead);
    cad::db::ObjectId inform;
    ASSERT_EQ(named->getAt("KX_INFORM", inform), cad::ErrorStatus::eOk);
    named.close();
    EXPECT_EQ(cad::db::open<cad::db::Dictionary>(inform, cad::db::OpenMode::ForRead)->numEntries(),
              1u);
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(SupplierStore, RecordSurvivesADrawingFile) {
    SupplierInfo info = infoWithLogo(0);
    folder.writeBytes("logo.bmp", logoOf(18134));
    info.logoPath = folder.file("logo.bmp");
    ASSERT_EQ(info.writeTo(db, dialogs), cad::ErrorStatus::eOk);
    ASSERT_EQ(db.saveAs(folder.file("supplier.dxf")), cad::ErrorStatus::eOk);

    cad::db::Database read(false, true);
    ASSERT_EQ(read.readDwgFile(folder.file("supplier.dxf")), cad::ErrorStatus::eOk);
    std::optional<SupplierInfo> stored = SupplierInfo::readFrom(read);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->logo, SupplierInfo::fromChain(infoWithLogo(18134).toChain())->logo);
    EXPECT_EQ(stored->texts, info.texts);
    EXPECT_EQ(read.openObjectCount(), 0);
}

TEST_F(SupplierStore, LogoThatIsMissingOrTooLargeIsRefusedAndNothingWritten) {
    const struct {
        const char* name;
        std::size_t size;  // 0: no file at all
        const char* message;
    } rows[] = {
        {"missing file", 0,
         "BMP 화일이 없거나 경로가 잘못 설정되어 있습니다.\n다시 확인하여 주십시오."},
        {"one byte too large", 30227,
         "BMP 화일이 너무 큽니다. 30,226 바이트 이하의 화일만 저장할 수 있습니다.\n150 X 40 "
         "픽셀 사이즈의 BMP 이미지를 등록하여 주십시오."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        cad::app::ScriptedDialogs told;
        SupplierInfo info = infoWithLogo(0);
        info.logoPath = folder.file(row.name);
        if (row.size > 0) folder.writeBytes(row.name, logoOf(row.size));
        EXPECT_NE(info.writeTo(db, told), cad::ErrorStatus::eOk);
        EXPECT_FALSE(SupplierInfo::readFrom(db));
        ASSERT_EQ(told.messageBoxes().size(), 1u);
        EXPECT_EQ(told.messageBoxes()[0].text, row.message);
        EXPECT_EQ(told.messageBoxes()[0].icon(), cad::app::MB_ICONERROR);
    }
}

TEST(SupplierPanel, InternetLinksToTheUpperCasedAddress) {
    const struct {
        const char* internet;
        const char* shown;
        const char* link;
    } rows[] = {
        {"www.vantor.co.kr", "WWW.VANTOR.CO.KR", "HTTP://WWW.VANTOR.CO.KR"},
        {"http://www.vantor.co.kr", "WWW.VANTOR.CO.KR", "HTTP://WWW.VANTOR.CO.KR"},
        {"Vantor.kr/부품", "VANTOR.KR/부품", "HTTP://VANTOR.KR/부품"},  // Korean path kept
        {"", "", ""},
    };
    for (const auto& row : rows) {
        SupplierInfo info;
        info.texts[SupplierInfo::Internet] = row.internet;
        SupplierPanel panel = SupplierPanel::from(info);
        EXPECT_EQ(panel.internet, row.shown) << row.internet;
        EXPECT_EQ(panel.internetLink, row.link) << row.internet;
    }
}

}  // namespace
}  // namespace vantor
