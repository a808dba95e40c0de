// The category tree model: cache-first loading and editing of the library dictionaries.
#include "vantor/store/VNTreeBase.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/NameCompare.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "cad/sys/FileLock.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/LockedLibraryDrawing.h"
#include "vantor/store/PartRecord.h"
#include "vantor/store/TreeCache.h"
#include "vantor/ui/TextRules.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::Xrecord;
namespace app = cad::app;

namespace {

constexpr std::string_view kLoadingText = "상태 : 데이터 로드 중...";
constexpr std::string_view kNewCategoryName = "새 분류";
constexpr std::string_view kSaveFileNameMessage =
    "파일이름을 가져올 수 없습니다. - TreeBase::saveDWG() error";
constexpr std::string_view kBuildFileNameMessage =
    "파일이름을 가져올 수 없습니다.\n- CVNTreeBase::BuildNode(AcDbDatabase * pDb, BOOL "
    "bDocument) error";

std::unique_ptr<TreeNode> nodeFrom(const TreeCacheNode& entry) {
    auto node = std::make_unique<TreeNode>();
    node->kind = entry.record ? TreeNode::Kind::Record : TreeNode::Kind::Group;
    node->library = libraryKindOfKey(entry.libraryKey);
    node->id = entry.id;
    node->drawingPath = entry.drawingPath;
    node->name = entry.name;
    node->libraryKey = entry.libraryKey;
    node->recordText = entry.recordText;
    return node;
}

void refreshKinds(TreeNode& node) {
    for (auto& child : node.children) refreshKinds(*child);
    node.refreshKind();
}

// A record that does not read as one has no catalogue line: a search finds it by what the
// tree shows of it.
void appendCatalogueEntry(std::int64_t id, const cad::db::ResBufChain& chain,
                          std::vector<CatalogueEntry>& catalogue) {
    std::optional<PartRecord> record = PartRecord::fromChain(chain);
    if (!record) return;
    catalogue.push_back({id, std::move(*record)});
}

// Depth-first in key order, as the dictionaries list their entries. `seen` keeps a damaged
// drawing whose dictionaries own each other from sending the walk round in circles.
void appendEntries(ObjectId dictionaryId, const TreeCacheNode& parent,
                   std::vector<TreeCacheNode>& nodes, std::unordered_set<ObjectId>& seen,
                   std::vector<CatalogueEntry>* catalogue) {
    std::vector<Dictionary::Entry> entries;
    if (auto dictionary = cad::db::open<Dictionary>(dictionaryId, OpenMode::ForRead))
        entries = dictionary->entries();
    for (const Dictionary::Entry& entry : entries) {
        if (!seen.insert(entry.id).second) continue;
        TreeCacheNode node;
        node.supplier = parent.supplier;
        node.drawingPath = parent.drawingPath;
        node.name = entry.key;
        node.libraryKey = parent.libraryKey;
        node.id = entry.id.asOldId();
        node.parentId = parent.id;
        if (cad::db::open<Dictionary>(entry.id, OpenMode::ForRead)) {
            nodes.push_back(node);
            appendEntries(entry.id, node, nodes, seen, catalogue);
        } else if (auto xrecord = cad::db::open<Xrecord>(entry.id, OpenMode::ForRead)) {
            node.record = true;
            node.recordText = PartRecord::specOf(xrecord->rbChain());
            if (catalogue != nullptr) appendCatalogueEntry(node.id, xrecord->rbChain(), *catalogue);
            nodes.push_back(std::move(node));
        }
    }
}

// A library the drawing does not hold is a root with id 0 (the user library) or no root at
// all (the supplier library).
CVNTreeBase::LoadResult loadedFrom(const std::vector<TreeCacheNode>& nodes) {
    const bool holdsLibrary = std::any_of(nodes.begin(), nodes.end(), [](const auto& node) {
        return node.name == node.libraryKey && node.id != 0;
    });
    return holdsLibrary ? CVNTreeBase::LoadResult::Loaded : CVNTreeBase::LoadResult::NoLibraryData;
}

}  // namespace

struct CVNTreeBase::OpenDrawing {
    // Locked before the read and held until the save, so that another program's change of the
    // drawing made meanwhile is neither overwritten nor overwrites this one.
    LockedLibraryDrawing file;
    cad::db::Database* db = nullptr;  // the file's
    ObjectId id;                      // the node's object
};

CVNTreeBase::CVNTreeBase(app::UserDialogs& dialogs) : dialogs_(dialogs) {}

void CVNTreeBase::rebuildFromList(DrawingList& list) {
    clear();
    const int count = static_cast<int>(list.size());
    dialogs_.progressShow();
    dialogs_.progressRange(0, count);
    dialogs_.progressText(kLoadingText);
    int done = 0;
    for (RegisteredDrawing& entry : list) {
        entry.active = loadDrawing(entry.path) == LoadResult::Loaded ? 1 : 0;
        ++done;
        dialogs_.progressPosition(done);
        dialogs_.progressText(std::string(kLoadingText) + " (" +
                              std::to_string(done * 100 / count) + "%)");
    }
    dialogs_.progressHide();
}

CVNTreeBase::LoadResult CVNTreeBase::loadDrawing(const std::string& path) {
    // A drawing shown again keeps its place among the others.
    const auto shown = std::find_if(roots_.begin(), roots_.end(),
                                    [&](const auto& root) { return root->drawingPath == path; });
    const std::size_t place = static_cast<std::size_t>(shown - roots_.begin());
    removeDrawing(path);
    const std::size_t before = roots_.size();
    const LoadResult result = appendDrawing(path);
    if (place < before)
        std::rotate(roots_.begin() + static_cast<std::ptrdiff_t>(place),
                    roots_.begin() + static_cast<std::ptrdiff_t>(before), roots_.end());
    return result;
}

CVNTreeBase::LoadResult CVNTreeBase::appendDrawing(const std::string& path) {
    TreeCache::State state = TreeCache::check(path);
    if (state == TreeCache::State::Unavailable) return LoadResult::Skipped;
    const std::string cachePath = TreeCache::pathFor(path);

    std::vector<TreeCacheNode> built;
    bool rebuilt = false;
    if (state == TreeCache::State::Stale) {
        if (!rebuildCache(path, built)) return LoadResult::Unreadable;
        rebuilt = true;
    }
    std::vector<TreeCacheNode> cached;
    if (TreeCache::readFile(cachePath, cached) && insertCachedNodes(path, cached))
        return loadedFrom(cached);
    if (!rebuilt) {
        if (!rebuildCache(path, built)) return LoadResult::Unreadable;
        cached.clear();
        if (TreeCache::readFile(cachePath, cached) && insertCachedNodes(path, cached))
            return loadedFrom(cached);
    }
    // The cache just written does not read back whole: it could not be written (a read-only
    // folder), or its node count has the low byte 0x1A, which ends a text-mode read at once.
    // The nodes it was written from stand in for it, so the drawing still shows.
    insertCachedNodes(path, built);
    return loadedFrom(built);
}

bool CVNTreeBase::rebuildCache(const std::string& path, std::vector<TreeCacheNode>& built) {
    std::unique_ptr<cad::db::Database> db = openLibraryDrawing(path);
    if (!db) return false;
    built.clear();
    std::vector<CatalogueEntry> catalogue;
    if (!buildNodes(*db, LibraryKind::User, false, built, &catalogue) ||
        !buildNodes(*db, LibraryKind::Supplier, false, built, &catalogue))
        return false;
    db.reset();
    // Under the cache's lock, which a save of the drawing takes to drop the cache: a cache
    // built from the drawing as it was before that save is then dropped after it, never
    // written after the drop with a time that makes it look current. Without the lock the
    // nodes still show; the cache is built again next time.
    cad::sys::FileLock lock;
    const std::string cachePath = TreeCache::pathFor(path);
    if (lock.acquire(cachePath) == cad::ErrorStatus::eOk) {
        std::vector<TreeCacheNode> written = built;
        TreeCache::write(cachePath, written);
        CatalogueCache::write(CatalogueCache::pathFor(path), catalogue);
    }
    return true;
}

bool CVNTreeBase::buildNodes(cad::db::Database& db, LibraryKind kind, bool forEditing,
                             std::vector<TreeCacheNode>& nodes,
                             std::vector<CatalogueEntry>* catalogue) {
    if (db.fileName().empty()) {
        dialogs_.messageBox(kBuildFileNameMessage, kFileNameErrorTitle,
                            app::MB_OK | app::MB_ICONERROR);
        return false;
    }
    ObjectId rootId = libraryDictionaryId(db, kind, forEditing);
    if (rootId.isNull() && kind == LibraryKind::Supplier) return true;

    TreeCacheNode root;
    root.supplier = kind == LibraryKind::Supplier;
    root.drawingPath = db.fileName();
    root.name = std::string(libraryKey(kind));
    root.libraryKey = root.name;
    root.id = rootId.isNull() ? 0 : rootId.asOldId();
    root.parentId = db.namedObjectsDictionaryId().asOldId();
    nodes.push_back(root);
    if (rootId.isNull()) return true;
    std::unordered_set<ObjectId> seen{rootId};
    appendEntries(rootId, root, nodes, seen, catalogue);
    return true;
}

bool CVNTreeBase::insertCachedNodes(const std::string& path,
                                    const std::vector<TreeCacheNode>& nodes) {
    std::vector<std::unique_ptr<TreeNode>> roots;
    std::unordered_map<std::int64_t, TreeNode*> byId;
    for (const TreeCacheNode& entry : nodes) {
        if (entry.drawingPath != path || byId.count(entry.id) != 0) return false;
        std::unique_ptr<TreeNode> node = nodeFrom(entry);
        TreeNode* placed = node.get();
        // A parent must come before its children, which also keeps cycles out.
        if (auto parent = byId.find(entry.parentId); parent != byId.end()) {
            if (!parent->second->isDictionary()) return false;
            parent->second->addChild(std::move(node));
        } else {
            bool isRoot = !entry.record && entry.name == entry.libraryKey &&
                          std::none_of(roots.begin(), roots.end(), [&](const auto& root) {
                              return root->library == placed->library;
                          });
            if (!isRoot) return false;
            placed->kind = TreeNode::Kind::LibraryRoot;
            roots.push_back(std::move(node));
        }
        byId.emplace(entry.id, placed);
    }
    std::stable_partition(roots.begin(), roots.end(),
                          [](const auto& root) { return root->library == LibraryKind::Supplier; });
    for (auto& root : roots) {
        refreshKinds(*root);
        roots_.push_back(std::move(root));
    }
    return true;
}

void CVNTreeBase::removeDrawing(std::string_view path) {
    std::erase_if(roots_, [path](const auto& root) { return root->drawingPath == path; });
}

TreeNode* CVNTreeBase::findNode(std::string_view drawingPath,
                                const std::vector<std::string>& keys) const {
    if (keys.empty()) return nullptr;
    TreeNode* node = nullptr;
    for (const auto& root : roots_) {
        if (root->drawingPath == drawingPath && libraryKey(root->library) == keys.front())
            node = root.get();
    }
    for (std::size_t i = 1; node != nullptr && i < keys.size(); ++i) {
        auto child = std::find_if(node->children.begin(), node->children.end(), [&](const auto& c) {
            return c->isDictionary() && cad::db::equalNames(c->name, keys[i]);
        });
        node = child == node->children.end() ? nullptr : child->get();
    }
    return node;
}

bool CVNTreeBase::acceptsNewCategory(const TreeNode& node) {
    return node.isDictionary() && !(node.kind == TreeNode::Kind::Group && node.holdsRecords());
}

bool CVNTreeBase::acceptsRenameOrDelete(const TreeNode& node) {
    return node.kind == TreeNode::Kind::Category || node.kind == TreeNode::Kind::Group;
}

bool CVNTreeBase::acceptsDeleteAll(const TreeNode& node) {
    return node.kind == TreeNode::Kind::Group;
}

std::unique_ptr<CVNTreeBase::OpenDrawing> CVNTreeBase::openForEditing(const TreeNode& node) {
    auto drawing = std::make_unique<OpenDrawing>();
    if (drawing->file.open(node.drawingPath, dialogs_, LockedLibraryDrawing::WhenHeld::Refuse) !=
        ErrorStatus::eOk)
        return nullptr;
    drawing->db = &drawing->file.database();
    // A root is found by its key, which also makes the library when the drawing has none yet.
    drawing->id = node.kind == TreeNode::Kind::LibraryRoot
                      ? libraryDictionaryId(*drawing->db, node.library, true)
                      : objectIdOfNode(*drawing->db, node.id);
    if (drawing->id.isNull()) return nullptr;
    return drawing;
}

bool CVNTreeBase::save(OpenDrawing& drawing) {
    return drawing.file.save(dialogs_, kSaveFileNameMessage) == ErrorStatus::eOk;
}

TreeNode* CVNTreeBase::newCategory(TreeNode& parent) {
    if (!acceptsNewCategory(parent)) return nullptr;
    std::unique_ptr<OpenDrawing> drawing = openForEditing(parent);
    if (!drawing) return nullptr;
    std::string name(kNewCategoryName);
    ObjectId newId;
    {
        auto dictionary = cad::db::open<Dictionary>(drawing->id, OpenMode::ForWrite);
        if (!dictionary) return nullptr;
        for (int counter = 0; dictionary->has(name);)
            name = std::string(kNewCategoryName) + "[" + std::to_string(++counter) + "]";
        if (dictionary->setAt(name, std::make_unique<Dictionary>(), newId) != ErrorStatus::eOk)
            return nullptr;
    }
    parent.id = drawing->id.asOldId();  // a root made just now gets its id

    auto node = std::make_unique<TreeNode>();
    node->library = parent.library;
    node->id = newId.asOldId();
    node->drawingPath = parent.drawingPath;
    node->name = name;
    node->libraryKey = std::string(libraryKey(parent.library));
    TreeNode& added = parent.addChild(std::move(node));
    added.refreshKind();
    parent.refreshKind();
    save(*drawing);
    return &added;
}

bool CVNTreeBase::renameCategory(TreeNode& node, std::string_view newName) {
    if (!acceptsRenameOrDelete(node) || node.parent == nullptr || isBlankText(newName))
        return false;
    if (newName == node.name) return true;
    std::unique_ptr<OpenDrawing> drawing = openForEditing(*node.parent);
    if (!drawing) return false;
    {
        auto parent = cad::db::open<Dictionary>(drawing->id, OpenMode::ForWrite);
        if (!parent) return false;
        // Only the siblings count, and the node itself is no sibling: a change of letter case
        // alone re-keys it.
        ObjectId holder;
        if (parent->getAt(newName, holder) == ErrorStatus::eOk &&
            holder != objectIdOfNode(*drawing->db, node.id)) {
            parent.close();
            dialogs_.messageBox("같은 이름이 이미 존재합니다.", "이름 변경 에러",
                                app::MB_OK | app::MB_ICONERROR);
            return false;
        }
        if (parent->setName(node.name, newName) != ErrorStatus::eOk) return false;
    }
    node.name = std::string(newName);
    save(*drawing);
    return true;
}

bool CVNTreeBase::deleteCategory(TreeNode* node) {
    if (node == nullptr || node->kind == TreeNode::Kind::LibraryRoot) return false;
    std::unique_ptr<OpenDrawing> drawing = openForEditing(*node);
    if (!drawing) return false;
    std::size_t entryCount = 0;
    {
        auto dictionary = cad::db::open<Dictionary>(drawing->id, OpenMode::ForRead);
        if (!dictionary) {
            dialogs_.messageBox("분류가 아닙니다.", "분류 삭제 에러",
                                app::MB_OK | app::MB_ICONERROR);
            return false;
        }
        entryCount = dictionary->numEntries();
    }
    std::string_view question =
        entryCount == 0 ? "정말 삭제하시겠습니까?"
                        : "하위 분류 또는 데이터가 존재합니다.\n그래도 삭제하시겠습니까?";
    if (dialogs_.messageBox(question, "분류 삭제", app::MB_OKCANCEL | app::MB_ICONWARNING) !=
        app::IDOK)
        return false;
    {
        auto dictionary = cad::db::open<Dictionary>(drawing->id, OpenMode::ForWrite);
        if (!dictionary || dictionary->erase() != ErrorStatus::eOk) {
            dictionary.close();
            dialogs_.messageBox("해당 정보를 도면에서 제거하지 못했습니다.", "분류 삭제 에러",
                                app::MB_OK | app::MB_ICONERROR);
            return false;
        }
    }
    TreeNode* parent = node->parent;
    if (parent != nullptr) {
        parent->removeChild(node);
        parent->refreshKind();
    }
    save(*drawing);
    return true;
}

bool CVNTreeBase::deleteAllData(TreeNode& group) {
    if (!acceptsDeleteAll(group)) return false;
    if (dialogs_.messageBox("모두 삭제하시겠습니까?", "데이터 모두 삭제",
                            app::MB_OKCANCEL | app::MB_ICONWARNING) != app::IDOK)
        return false;
    std::unique_ptr<OpenDrawing> drawing = openForEditing(group);
    if (!drawing) return false;
    std::vector<Dictionary::Entry> entries;
    if (auto dictionary = cad::db::open<Dictionary>(drawing->id, OpenMode::ForRead))
        entries = dictionary->entries();
    for (const Dictionary::Entry& entry : entries) {
        if (auto xrecord = cad::db::open<Xrecord>(entry.id, OpenMode::ForWrite)) xrecord->erase();
    }
    std::erase_if(group.children, [](const auto& child) { return !child->isDictionary(); });
    save(*drawing);
    return true;
}

bool CVNTreeBase::deleteRecord(TreeNode& record) {
    if (record.kind != TreeNode::Kind::Record || record.parent == nullptr) return false;
    std::unique_ptr<OpenDrawing> drawing = openForEditing(record);
    auto xrecord = drawing ? cad::db::open<Xrecord>(drawing->id, OpenMode::ForWrite)
                           : cad::db::ObjectPtr<Xrecord>();
    if (!xrecord) {
        dialogs_.messageBox("데이터를 삭제할 수 없습니다.", "삭제 에러",
                            app::MB_OK | app::MB_ICONERROR);
        return false;
    }
    // The "?." is how the question has always read.
    if (dialogs_.messageBox("정말 삭제하시겠습니까?.", "데이터 삭제",
                            app::MB_OKCANCEL | app::MB_ICONWARNING) != app::IDOK)
        return false;
    xrecord->erase();
    xrecord.close();
    TreeNode& group = *record.parent;
    group.removeChild(&record);
    group.refreshKind();
    save(*drawing);
    return true;
}

}  // namespace vantor
