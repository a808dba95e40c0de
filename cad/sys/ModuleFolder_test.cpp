// Tests of the module folder: the executable's folder, a shared library's folder, and the
// environment override.
#include "cad/sys/ModuleFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace cad::sys {
namespace {

// Sets or clears VANTOR_MODULE_DIR for one test and puts the old value back afterwards.
class ModuleDirEnvironment {
public:
    explicit ModuleDirEnvironment(const char* value) {
        if (const char* old = std::getenv(kName)) saved_ = old;
        if (value) {
            setenv(kName, value, 1);
        } else {
            unsetenv(kName);
        }
    }
    ~ModuleDirEnvironment() {
        if (saved_) {
            setenv(kName, saved_->c_str(), 1);
        } else {
            unsetenv(kName);
        }
    }

private:
    static constexpr const char* kName = "VANTOR_MODULE_DIR";
    std::optional<std::string> saved_;
};

void functionInThisExecutable() {}

std::string executableFolder() {
    return std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/";
}

TEST(ModuleFolder, IsTheExecutablesFolderForCodeLinkedIntoIt) {
    ModuleDirEnvironment unset(nullptr);
    EXPECT_EQ(moduleFolder(reinterpret_cast<const void*>(&functionInThisExecutable)),
              executableFolder());
}

TEST(ModuleFolder, IsTheLibrarysFolderForCodeInASharedLibrary) {
    ModuleDirEnvironment unset(nullptr);
    const std::string folder = moduleFolder(reinterpret_cast<const void*>(&::getpid));
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.front(), '/');
    EXPECT_EQ(folder.back(), '/');
    EXPECT_TRUE(std::filesystem::exists(folder + "libc.so.6")) << folder;
}

TEST(ModuleFolder, EnvironmentOverridesAndGetsItsSlash) {
    {
        ModuleDirEnvironment set("/opt/vantor");
        EXPECT_EQ(moduleFolder(reinterpret_cast<const void*>(&functionInThisExecutable)),
                  "/opt/vantor/");
    }
    {
        ModuleDirEnvironment set("/opt/vantor/");
        EXPECT_EQ(moduleFolder(nullptr), "/opt/vantor/");
    }
    {
        ModuleDirEnvironment empty("");
        EXPECT_EQ(moduleFolder(reinterpret_cast<const void*>(&functionInThisExecutable)),
                  executableFolder());
    }
}

TEST(ModuleFolder, EmptyForAnAddressInNoFile) {
    ModuleDirEnvironment unset(nullptr);
    int onTheStack = 0;
    EXPECT_EQ(moduleFolder(&onTheStack), "");
}

}  // namespace
}  // namespace cad::sys
