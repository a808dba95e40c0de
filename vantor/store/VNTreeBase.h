// The model of the library's category tree: the libraries of every registered drawing with
// their categories, groups and part records, loaded cache-first, and the editing of that
// structure directly on the library drawings, each saved after every change.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vantor/registry/TreeRebuilder.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/LibraryKind.h"
#include "vantor/store/TreeCacheNode.h"
#include "vantor/store/TreeNode.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}

namespace vantor {

class CVNTreeBase : public TreeRebuilder {
public:
    enum class LoadResult {
        Skipped = -1,  // the drawing is not there: nothing shown
        Loaded = 1,
        // Read, but it holds neither library: its empty user library is shown, yet it is no
        // library drawing, so it does not count as active.
        NoLibraryData = 2,
        Unreadable = 3,  // the cache had to be rebuilt and the drawing could not be read
    };

    explicit CVNTreeBase(cad::app::UserDialogs& dialogs);

    // Loads every drawing of the list in order with the loading progress and sets each one's
    // active flag to whether it was loaded with library data.
    void rebuildFromList(DrawingList& list) override;

    // Shows one drawing's libraries (replacing what was shown of it): from its .vnf cache when
    // that is current, else from the drawing, writing the cache first. The tree is always
    // built from what the cache file holds. A cache that does not read back whole or whose
    // links do not hold (a parent nowhere, later in the file or a record, a repeated id,
    // another drawing's path) is only a cache: the drawing is read and the cache rewritten.
    LoadResult loadDrawing(const std::string& path);
    // Stops showing one drawing (one taken off the list).
    void removeDrawing(std::string_view path);
    void clear() { roots_.clear(); }

    // Roots of all drawings: per drawing the supplier library before the user library.
    const std::vector<std::unique_ptr<TreeNode>>& roots() const { return roots_; }
    // The dictionary node of a drawing reached through the library key and category names.
    TreeNode* findNode(std::string_view drawingPath, const std::vector<std::string>& keys) const;

    // The nodes of one library of an open drawing in the form the cache holds them, appended
    // depth-first in key order. A missing user library gives an empty root with id 0, a
    // missing supplier library nothing; `forEditing` creates the missing dictionary instead.
    // False (after the file-name message) when the database has no file name. With
    // `catalogue`, every record's texts are appended there as well.
    bool buildNodes(cad::db::Database& db, LibraryKind kind, bool forEditing,
                    std::vector<TreeCacheNode>& nodes,
                    std::vector<CatalogueEntry>* catalogue = nullptr);

    // Turns a cache's node list into the drawing's roots, each entry the last child of its
    // parent in file order. False, with nothing added, when the list does not form a tree of
    // that drawing: an entry of another drawing, a repeated id, a parent that is missing,
    // later in the list or a record, a second root of a library, a root not keyed by its
    // library.
    bool insertCachedNodes(const std::string& path, const std::vector<TreeCacheNode>& nodes);

    // Which editing a node takes. New categories go into roots, categories and groups without
    // records (so records never sit beside sub-categories); rename and delete take categories
    // and groups; delete-all takes groups.
    static bool acceptsNewCategory(const TreeNode& node);
    static bool acceptsRenameOrDelete(const TreeNode& node);
    static bool acceptsDeleteAll(const TreeNode& node);

    // Adds the empty dictionary "새 분류" (or "새 분류[1]", "새 분류[2]" ...: the first name the
    // parent does not hold) and answers its node, which the view selects and puts into label
    // editing. nullptr when the node takes no new category or the drawing cannot be changed.
    TreeNode* newCategory(TreeNode& parent);
    // Re-keys the node in its parent dictionary. Refused with a message when a sibling has the
    // name (as the dictionary compares, so letters without regard to case); the node's own
    // name, or a blank one, changes nothing. True when the name now stands.
    bool renameCategory(TreeNode& node, std::string_view newName);
    // Erases the category with everything below it after the confirmation. True when gone.
    bool deleteCategory(TreeNode* node);
    // Erases every part record of the group after the confirmation; the group stays.
    bool deleteAllData(TreeNode& group);
    // Erases one part record after the confirmation and takes its node out of the tree (the
    // node is gone when this answers true). A record that cannot be opened for writing is
    // reported and kept.
    bool deleteRecord(TreeNode& record);

private:
    struct OpenDrawing;
    // loadDrawing's work, the drawing's roots put after every other drawing's.
    LoadResult appendDrawing(const std::string& path);

    bool rebuildCache(const std::string& path, std::vector<TreeCacheNode>& built);
    // Takes the drawing's lock, then opens the drawing and the node's object; nothing is shown
    // when either cannot be had, the holder of a lock held past the wait is.
    std::unique_ptr<OpenDrawing> openForEditing(const TreeNode& node);
    // Saves through the drawing's lock, over nothing but what was read.
    bool save(OpenDrawing& drawing);

    cad::app::UserDialogs& dialogs_;
    std::vector<std::unique_ptr<TreeNode>> roots_;
};

}  // namespace vantor
