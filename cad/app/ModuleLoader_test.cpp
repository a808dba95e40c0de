// Module loading with a real module: initialised once however often it is loaded, its command
// registered once, the documents' messages, unloading, and the refusals.
#include "cad/app/ModuleLoader.h"

#include <gtest/gtest.h>

#include "cad/app/Application.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::app {
namespace {

class ModuleTest : public testing::Test {
protected:
    // What the module said, one line per message.
    std::vector<std::string> said() {
        std::vector<std::string> out;
        for (const std::string& line : app_.editor().commandLine().lines())
            if (line.rfind("[module]", 0) == 0) out.push_back(line);
        if (app_.editor().commandLine().currentLine().rfind("[module]", 0) == 0)
            out.push_back(app_.editor().commandLine().currentLine());
        return out;
    }
    ModuleLoader& loader() { return app_.moduleLoader(); }

    Application app_;
    const std::string module_ = VANTOR_TEST_MODULE;
};

using Lines = std::vector<std::string>;

TEST_F(ModuleTest, LoadsOnceAndRegistersItsCommandOnce) {
    ASSERT_EQ(loader().loadModule(module_), ErrorStatus::eOk);
    ASSERT_EQ(loader().loadModule(module_), ErrorStatus::eOk);
    EXPECT_EQ(said(), Lines{"[module] init eOk"});
    EXPECT_EQ(loader().loadedModules().size(), 1u);
    EXPECT_TRUE(loader().isAppMDIAware(module_));
    EXPECT_FALSE(loader().isApplicationLocked(module_));
    ASSERT_EQ(app_.commandStack().commands("TESTMODULE").size(), 1u);

    app_.commandProcessor().execute("_HELLO");
    EXPECT_EQ(app_.editor().commandLine().currentLine(), "Hello from the module");

    EXPECT_EQ(loader().unloadModule(module_), ErrorStatus::eOk);
    EXPECT_EQ(said(), (Lines{"[module] init eOk", "[module] unload"}));
    EXPECT_TRUE(app_.commandStack().commands("TESTMODULE").empty());
    EXPECT_FALSE(loader().isModuleLoaded(module_));
    EXPECT_EQ(loader().unloadModule(module_), ErrorStatus::eKeyNotFound);
}

TEST_F(ModuleTest, DocumentsComeAndGoWithMessages) {
    loader().loadModule(module_);
    DocumentManager& docs = app_.documentManager();
    docs.appContextNewDocument();
    docs.appContextNewDocument();
    docs.closeDocument(docs.curDocument());
    docs.closeDocument(docs.curDocument());
    // The closing document is still counted when the module hears of it.
    EXPECT_EQ(said(),
              (Lines{"[module] init eOk", "[module] load dwg Drawing1.dwg",
                     "[module] load dwg Drawing2.dwg", "[module] unload dwg Drawing2.dwg of 2",
                     "[module] unload dwg Drawing1.dwg of 1"}));
}

TEST(ModuleShutdown, DocumentsCloseBeforeQuitAndUnload) {
    struct Capture : ed::CommandLineSink {
        std::string text;
        void write(std::string_view written) override { text += written; }
    } capture;
    {
        Application app;
        app.moduleLoader().loadModule(VANTOR_TEST_MODULE);
        app.documentManager().appContextNewDocument();
        app.editor().commandLine().addSink(&capture);
    }
    EXPECT_EQ(capture.text,
              "\n[module] unload dwg Drawing1.dwg of 1\n[module] quit\n[module] unload");
}

TEST_F(ModuleTest, RefusalsSayWhy) {
    sys::TestTempFolder folder;
    folder.writeBytes("not-a-module.so", "text");
    EXPECT_EQ(loader().loadModule(folder.file("missing.so")), ErrorStatus::eFileNotFound);
    EXPECT_EQ(loader().loadModule(folder.file("not-a-module.so")), ErrorStatus::eInvalidInput);
    app_.commandStack().addCommand("FAILINIT", "X", "X", 0, [] {});
    EXPECT_EQ(loader().loadModule(module_), ErrorStatus::eNotApplicable);
    EXPECT_FALSE(loader().isModuleLoaded(module_));
    std::string shown = app_.editor().commandLine().text();
    EXPECT_NE(shown.find("\nCannot find module \"" + folder.file("missing.so") + "\"."),
              std::string::npos);
    EXPECT_NE(shown.find("\nCannot load module \"" + folder.file("not-a-module.so") + "\": "),
              std::string::npos);
    EXPECT_NE(shown.find("failed to initialise and was unloaded."), std::string::npos);
}

TEST_F(ModuleTest, ArxCommandLoadsFromTheCommandLine) {
    app_.documentManager().appContextNewDocument();
    app_.documentManager().sendStringToExecute(app_.documentManager().curDocument(),
                                               "ARX L " + module_ + "\nHELLO\n");
    app_.commandProcessor().runPending();
    EXPECT_TRUE(loader().isModuleLoaded(module_));
    EXPECT_NE(app_.editor().commandLine().text().find("Hello from the module"), std::string::npos);
}

}  // namespace
}  // namespace cad::app
