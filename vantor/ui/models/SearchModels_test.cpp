// The search pane's models: the hits of a search and the short lists pass Qt's model checks,
// and a row gives back the part it shows.
#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

#include "cad/gs/TestGuiApplication.h"
#include "vantor/ui/models/SearchHitModel.h"
#include "vantor/ui/models/ShortcutListModel.h"

namespace vantor {
namespace {

PartSearchEntry bolt(std::int64_t id, std::string spec) {
    PartSearchEntry entry;
    entry.recordId = id;
    entry.keys = {"User data list", "체결", "육각볼트"};
    entry.kname = "육각볼트";
    entry.ename = "Hex Bolt";
    entry.spec = std::move(spec);
    return entry;
}

TEST(SearchModels, HitsShowTheirPartsUnderTheUsersTitlesAndGiveThemBack) {
    FieldLabels::Texts labels = FieldLabels::defaults();
    labels[FieldLabels::Spec] = "규격";
    SearchHitModel model(labels);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    PartSearchIndex index;
    index.setDrawing("/lib/Fasteners.dxf", {bolt(0x41, "M10x30"), bolt(0x42, "M12x40")});
    model.setResult(index.find("m12"));

    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.headerData(SearchHitModel::Spec, Qt::Horizontal).toString(), "규격");
    EXPECT_EQ(model.index(0, SearchHitModel::Spec).data().toString(), "M12x40");
    EXPECT_EQ(model.index(0, SearchHitModel::Drawing).data().toString(), "Fasteners.dxf");
    EXPECT_EQ(model.index(0, SearchHitModel::Place).data().toString(), "체결 > 육각볼트");
    const std::optional<PartShortcut> part = model.partAt(0);
    ASSERT_TRUE(part.has_value());
    EXPECT_EQ(part->drawingPath, "/lib/Fasteners.dxf");
    EXPECT_EQ(part->recordId, 0x42);
    EXPECT_EQ(part->label, "육각볼트 M12x40");
    EXPECT_FALSE(model.partAt(1).has_value());

    model.setResult(index.find("ㅇㄱ"));
    EXPECT_EQ(model.rowCount(), 2);
}

TEST(SearchModels, AShortListShowsWhatItWasLastToldOf) {
    PartShortcuts shortcuts;
    ShortcutListModel model([&]() -> const std::vector<PartShortcut>& { return shortcuts.recent(); });
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(model.rowCount(), 0);
    shortcuts.notePlaced({"/lib/Fasteners.dxf", 0x41, "육각볼트 M10x30"});
    shortcuts.notePlaced({"/lib/Nuts.dxf", 0x51, "육각너트 M10"});
    EXPECT_EQ(model.rowCount(), 0);  // until it is told
    model.refresh();
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.index(0).data().toString(), "육각너트 M10  (Nuts.dxf)");
    EXPECT_EQ(model.index(1).data(Qt::ToolTipRole).toString(), "/lib/Fasteners.dxf");
    EXPECT_EQ(model.partAt(1)->recordId, 0x41);
}

}  // namespace
}  // namespace vantor
