// The committed sample library is what the generator writes, and it loads with the expected
// tree, records, blocks and supplier record.
#include "apps/make-sample-library/SampleLibrary.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/ListBase.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/SupplierInfo.h"
#include "vantor/store/VNTreeBase.h"

namespace vantor::sample {
namespace {

using cad::sys::TestTempFolder;

const std::string kSamples = std::string(VANTOR_SOURCE_DIR) + "/data/samples/";

std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(SampleLibrary, GeneratorReproducesTheCommittedFiles) {
    TestTempFolder folder;
    ASSERT_EQ(writeSampleLibrary(folder.path().string()), cad::ErrorStatus::eOk);
    for (std::string_view name : {kSampleDrawingName, kSampleLogoName}) {
        const std::string committed = bytesOf(kSamples + std::string(name));
        ASSERT_FALSE(committed.empty()) << name;
        EXPECT_TRUE(folder.readBytes(name) == committed)
            << name << " differs: run make-sample-library and commit data/samples";
    }
}

class CommittedSample : public testing::Test {
protected:
    // A copy, so the tree cache is written beside it and not into the source tree.
    void SetUp() override {
        std::filesystem::copy_file(kSamples + std::string(kSampleDrawingName), drawing);
    }
    TestTempFolder folder;
    std::string drawing = folder.file("standard-parts.dxf");
    cad::app::ScriptedDialogs dialogs;
};

TEST_F(CommittedSample, TreeHoldsBothLibrariesWithTheirGroups) {
    CVNTreeBase tree(dialogs);
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    // Records per group, by key path.
    std::map<std::string, std::size_t> groups;
    std::function<void(const TreeNode&)> walk = [&](const TreeNode& node) {
        if (node.kind == TreeNode::Kind::Group) {
            std::string path;
            for (const std::string& key : node.keyPath()) path += (path.empty() ? "" : "/") + key;
            groups[path] = node.children.size();
        }
        for (const auto& child : node.children) walk(*child);
    };
    ASSERT_EQ(tree.roots().size(), 2u);
    EXPECT_EQ(tree.roots()[0]->library, LibraryKind::Supplier);
    for (const auto& root : tree.roots()) walk(*root);
    EXPECT_EQ(groups, (std::map<std::string, std::size_t>{
                          {"Adv data list/Flanges/Slip-on 10K", 5},
                          {"Adv data list/밸브/게이트 밸브", 4},
                          {"Adv data list/밸브/볼 밸브", 3},
                          {"User data list/Washers/평와셔", 4},
                          {"User data list/너트/육각너트", 6},
                          {"User data list/볼트/렌치볼트", 4},
                          {"User data list/볼트/육각볼트", 6},
                      }));
}

TEST_F(CommittedSample, RecordsBlocksAndSupplierRead) {
    std::unique_ptr<cad::db::Database> db = openLibraryDrawing(drawing);
    ASSERT_TRUE(db);
    GroupRecords bolts =
        readGroupRecords(dictionaryAtPath(*db, {"User data list", "볼트", "육각볼트"}));
    EXPECT_TRUE(bolts.problems.empty());
    ASSERT_EQ(bolts.records.size(), 6u);
    const PartRecord& m10 = bolts.records[2];
    EXPECT_EQ(std::tie(m10.key, m10.spec, m10.weight),
              std::tuple("QRB_VANTORDATA-2", "M10x40", "0.033"));
    EXPECT_EQ(std::tie(m10.viewBlocks[0], m10.viewBlocks[1], m10.viewBlocks[2]),
              std::tuple("HB-M10X40-F", "", "HB-M10X40-P"));

    CListBase list(dialogs);
    ASSERT_TRUE(list.build(*db));
    EXPECT_EQ(list.blocks().size(), 71u);

    std::optional<SupplierInfo> supplier = SupplierInfo::readFrom(*db);
    ASSERT_TRUE(supplier);
    EXPECT_EQ(supplier->texts[SupplierInfo::CompanyName], "(주)한빛밸브");
    const std::string logo = bytesOf(kSamples + std::string(kSampleLogoName));
    ASSERT_EQ(logo.size(), 18134u);
    ASSERT_EQ(supplier->logo.size(), logo.size());
    // 18,134 bytes leave a tail of 100, which the read-back puts at offset 100.
    EXPECT_EQ(supplier->logo.substr(0, 100), logo.substr(0, 100));
    EXPECT_EQ(supplier->logo.substr(100, 100), logo.substr(18034));
    EXPECT_EQ(db->openObjectCount(), 0);
}

}  // namespace
}  // namespace vantor::sample
