// A failure at any step of saving one of the module's own files (a management window's list,
// the settings, a drawing's tree cache) leaves the file as it was and nothing beside it, and
// the list's save tells the user the system's reason.
#include <cerrno>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/TestTempFolder.h"
#include "cad/sys/WriteFaults.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/TreeRebuilder.h"
#include "vantor/store/TreeCache.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

struct NoTree : TreeRebuilder {
    void rebuildFromList(DrawingList&) override {}
};

std::size_t filesIn(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class ModuleFileFaults : public ::testing::Test {
protected:
    void SetUp() override { ::setenv("VANTOR_MODULE_DIR", folder_.path().c_str(), 1); }
    void TearDown() override {
        cad::sys::WriteFaults::reset();
        ::unsetenv("VANTOR_MODULE_DIR");
    }

    // Saves once to count the steps, then fails each step in turn: the file keeps the bytes
    // it had, and its folder holds what it held. `check` looks at what else a failure says.
    void failEachStep(const fs::path& file, const std::function<bool()>& save,
                      const std::function<void(int step)>& check = {}) {
        const std::string before = readBytes(file);
        cad::sys::WriteFaults::reset();
        ASSERT_TRUE(save());
        const int steps = cad::sys::WriteFaults::stepsSeen();
        ASSERT_GE(steps, 5) << file;
        std::ofstream(file, std::ios::binary | std::ios::trunc) << before;
        const std::size_t files = filesIn(file.parent_path());
        for (int step = 0; step < steps; ++step) {
            cad::sys::WriteFaults::failStep(step, ENOSPC);
            EXPECT_FALSE(save()) << file << " step " << step;
            cad::sys::WriteFaults::reset();
            EXPECT_EQ(readBytes(file), before) << file << " step " << step;
            EXPECT_EQ(filesIn(file.parent_path()), files) << file << " step " << step;
            if (check) check(step);
        }
    }

    static std::string readBytes(const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    cad::sys::TestTempFolder folder_;
    cad::app::ScriptedDialogs dialogs_;
};

TEST_F(ModuleFileFaults, AListKeepsItsEntriesAndTheUserHearsWhy) {
    ModuleSettings settings;
    settings.moduleFolder = folder_.path().string() + "/";
    DrawingList list;
    NoTree tree;
    ManagementWindows windows(settings, list, tree, dialogs_);
    windows.loadTabList();
    list.addPath("/library/one.dxf", dialogs_);
    ASSERT_TRUE(windows.saveList(0));
    list.addPath("/library/two.dxf", dialogs_);
    dialogs_.clearCalls();
    failEachStep(windows.listFile(0), [&] { return windows.saveList(0); }, [&](int step) {
        EXPECT_THAT(testing_support::boxesShown(dialogs_),
                    ::testing::ElementsAre(::testing::HasSubstr("No space left on device")))
            << "step " << step;
        dialogs_.clearCalls();
    });
}

TEST_F(ModuleFileFaults, TheSettingsFileStaysWhole) {
    ModuleSettings settings;
    settings.load();
    settings.curListName = "first window";
    settings.save();
    const fs::path ini = settings.iniPath();
    ASSERT_TRUE(fs::exists(ini));
    settings.curListName = "second window";
    // The settings say nothing of a failed write; the file is what shows it.
    failEachStep(ini, [&] {
        settings.save();
        return readBytes(ini).find("second window") != std::string::npos;
    });
}

TEST_F(ModuleFileFaults, ATreeCacheStaysAsItWas) {
    const fs::path cache = folder_.path() / "parts.vnf";
    TreeCacheNode root;
    root.drawingPath = (folder_.path() / "parts.dxf").string();
    root.name = root.libraryKey = "Adv data list";
    root.supplier = true;
    root.id = 42;
    TreeCacheNode category = root;
    category.name = "bolts";
    category.id = 43;
    category.parentId = 42;
    std::vector<TreeCacheNode> nodes{root};  // the writer takes the nodes it writes
    ASSERT_TRUE(TreeCache::write(cache.string(), nodes));
    failEachStep(cache, [&] {
        std::vector<TreeCacheNode> both{root, category};
        return TreeCache::write(cache.string(), both);
    });
}

}  // namespace
}  // namespace vantor
