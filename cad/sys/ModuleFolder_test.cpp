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
        set(value);
    }
    ~ModuleDirEnvironment() { set(saved_ ? saved_->c_str() : nullptr); }

private:
    static void set(const char* value) { value ? setenv(kName, value, 1) : unsetenv(kName); }
    static constexpr const char* kName = "VANTOR_MODULE_DIR";
    std::optional<std::string> saved_;
};

void functionInThisExecutable() {}
const void* const kInThisExecutable = reinterpret_cast<const void*>(&functionInThisExecutable);

std::string executableFolder() {
    return std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/";
}

TEST(ModuleFolder, IsTheFolderOfTheFileTheCodeIsIn) {
    ModuleDirEnvironment unset(nullptr);
    EXPECT_EQ(moduleFolder(kInThisExecutable), executableFolder());

    const std::string library = moduleFolder(reinterpret_cast<const void*>(&::getpid));
    ASSERT_FALSE(library.empty());
    EXPECT_EQ(library.front(), '/');
    EXPECT_EQ(library.back(), '/');
    EXPECT_TRUE(std::filesystem::exists(library + "libc.so.6")) << library;

    int onTheStack = 0;
    EXPECT_EQ(moduleFolder(&onTheStack), "") << "an address in no file";
}

TEST(ModuleFolder, EnvironmentOverridesAndGetsItsSlash) {
    for (const char* value : {"/opt/vantor", "/opt/vantor/"}) {
        ModuleDirEnvironment set(value);
        EXPECT_EQ(moduleFolder(kInThisExecutable), "/opt/vantor/");
        EXPECT_EQ(moduleFolder(nullptr), "/opt/vantor/");
    }
    ModuleDirEnvironment empty("");
    EXPECT_EQ(moduleFolder(kInThisExecutable), executableFolder());
}

}  // namespace
}  // namespace cad::sys
