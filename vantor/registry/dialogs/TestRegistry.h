// For tests: a management window in a temporary module folder with its list, tree and
// registration, a host application with one drawing for the command guard, and library
// drawings to register.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "cad/app/Application.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/gui/TestApplication.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/registry/dialogs/RegistrationFlows.h"
#include "vantor/registry/operations/DrawingRegistration.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/VNTreeBase.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor::testing_support {

class RegistryTest : public testing::Test {
protected:
    using Strings = std::vector<std::string>;

    void SetUp() override {
        cad::gui::testApplication();
        // The command guard speaks through the process's port.
        cad::app::setUserDialogs(&dialogs);
        documents().appContextNewDocument();
        windows.loadTabList();
    }
    void TearDown() override { cad::app::setUserDialogs(nullptr); }

    // A drawing holding one part record (its entry reads as active), or none at all.
    std::string drawing(const std::string& relative, bool library = true) {
        cad::db::Database db;
        if (library) {
            addRecord(addDictionary(addDictionary(db.namedObjectsDictionaryId(), "User data list"),
                                    "볼트"),
                      "QRB_VANTORDATA-0", "육각볼트", "M10");
        }
        const std::filesystem::path path = files.path() / relative;
        std::filesystem::create_directories(path.parent_path());
        EXPECT_EQ(db.saveAs(path.string()), cad::ErrorStatus::eOk);
        return path.string();
    }
    cad::app::DocumentManager& documents() { return app.documentManager(); }
    // The command strings the current drawing was given, taken from its queue.
    Strings queued() {
        Strings texts;
        std::string text;
        bool echo = false;
        while (documents().popQueuedString(text, echo)) texts.push_back(text);
        return texts;
    }
    RegistryFlowContext context() { return {list, tree, windows, settings, dialogs, nullptr}; }

    static constexpr const char* kCommandRunning =
        "명령 중첩 에러: AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 종료하신 후 다시 "
        "시도해 주십시오. [error]";

    cad::sys::TestTempFolder module;
    cad::sys::TestTempFolder files;
    ModuleSettings settings = [this] {
        ModuleSettings inModule;
        inModule.moduleFolder = module.path().string() + "/";
        return inModule;
    }();
    cad::app::Application app;
    cad::app::ScriptedDialogs dialogs;
    DrawingList list;
    CVNTreeBase tree{dialogs};
    ManagementWindows windows{settings, list, tree, dialogs};
    DrawingRegistration registration{list, tree, windows, dialogs};
};

}  // namespace vantor::testing_support
