// A library drawing kept as DWG 2000 serves as a DXF one does: registered, browsed, edited and
// placed from through the vantor command line, and still a DWG file after the edit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <fstream>
#include <string>
#include <vector>

#include "apps/vantor/CliRun.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/store/TreeNode.h"
#include "vantor/store/VNTreeBase.h"

namespace {

using testing::HasSubstr;
using Outcome = vantor::cli::testing_support::CliOutcome;
using vantor::cli::testing_support::shellQuoted;

std::string firstBytes(const std::string& path, std::size_t count) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes(count, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(count));
    return bytes.substr(0, static_cast<std::size_t>(in.gcount()));
}

class DwgLibrary : public testing::Test {
protected:
    void SetUp() override {
        library_ = drawings_.file("parts.dwg");
        cad::db::Database sample(false, true);
        ASSERT_EQ(sample.readDwgFile(std::string(VANTOR_SOURCE_DIR) +
                                     "/data/samples/standard-parts.dxf"),
                  cad::ErrorStatus::eOk);
        ASSERT_EQ(sample.saveAs(library_), cad::ErrorStatus::eOk);
        ASSERT_EQ(firstBytes(library_, 6), "AC1015");
    }

    Outcome run(const std::vector<std::string>& args) const {
        return vantor::cli::testing_support::runVantor(
            args, output_, "VANTOR_MODULE_DIR=" + shellQuoted(module_.path().string()));
    }

    cad::sys::TestTempFolder module_;
    cad::sys::TestTempFolder output_;
    cad::sys::TestTempFolder drawings_;
    std::string library_;
};

TEST_F(DwgLibrary, IsRegisteredBrowsedEditedAndPlacedFromAsADxfOneIs) {
    const Outcome registered = run({"register", "0", library_});
    ASSERT_EQ(registered.exitCode, 0) << registered.err;
    EXPECT_THAT(run({"list", "0"}).out, HasSubstr(library_));

    const Outcome tree = run({"tree", library_});
    ASSERT_EQ(tree.exitCode, 0) << tree.err;
    EXPECT_THAT(tree.out, HasSubstr("Slip-on 10K (group)"));
    EXPECT_THAT(tree.out, HasSubstr("QRB_VANTORDATA-2\tJIS 10K 80A"));

    // An edit of the catalogue saves the library as the DWG it was.
    {
        cad::app::ScriptedDialogs dialogs;
        vantor::CVNTreeBase catalogue(dialogs);
        ASSERT_EQ(catalogue.loadDrawing(library_), vantor::CVNTreeBase::LoadResult::Loaded);
        vantor::TreeNode* group =
            catalogue.findNode(library_, {"Adv data list", "Flanges", "Slip-on 10K"});
        ASSERT_NE(group, nullptr);
        ASSERT_TRUE(catalogue.renameCategory(*group, "Slip-on 16K"));
    }
    EXPECT_EQ(firstBytes(library_, 6), "AC1015");

    const Outcome parts = run({"parts", library_, "Adv data list/Flanges/Slip-on 16K"});
    ASSERT_EQ(parts.exitCode, 0) << parts.err;
    EXPECT_THAT(parts.out, HasSubstr("JIS 10K 80A"));

    const std::string target = drawings_.file("plant.dwg");
    const Outcome placed = run({"place", library_, "Adv data list/Flanges/Slip-on 16K",
                                "QRB_VANTORDATA-2", target, "--at", "10,20"});
    ASSERT_EQ(placed.exitCode, 0) << placed.err;
    EXPECT_THAT(placed.out, HasSubstr("placed FL-10K-80A-F at 10,20,0"));
    EXPECT_EQ(firstBytes(target, 6), "AC1015");
    cad::db::Database plant(false, true);
    ASSERT_EQ(plant.readDwgFile(target), cad::ErrorStatus::eOk);
}

}  // namespace
