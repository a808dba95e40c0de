// The help file's path rule and help without a viewer.
#include "vantor/host/Help.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

TEST(Help, FileIsVantorChmInTheModuleFolderWithOldHelpNamesMadeChm) {
    EXPECT_EQ(Help::filePath("/opt/vantor/"), "/opt/vantor/Vantor.chm");
    EXPECT_EQ(Help::filePath("/opt/MANUAL.HLP/"), "/opt/MANUAL.chm/Vantor.chm");
    EXPECT_EQ(Help::filePath("/a.HLP/b.HLP/"), "/a.chm/b.chm/Vantor.chm");
    EXPECT_EQ(Help::filePath("/opt/manual.hlp/"), "/opt/manual.hlp/Vantor.chm");  // case counts
    EXPECT_EQ(Help("/opt/vantor/").page(), "/opt/vantor/help/index.html");
}

// Once no viewer was found help stays a no-op, even when one turns up later.
TEST(Help, WithoutAViewerHelpDoesNothingFromThenOn) {
    cad::sys::TestTempFolder module;
    std::filesystem::create_directories(module.path() / "help");
    module.writeBytes("help/index.html", "<html></html>");
    Help help(module.path().string() + "/");

    const std::string path = std::getenv("PATH") ? std::getenv("PATH") : "";
    ::setenv("PATH", module.path().c_str(), 1);
    EXPECT_FALSE(help.open());
    module.writeBytes("xdg-open", "#!/bin/sh\ntouch \"$1.opened\"\n");
    std::filesystem::permissions(module.file("xdg-open"), std::filesystem::perms::owner_all);
    EXPECT_FALSE(help.open());
    ::setenv("PATH", path.c_str(), 1);
}

TEST(Help, WithoutThePagesHelpDoesNothing) {
    cad::sys::TestTempFolder module;
    Help help(module.path().string() + "/");
    EXPECT_FALSE(help.open());
}

}  // namespace
}  // namespace vantor
