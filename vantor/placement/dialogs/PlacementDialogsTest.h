// For tests: the placement dialogs' surroundings (settings, scripted dialogs, an editor with a
// script) and the sample library copied to a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>
#include <memory>
#include <string>

#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ScriptInputSource.h"
#include "cad/gui/TestApplication.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor::testing_support {

inline QString idName(int id) {
    return QStringLiteral("id%1").arg(id);
}

class PlacementDialogs : public ::testing::Test {
protected:
    void SetUp() override { cad::gui::testApplication(); }

    // The next input the editor reads, as a script line ("45", "<esc>").
    void scriptInput(const std::string& line) {
        script_ = std::make_unique<cad::ed::ScriptInputSource>(std::vector<std::string>{line});
        editor_.setInputSource(script_.get());
    }

    // The sample library's hex bolts: six sizes, front and plan views.
    std::vector<PartRecord> sampleBolts() {
        library_ = openLibraryDrawing(samplePath());
        EXPECT_TRUE(library_);
        if (!library_) return {};
        return readGroupRecords(dictionaryAtPath(*library_, {"User data list", "볼트", "육각볼트"}))
            .records;
    }
    std::string samplePath() {
        const std::string copy = folder_.filePath("standard-parts.dxf").toStdString();
        if (!std::filesystem::exists(copy))
            std::filesystem::copy_file(
                std::string(VANTOR_SOURCE_DIR) + "/data/samples/standard-parts.dxf", copy);
        return copy;
    }

    QTemporaryDir folder_;
    ModuleSettings settings_;
    cad::app::ScriptedDialogs dialogs_;
    cad::ed::Editor editor_;
    std::unique_ptr<cad::ed::ScriptInputSource> script_;
    PlacementDialogContext context_{settings_, dialogs_, editor_};
    std::unique_ptr<cad::db::Database> library_;
};

}  // namespace vantor::testing_support
