// The category tree: loading cache-first, rebuilding from the drawing when the cache is stale
// or damaged, and editing the library dictionaries with the exact texts of each confirmation
// and error, the drawing saved after every change.
#include "vantor/store/VNTreeBase.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "cad/app/ScriptedDialogs.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/TestTempFolder.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/TestLibrary.h"
#include "vantor/store/TreeCache.h"
#include "vantor/ui/TestDialogs.h"

namespace vantor {
namespace {

using cad::app::IDCANCEL;
using cad::app::IDOK;
using cad::app::ScriptedDialogs;
using cad::db::ObjectId;
using testing_support::addDictionary;
using testing_support::addRecord;
using testing_support::boxesShown;
using testing_support::setWriteTime;
using Kind = TreeNode::Kind;
using Strings = std::vector<std::string>;

// The tree of one drawing as text: one line per node, indented by depth.
std::string outline(const std::vector<const TreeNode*>& roots) {
    std::string text;
    std::function<void(const TreeNode&, int)> walk = [&](const TreeNode& node, int depth) {
        static const char* kinds[] = {"root", "category", "group", "record"};
        text += std::string(2 * depth, ' ') + node.label() + " (" +
                kinds[static_cast<int>(node.kind)] + ")\n";
        for (const auto& child : node.children) walk(*child, depth + 1);
    };
    for (const TreeNode* root : roots) walk(*root, 0);
    return text;
}

class TreeBase : public testing::Test {
protected:
    // User library: 볼트 > 육각볼트 (two records), 볼트 > 너트 (empty); supplier library:
    // Flanges (one record).
    void writeStandardLibrary(bool withSupplier = true, bool withUser = true) {
        cad::db::Database db;
        if (withUser) {
            ObjectId user = addDictionary(db.namedObjectsDictionaryId(), "User data list");
            ObjectId bolts = addDictionary(user, "볼트");
            ObjectId hex = addDictionary(bolts, "육각볼트");
            addRecord(hex, "QRB_VANTORDATA-0", "육각볼트", "M10x30");
            addRecord(hex, "QRB_VANTORDATA-1", "육각볼트", "M12x40");
            addDictionary(bolts, "너트");
        }
        if (withSupplier) {
            ObjectId adv = addDictionary(db.namedObjectsDictionaryId(), "Adv data list");
            addRecord(addDictionary(adv, "Flanges"), "QRB_VANTORDATA-0", "Flange", "JIS 10K 50A");
        }
        ASSERT_EQ(db.saveAs(drawing), cad::ErrorStatus::eOk);
        EXPECT_EQ(db.openObjectCount(), 0);
    }
    std::vector<const TreeNode*> rootsOfDrawing() const {
        std::vector<const TreeNode*> roots;
        for (const auto& root : tree.roots()) {
            if (root->drawingPath == drawing) roots.push_back(root.get());
        }
        return roots;
    }
    TreeNode& node(std::vector<std::string> keys) {
        TreeNode* found = tree.findNode(drawing, keys);
        EXPECT_NE(found, nullptr);
        return *found;
    }
    // A tree loaded afresh, from the drawing (the cache being stale), and its outline.
    CVNTreeBase& reloadedTree() {
        fresh = std::make_unique<CVNTreeBase>(dialogs);
        cad::sys::deleteFile(cachePath);
        fresh->loadDrawing(drawing);
        return *fresh;
    }
    std::string reloaded() {
        std::vector<const TreeNode*> roots;
        for (const auto& root : reloadedTree().roots()) roots.push_back(root.get());
        return outline(roots);
    }

    cad::sys::TestTempFolder folder;
    std::string drawing = folder.file("Standard.dxf");
    std::string cachePath = folder.file("standard.vnf");
    ScriptedDialogs dialogs;
    CVNTreeBase tree{dialogs};
    std::unique_ptr<CVNTreeBase> fresh;
};

const char* const kStandardOutline =
    "AD-LIBRARY (root)\n"
    "  Flanges (group)\n"
    "    JIS 10K 50A (record)\n"
    "USR-LIBRARY (root)\n"
    "  볼트 (category)\n"
    "    너트 (group)\n"
    "    육각볼트 (group)\n"
    "      M10x30 (record)\n"
    "      M12x40 (record)\n";

TEST_F(TreeBase, LoadsBothLibrariesThroughTheCache) {
    writeStandardLibrary();
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    EXPECT_EQ(outline(rootsOfDrawing()), kStandardOutline);
    EXPECT_TRUE(cad::sys::fileExists(cachePath));
    EXPECT_EQ(rootsOfDrawing()[0]->drawingLabel(), "Standard [AD-LIB]");
    EXPECT_EQ(rootsOfDrawing()[1]->drawingLabel(), "Standard [USR-LIB]");
    EXPECT_EQ(node({"User data list", "볼트", "육각볼트"}).keyPath(),
              (std::vector<std::string>{"User data list", "볼트", "육각볼트"}));

    // The cache holds the user library first, as it was built.
    std::vector<TreeCacheNode> cached;
    ASSERT_TRUE(TreeCache::readFile(cachePath, cached));
    ASSERT_EQ(cached.size(), 9u);
    EXPECT_EQ(cached[0].name, "User data list");
    EXPECT_EQ(cached[6].name, "Adv data list");
    EXPECT_TRUE(cached[6].supplier);
}

TEST_F(TreeBase, ADrawingShownAgainKeepsItsPlaceAmongTheOthers) {
    writeStandardLibrary();
    const std::string second = folder.file("Second.dxf");
    std::filesystem::copy_file(drawing, second);
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    ASSERT_EQ(tree.loadDrawing(second), CVNTreeBase::LoadResult::Loaded);
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    std::vector<std::string> order;
    for (const auto& root : tree.roots()) order.push_back(root->drawingLabel());
    EXPECT_THAT(order, ::testing::ElementsAre("Standard [AD-LIB]", "Standard [USR-LIB]",
                                              "Second [AD-LIB]", "Second [USR-LIB]"));
}

TEST_F(TreeBase, CurrentCacheIsUsedWithoutOpeningTheDrawing) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    // The drawing is no drawing any more; a cache as new as it is trusted all the same.
    folder.writeBytes("Standard.dxf", "not a drawing");
    setWriteTime(drawing, 10);
    setWriteTime(cachePath, 10);
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    EXPECT_EQ(outline(rootsOfDrawing()), kStandardOutline);

    setWriteTime(drawing, 11);
    EXPECT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Unreadable);
    EXPECT_TRUE(rootsOfDrawing().empty());
}

TEST_F(TreeBase, NewerDrawingRebuildsTheCache) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    {
        std::unique_ptr<cad::db::Database> db = openLibraryDrawing(drawing);
        ASSERT_TRUE(db);
        ObjectId user = libraryDictionaryId(*db, LibraryKind::User, false);
        addDictionary(user, "와셔");
        ASSERT_EQ(db->save(), cad::ErrorStatus::eOk);
    }
    setWriteTime(cachePath, 20);
    setWriteTime(drawing, 21);
    tree.loadDrawing(drawing);
    EXPECT_NE(tree.findNode(drawing, {"User data list", "와셔"}), nullptr);
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Current);
}

TEST_F(TreeBase, MissingLibraries) {
    writeStandardLibrary(false, true);
    tree.loadDrawing(drawing);
    ASSERT_EQ(rootsOfDrawing().size(), 1u) << "no supplier library";
    EXPECT_EQ(rootsOfDrawing()[0]->library, LibraryKind::User);

    writeStandardLibrary(false, false);
    setWriteTime(cachePath, 40);
    setWriteTime(drawing, 41);
    tree.loadDrawing(drawing);
    EXPECT_EQ(outline(rootsOfDrawing()), "USR-LIBRARY (root)\n");
    EXPECT_EQ(rootsOfDrawing()[0]->id, 0);
}

TEST_F(TreeBase, NewCategoryInAMissingUserLibraryMakesTheLibrary) {
    writeStandardLibrary(true, false);
    tree.loadDrawing(drawing);
    TreeNode* made = tree.newCategory(node({"User data list"}));
    ASSERT_NE(made, nullptr);
    EXPECT_NE(node({"User data list"}).id, 0);
    EXPECT_EQ(reloaded(),
              "AD-LIBRARY (root)\n  Flanges (group)\n    JIS 10K 50A (record)\n"
              "USR-LIBRARY (root)\n  새 분류 (group)\n");
}

// A cache is only a cache: whatever is wrong with it, the tree comes from the drawing.
TEST_F(TreeBase, DamagedCacheIsRebuiltFromTheDrawing) {
    using Nodes = std::vector<TreeCacheNode>&;
    const std::pair<const char*, std::function<void(Nodes)>> rows[] = {
        {"parent nowhere", [](Nodes n) { n[3].parentId = 999999; }},
        {"parent later in the file", [](Nodes n) { std::swap(n[1], n[2]); }},
        {"cycle", [](Nodes n) { n[1].parentId = n[2].id; }},
        {"parent is a record", [](Nodes n) { n[5].parentId = n[4].id; }},
        {"repeated id", [](Nodes n) { n[3].id = n[2].id; }},
        {"another drawing's path", [](Nodes n) { n[0].drawingPath = "/elsewhere.dxf"; }},
        {"second user root", [](Nodes n) { n[6].libraryKey = n[6].name = n[0].name; }},
    };
    writeStandardLibrary();
    for (const auto& [name, damage] : rows) {
        SCOPED_TRACE(name);
        cad::sys::deleteFile(cachePath);
        tree.loadDrawing(drawing);
        std::vector<TreeCacheNode> nodes;
        ASSERT_TRUE(TreeCache::readFile(cachePath, nodes));
        damage(nodes);
        TreeCache::write(cachePath, nodes);
        setWriteTime(drawing, 30);
        setWriteTime(cachePath, 31);

        ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
        EXPECT_EQ(outline(rootsOfDrawing()), kStandardOutline);
        std::vector<TreeCacheNode> rewritten;
        EXPECT_TRUE(TreeCache::readFile(cachePath, rewritten));
        EXPECT_EQ(rewritten.size(), 9u);
    }
}

TEST_F(TreeBase, DrawingOf26NodesShowsAlthoughItsCacheReadsEmpty) {
    {
        cad::db::Database db;
        ObjectId user = addDictionary(db.namedObjectsDictionaryId(), "User data list");
        for (int i = 0; i < 25; ++i) addDictionary(user, "G" + std::to_string(10 + i));
        ASSERT_EQ(db.saveAs(drawing), cad::ErrorStatus::eOk);
    }
    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    ASSERT_EQ(rootsOfDrawing().size(), 1u);
    EXPECT_EQ(rootsOfDrawing()[0]->children.size(), 25u);
    EXPECT_EQ(folder.readBytes("standard.vnf").substr(0, 1), "\x1A");
}

TEST_F(TreeBase, NewCategoriesAreNumberedAndANumberIsReused) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    TreeNode& nuts = node({"User data list", "볼트", "너트"});
    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) names.push_back(tree.newCategory(nuts)->name);
    EXPECT_EQ(names, (std::vector<std::string>{"새 분류", "새 분류[1]", "새 분류[2]"}));
    EXPECT_EQ(nuts.kind, Kind::Category);
    EXPECT_EQ(nuts.children.back()->kind, Kind::Group);

    dialogs.pushAnswer(IDOK);
    ASSERT_TRUE(tree.deleteCategory(&node({"User data list", "볼트", "너트", "새 분류[1]"})));
    EXPECT_EQ(tree.newCategory(nuts)->name, "새 분류[1]");
    EXPECT_EQ(reloaded(),
              "AD-LIBRARY (root)\n  Flanges (group)\n    JIS 10K 50A (record)\n"
              "USR-LIBRARY (root)\n  볼트 (category)\n    너트 (category)\n"
              "      새 분류 (group)\n      새 분류[1] (group)\n      새 분류[2] (group)\n"
              "    육각볼트 (group)\n      M10x30 (record)\n      M12x40 (record)\n");
}

TEST_F(TreeBase, BuildingNodesLeavesNothingOpenAndNeedsAFileName) {
    cad::db::Database db;
    std::vector<TreeCacheNode> nodes;
    EXPECT_FALSE(tree.buildNodes(db, LibraryKind::User, false, nodes));
    EXPECT_EQ(boxesShown(dialogs),
              Strings{"파일 이름 확인 에러: 파일이름을 가져올 수 없습니다.\n- "
                      "CVNTreeBase::BuildNode(AcDbDatabase * pDb, BOOL bDocument) error [error]"});

    db.setFileName(drawing);
    ASSERT_TRUE(tree.buildNodes(db, LibraryKind::Supplier, false, nodes));
    EXPECT_TRUE(nodes.empty()) << "no supplier library, and none made when not editing";
    ASSERT_TRUE(tree.buildNodes(db, LibraryKind::Supplier, true, nodes));
    ASSERT_EQ(nodes.size(), 1u);
    EXPECT_NE(nodes[0].id, 0);
    EXPECT_EQ(nodes[0].parentId, db.namedObjectsDictionaryId().asOldId());
    EXPECT_FALSE(libraryDictionaryId(db, LibraryKind::Supplier, false).isNull());
    EXPECT_EQ(db.openObjectCount(), 0);
}

TEST_F(TreeBase, WhichNodesTakeWhichEditing) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    TreeNode& hex = node({"User data list", "볼트", "육각볼트"});
    EXPECT_FALSE(CVNTreeBase::acceptsNewCategory(hex)) << "a group with records";
    EXPECT_TRUE(CVNTreeBase::acceptsNewCategory(node({"User data list", "볼트", "너트"})));
    EXPECT_TRUE(CVNTreeBase::acceptsNewCategory(node({"User data list"})));
    EXPECT_FALSE(CVNTreeBase::acceptsRenameOrDelete(node({"User data list"})));
    EXPECT_FALSE(CVNTreeBase::acceptsDeleteAll(node({"User data list", "볼트"})));
    EXPECT_EQ(tree.newCategory(hex), nullptr);
    EXPECT_FALSE(tree.deleteCategory(&node({"User data list"})));
    EXPECT_TRUE(dialogs.calls().empty());
}

TEST_F(TreeBase, RenameIsRefusedOnlyForASiblingsName) {
    writeStandardLibrary();
    {
        // A category of the same name elsewhere in the tree.
        std::unique_ptr<cad::db::Database> db = openLibraryDrawing(drawing);
        addDictionary(libraryDictionaryId(*db, LibraryKind::Supplier, false), "육각볼트");
        ASSERT_EQ(db->save(), cad::ErrorStatus::eOk);
    }
    const Strings nuts = {"User data list", "볼트", "너트"}, bolts = {"User data list", "볼트"},
                  flanges = {"Adv data list", "Flanges"};
    const Strings refused = {"이름 변경 에러: 같은 이름이 이미 존재합니다. [error]"};
    const struct {
        const char* name;
        Strings node;
        const char* newName;
        bool renamed;
        Strings boxes;
    } rows[] = {
        {"sibling", nuts, "육각볼트", false, refused},
        {"sibling in the supplier library", flanges, "육각볼트", false, refused},
        {"own name", nuts, "너트", true, {}},
        // "육각볼트" is the category's child and a category of the other library: no sibling.
        {"name elsewhere in the tree", bolts, "육각볼트", true, {}},
        {"letter case only", flanges, "FLANGES", true, {}},
        {"blank", bolts, "   ", false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        cad::sys::deleteFile(cachePath);
        tree.loadDrawing(drawing);
        dialogs.clearCalls();
        TreeNode& renamed = node(row.node);
        EXPECT_EQ(tree.renameCategory(renamed, row.newName), row.renamed);
        EXPECT_EQ(boxesShown(dialogs), row.boxes);
        Strings keys = row.node;
        if (row.renamed) keys.back() = row.newName;
        EXPECT_EQ(renamed.name, keys.back());
        EXPECT_NE(reloadedTree().findNode(drawing, keys), nullptr);
        if (row.renamed) {
            ASSERT_TRUE(tree.renameCategory(node(keys), row.node.back()));
        }
    }
}

// A category with something below it asks in other words.
TEST_F(TreeBase, DeleteAsksByWhatTheCategoryHolds) {
    const std::string empty = "분류 삭제: 정말 삭제하시겠습니까? [warning ok-cancel]";
    const std::string full =
        "분류 삭제: 하위 분류 또는 데이터가 존재합니다.\n그래도 삭제하시겠습니까? [warning "
        "ok-cancel]";
    const struct {
        const char* name;
        Strings node;
        const std::string& question;
        int answer;
    } rows[] = {
        {"category cancelled", {"User data list", "볼트"}, full, IDCANCEL},
        {"empty group", {"User data list", "볼트", "너트"}, empty, IDOK},
        {"group with records", {"User data list", "볼트", "육각볼트"}, full, IDOK},
    };
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        dialogs.clearCalls();
        dialogs.pushAnswer(row.answer);
        const bool deleted = tree.deleteCategory(&node(row.node));
        EXPECT_EQ(deleted, row.answer == IDOK);
        EXPECT_EQ(boxesShown(dialogs), Strings{row.question});
        EXPECT_EQ(tree.findNode(drawing, row.node) == nullptr, deleted);
        EXPECT_EQ(reloadedTree().findNode(drawing, row.node) == nullptr, deleted);
    }
}

TEST_F(TreeBase, DeletingARecordNodeIsRefused) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    TreeNode* record = node({"Adv data list", "Flanges"}).children.front().get();
    EXPECT_FALSE(tree.deleteCategory(record));
    EXPECT_EQ(boxesShown(dialogs), Strings{"분류 삭제 에러: 분류가 아닙니다. [error]"});
    EXPECT_FALSE(tree.deleteCategory(nullptr));
}

TEST_F(TreeBase, DeleteAllDataAsksThenEmptiesTheGroupAndSaves) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    for (const char* group : {"육각볼트", "너트"}) {
        setWriteTime(drawing, 0);
        const std::int64_t before = *cad::sys::lastWriteTime(drawing);
        dialogs.clearCalls();
        dialogs.pushAnswer(IDOK);
        TreeNode& node = this->node({"User data list", "볼트", group});
        ASSERT_TRUE(tree.deleteAllData(node)) << group;
        EXPECT_TRUE(node.children.empty());
        EXPECT_EQ(boxesShown(dialogs),
                  Strings{"데이터 모두 삭제: 모두 삭제하시겠습니까? [warning ok-cancel]"});
        EXPECT_GT(*cad::sys::lastWriteTime(drawing), before) << "saved";
    }
    EXPECT_EQ(reloaded(),
              "AD-LIBRARY (root)\n  Flanges (group)\n    JIS 10K 50A (record)\n"
              "USR-LIBRARY (root)\n  볼트 (category)\n    너트 (group)\n    육각볼트 (group)\n");

    dialogs.pushAnswer(IDCANCEL);
    EXPECT_FALSE(tree.deleteAllData(node({"Adv data list", "Flanges"})));
    EXPECT_EQ(node({"Adv data list", "Flanges"}).children.size(), 1u);
}

TEST_F(TreeBase, RebuildFromListShowsProgressAndSetsActiveFlags) {
    writeStandardLibrary();
    folder.writeBytes("broken.dxf", "0\nSECTION\n");
    DrawingList list;
    for (const char* name : {"Standard.dxf", "missing.dxf", "broken.dxf"})
        list.addPath(folder.file(name), dialogs);
    tree.rebuildFromList(list);

    std::vector<int> active;
    for (const RegisteredDrawing& entry : list) active.push_back(entry.active);
    EXPECT_EQ(active, (std::vector<int>{1, 0, 0}));
    std::vector<std::string> texts;
    for (const auto& call : dialogs.calls(ScriptedDialogs::Kind::ProgressText))
        texts.push_back(call.text);
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "상태 : 데이터 로드 중...", "상태 : 데이터 로드 중... (33%)",
                         "상태 : 데이터 로드 중... (66%)", "상태 : 데이터 로드 중... (100%)"}));
    EXPECT_EQ(dialogs.calls(ScriptedDialogs::Kind::ProgressHide).size(), 1u);
    EXPECT_EQ(tree.roots().size(), 2u);
}

}  // namespace
}  // namespace vantor
