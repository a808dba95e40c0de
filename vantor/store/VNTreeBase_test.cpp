// The category tree: loading cache-first, rebuilding from the drawing when the cache is stale
// or damaged, and editing the library dictionaries with the exact texts of each confirmation
// and error, the drawing saved after every change.
#include "vantor/store/VNTreeBase.h"

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

namespace vantor {
namespace {

using cad::app::IDCANCEL;
using cad::app::IDOK;
using cad::app::ScriptedDialogs;
using cad::db::ObjectId;
using testing_support::addDictionary;
using testing_support::addRecord;
using testing_support::setWriteTime;
using Kind = TreeNode::Kind;

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
    // Loads afresh, from the drawing (the cache being stale), and answers the outline.
    std::string reloaded() {
        CVNTreeBase fresh(dialogs);
        cad::sys::deleteFile(cachePath);
        fresh.loadDrawing(drawing);
        std::vector<const TreeNode*> roots;
        for (const auto& root : fresh.roots()) roots.push_back(root.get());
        return outline(roots);
    }

    cad::sys::TestTempFolder folder;
    std::string drawing = folder.file("Standard.dxf");
    std::string cachePath = folder.file("standard.vnf");
    ScriptedDialogs dialogs;
    CVNTreeBase tree{dialogs};
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
struct DamageRow {
    const char* name;
    std::function<void(std::vector<TreeCacheNode>&)> damage;
};

class TreeBaseDamagedCache : public TreeBase, public testing::WithParamInterface<DamageRow> {};

TEST_P(TreeBaseDamagedCache, IsRebuiltFromTheDrawing) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    std::vector<TreeCacheNode> nodes;
    ASSERT_TRUE(TreeCache::readFile(cachePath, nodes));
    GetParam().damage(nodes);
    TreeCache::write(cachePath, nodes);
    setWriteTime(drawing, 30);
    setWriteTime(cachePath, 31);

    ASSERT_EQ(tree.loadDrawing(drawing), CVNTreeBase::LoadResult::Loaded);
    EXPECT_EQ(outline(rootsOfDrawing()), kStandardOutline);
    std::vector<TreeCacheNode> rewritten;
    EXPECT_TRUE(TreeCache::readFile(cachePath, rewritten));
    EXPECT_EQ(rewritten.size(), 9u);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TreeBaseDamagedCache,
    testing::Values(
        DamageRow{"parent_nowhere", [](auto& n) { n[3].parentId = 999999; }},
        DamageRow{"parent_later_in_the_file", [](auto& n) { std::swap(n[1], n[2]); }},
        DamageRow{"cycle", [](auto& n) { n[1].parentId = n[2].id; }},
        DamageRow{"parent_is_a_record", [](auto& n) { n[5].parentId = n[4].id; }},
        DamageRow{"repeated_id", [](auto& n) { n[3].id = n[2].id; }},
        DamageRow{"another_drawings_path", [](auto& n) { n[0].drawingPath = "/elsewhere.dxf"; }},
        DamageRow{"second_user_root", [](auto& n) { n[6].libraryKey = n[6].name = n[0].name; }},
        DamageRow{"count_byte_0x1A", [](auto& n) { n.resize(26, n.back()); }}),
    [](const auto& row) { return std::string(row.param.name); });

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
    ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
    EXPECT_EQ(dialogs.messageBoxes()[0].text,
              "파일이름을 가져올 수 없습니다.\n- CVNTreeBase::BuildNode(AcDbDatabase * pDb, BOOL "
              "bDocument) error");
    EXPECT_EQ(dialogs.messageBoxes()[0].title, "파일 이름 확인 에러");

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

struct RenameRow {
    const char* name;
    std::vector<std::string> node;
    const char* newName;
    bool renamed;
    bool refused;  // the same-name message shown
};

class TreeBaseRename : public TreeBase, public testing::WithParamInterface<RenameRow> {};

TEST_P(TreeBaseRename, OnlySiblingsCount) {
    writeStandardLibrary();
    {
        // A category of the same name elsewhere in the tree.
        std::unique_ptr<cad::db::Database> db = openLibraryDrawing(drawing);
        addDictionary(libraryDictionaryId(*db, LibraryKind::Supplier, false), "육각볼트");
        ASSERT_EQ(db->save(), cad::ErrorStatus::eOk);
    }
    tree.loadDrawing(drawing);
    TreeNode& renamed = node(GetParam().node);
    EXPECT_EQ(tree.renameCategory(renamed, GetParam().newName), GetParam().renamed);
    if (GetParam().refused) {
        ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
        EXPECT_EQ(dialogs.messageBoxes()[0].text, "같은 이름이 이미 존재합니다.");
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "이름 변경 에러");
    } else {
        EXPECT_TRUE(dialogs.calls().empty());
    }
    std::vector<std::string> keys = GetParam().node;
    if (GetParam().renamed) keys.back() = GetParam().newName;
    EXPECT_EQ(renamed.name, keys.back());
    CVNTreeBase fresh(dialogs);
    cad::sys::deleteFile(cachePath);
    fresh.loadDrawing(drawing);
    EXPECT_NE(fresh.findNode(drawing, keys), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TreeBaseRename,
    testing::Values(
        RenameRow{"sibling", {"User data list", "볼트", "너트"}, "육각볼트", false, true},
        RenameRow{"sibling_in_the_supplier_library",
                  {"Adv data list", "Flanges"},
                  "육각볼트",
                  false,
                  true},
        RenameRow{"own_name", {"User data list", "볼트", "너트"}, "너트", true, false},
        // "육각볼트" is the category's child and a category of the other library: no sibling.
        RenameRow{
            "name_elsewhere_in_the_tree", {"User data list", "볼트"}, "육각볼트", true, false},
        RenameRow{"letter_case_only", {"Adv data list", "Flanges"}, "FLANGES", true, false},
        RenameRow{"blank", {"User data list", "볼트"}, "   ", false, false}),
    [](const auto& row) { return std::string(row.param.name); });

struct DeleteRow {
    const char* name;
    std::vector<std::string> node;
    const char* question;
    int answer;
};

class TreeBaseDelete : public TreeBase, public testing::WithParamInterface<DeleteRow> {};

TEST_P(TreeBaseDelete, AsksByWhatTheCategoryHolds) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    dialogs.pushAnswer(GetParam().answer);
    const bool deleted = tree.deleteCategory(&node(GetParam().node));
    EXPECT_EQ(deleted, GetParam().answer == IDOK);
    const std::vector<ScriptedDialogs::Call> boxes = dialogs.messageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    const ScriptedDialogs::Call& asked = boxes[0];
    EXPECT_EQ(asked.text, GetParam().question);
    EXPECT_EQ(asked.title, "분류 삭제");
    EXPECT_EQ(asked.buttons(), cad::app::MB_OKCANCEL);
    EXPECT_EQ(asked.icon(), cad::app::MB_ICONWARNING);
    EXPECT_EQ(tree.findNode(drawing, GetParam().node) == nullptr, deleted);
    CVNTreeBase fresh(dialogs);
    cad::sys::deleteFile(cachePath);
    fresh.loadDrawing(drawing);
    EXPECT_EQ(fresh.findNode(drawing, GetParam().node) == nullptr, deleted);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TreeBaseDelete,
    testing::Values(DeleteRow{"empty_group",
                              {"User data list", "볼트", "너트"},
                              "정말 삭제하시겠습니까?",
                              IDOK},
                    DeleteRow{"group_with_records",
                              {"User data list", "볼트", "육각볼트"},
                              "하위 분류 또는 데이터가 존재합니다.\n그래도 삭제하시겠습니까?",
                              IDOK},
                    DeleteRow{"category_cancelled",
                              {"User data list", "볼트"},
                              "하위 분류 또는 데이터가 존재합니다.\n그래도 삭제하시겠습니까?",
                              IDCANCEL}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(TreeBase, DeletingARecordNodeIsRefused) {
    writeStandardLibrary();
    tree.loadDrawing(drawing);
    TreeNode* record = node({"Adv data list", "Flanges"}).children.front().get();
    EXPECT_FALSE(tree.deleteCategory(record));
    ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
    EXPECT_EQ(dialogs.messageBoxes()[0].text, "분류가 아닙니다.");
    EXPECT_EQ(dialogs.messageBoxes()[0].title, "분류 삭제 에러");
    EXPECT_EQ(dialogs.messageBoxes()[0].icon(), cad::app::MB_ICONERROR);
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
        ASSERT_EQ(dialogs.messageBoxes().size(), 1u);
        EXPECT_EQ(dialogs.messageBoxes()[0].text, "모두 삭제하시겠습니까?");
        EXPECT_EQ(dialogs.messageBoxes()[0].title, "데이터 모두 삭제");
        EXPECT_EQ(dialogs.messageBoxes()[0].icon(), cad::app::MB_ICONWARNING);
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
