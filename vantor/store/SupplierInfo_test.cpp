// The supplier record: logo chunks, the read-back rule with its tail placement, the logo file
// refusals, storing and replacing the record, and the panel's texts and links.
#include "vantor/store/SupplierInfo.h"

#include <gtest/gtest.h>

#include <string>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
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

struct ReadBackRow {
    const char* name;
    std::size_t size;
    // Where the reader puts the tail of `size % 254` bytes: at that length's offset from the
    // start, and the last fillers land there too when they are as long.
    std::function<std::string(const std::string&)> expected;
};

class SupplierReadBack : public testing::TestWithParam<ReadBackRow> {};

TEST_P(SupplierReadBack, FollowsTheTailRule) {
    std::optional<SupplierInfo> read =
        SupplierInfo::fromChain(infoWithLogo(GetParam().size).toChain());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->logo, GetParam().expected(logoOf(GetParam().size)));
    EXPECT_EQ(read->texts, infoWithLogo(0).texts);
}

std::string tailMoved(std::string logo) {
    const std::size_t tail = logo.size() % 254;
    const std::size_t start = logo.size() - tail;
    std::string moved = logo;
    std::copy(logo.begin() + start, logo.end(), moved.begin() + tail);
    std::fill(moved.begin() + start, moved.end(), '\0');
    return moved;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SupplierReadBack,
    testing::Values(
        ReadBackRow{"multiple_of_254_unchanged", 508, [](const std::string& l) { return l; }},
        ReadBackRow{"largest_logo_unchanged", 30226, [](const std::string& l) { return l; }},
        ReadBackRow{"tail_of_46_lands_at_offset_46", 300, tailMoved},
        ReadBackRow{"bitmap_150_by_40", 18134, tailMoved},
        ReadBackRow{"tail_of_one_overwritten_by_the_fillers", 255,
                    [](const std::string& l) {
                        std::string expected = l;
                        expected[1] = '\0';
                        expected[254] = '\0';
                        return expected;
                    }},
        ReadBackRow{"empty_logo", 0, [](const std::string& l) { return l; }}),
    [](const auto& row) { return std::string(row.param.name); });

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

class SupplierStore : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(db.openObjectCount(), 0); }
    cad::sys::TestTempFolder folder;
    cad::db::Database db;
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

struct RefusalRow {
    const char* name;
    std::size_t size;  // 0: no file at all
    const char* message;
};

class SupplierLogoRefused : public SupplierStore, public testing::WithParamInterface<RefusalRow> {};

TEST_P(SupplierLogoRefused, NothingIsWritten) {
    SupplierInfo info = infoWithLogo(0);
    info.logoPath = folder.file("logo.bmp");
    if (GetParam().size > 0) folder.writeBytes("logo.bmp", logoOf(GetParam().size));
    EXPECT_NE(info.writeTo(db, dialogs), cad::ErrorStatus::eOk);
    EXPECT_FALSE(SupplierInfo::readFrom(db));
    const std::vector<cad::app::ScriptedDialogs::Call> boxes = dialogs.messageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, GetParam().message);
    EXPECT_EQ(boxes[0].icon(), cad::app::MB_ICONERROR);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SupplierLogoRefused,
    testing::Values(RefusalRow{"missing_file", 0,
                               "BMP 화일이 없거나 경로가 잘못 설정되어 있습니다.\n다시 확인하여 "
                               "주십시오."},
                    RefusalRow{"one_byte_too_large", 30227,
                               "BMP 화일이 너무 큽니다. 30,226 바이트 이하의 화일만 저장할 수 "
                               "있습니다.\n150 X 40 픽셀 사이즈의 BMP 이미지를 등록하여 "
                               "주십시오."}),
    [](const auto& row) { return std::string(row.param.name); });

struct PanelRow {
    const char* name;
    const char* internet;
    const char* shown;
    const char* link;
};

class SupplierPanelInternet : public testing::TestWithParam<PanelRow> {};

TEST_P(SupplierPanelInternet, LinksToTheUpperCasedAddress) {
    SupplierInfo info;
    info.texts[SupplierInfo::Internet] = GetParam().internet;
    SupplierPanel panel = SupplierPanel::from(info);
    EXPECT_EQ(panel.internet, GetParam().shown);
    EXPECT_EQ(panel.internetLink, GetParam().link);
}

INSTANTIATE_TEST_SUITE_P(Rows, SupplierPanelInternet,
                         testing::Values(PanelRow{"bare_host", "www.vantor.co.kr",
                                                  "WWW.VANTOR.CO.KR", "HTTP://WWW.VANTOR.CO.KR"},
                                         PanelRow{"lower_case_scheme", "http://www.vantor.co.kr",
                                                  "WWW.VANTOR.CO.KR", "HTTP://WWW.VANTOR.CO.KR"},
                                         PanelRow{"korean_path_kept", "Vantor.kr/부품",
                                                  "VANTOR.KR/부품", "HTTP://VANTOR.KR/부품"},
                                         PanelRow{"empty", "", "", ""}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SupplierPanel, TextsAndMailLink) {
    SupplierPanel panel = SupplierPanel::from(infoWithLogo(0));
    EXPECT_EQ(panel.companyName, "(주)반토");
    EXPECT_EQ(panel.address, "서울시 강남구");
    EXPECT_EQ(panel.phone, "TEL: 02-123-4567");
    EXPECT_EQ(panel.fax, "FAX: 02-123-4568");
    EXPECT_EQ(panel.mail, "E-Mail: sales@vantor.co.kr");
    EXPECT_EQ(panel.mailLink, "mailto:sales@vantor.co.kr?subject=제품문의:");
    EXPECT_EQ(panel.remark, "비고");
}

}  // namespace
}  // namespace vantor
