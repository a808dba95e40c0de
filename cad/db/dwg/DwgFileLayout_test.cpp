// The frame of a DWG file: code pages by number, and check values that do not match, which
// are reported, not fatal.
#include "cad/db/dwg/DwgFileLayout.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "cad/db/Database.h"
#include "cad/db/LoadIssueCodes.h"
#include "cad/db/dwg/DwgTranslator.h"

namespace cad::db::dwg {
namespace {

std::string sample() {
    std::ifstream in(std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus" /
                         "acadsharp__sample_AC1014.dwg",
                     std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(DwgFileLayout, CodePagesByTheirNumbers) {
    EXPECT_EQ(dwgCodePageName(30), "ANSI_1252");
    EXPECT_EQ(dwgCodePageName(40), "ANSI_949");
    EXPECT_EQ(dwgCodePageName(38), "ANSI_932");
    EXPECT_EQ(dwgCodePageName(22), "DOS932");
    EXPECT_EQ(dwgCodePageName(0), "");
    EXPECT_EQ(dwgCodePageName(-1), "");
    EXPECT_EQ(dwgCodePageName(1000), "");
}

TEST(DwgFileLayout, DamageUnderACheckValueIsReportedNotFatal) {
    std::string bytes = sample();
    DwgFileLayout clean;
    ASSERT_FALSE(readFileLayout(bytes, clean));
    ASSERT_FALSE(clean.objects.empty());
    // A byte inside the first object's data, and one of the file header's unused bytes.
    const auto first = static_cast<std::size_t>(clean.objects.front().offset);
    bytes[first + 6] = static_cast<char>(bytes[first + 6] ^ 0x01);
    bytes[0x11] = static_cast<char>(bytes[0x11] ^ 0x40);

    DwgTranslation translation;
    ASSERT_FALSE(DwgTranslator::translate(bytes, translation));
    EXPECT_EQ(translation.checkValueMismatches, 1);
    ASSERT_EQ(translation.layout.warnings.size(), 1u);
    EXPECT_NE(translation.layout.warnings[0].find("file header"), std::string::npos);

    const auto path = std::filesystem::temp_directory_path() / "vantor_dwg_check_value.dwg";
    std::ofstream(path, std::ios::binary) << bytes;
    Database db(false);
    ASSERT_EQ(db.readDwgFile(path.string(), sys::ShareMode::DenyNone), ErrorStatus::eOk);
    int reported = 0;
    for (const AuditIssue& issue : db.loadIssues()) {
        if (issue.code == kIssueDwgCheckValue) {
            ++reported;
            EXPECT_EQ(issue.message.rfind("2 check values", 0), 0u) << issue.message;
        }
    }
    EXPECT_EQ(reported, 1);
    std::filesystem::remove(path);
}

TEST(DwgFileLayout, LocatorCountsOutOfRangeAreRefusedWithTheirOffset) {
    std::string bytes = sample();
    bytes[0x15] = 2;  // fewer locators than the three every file has
    DwgFileLayout layout;
    const auto error = readFileLayout(bytes, layout);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->offset, 0x15u);
    EXPECT_NE(error->message.find("section locators"), std::string::npos);
}

}  // namespace
}  // namespace cad::db::dwg
