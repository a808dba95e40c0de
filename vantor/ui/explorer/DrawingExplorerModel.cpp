// The drawing explorer's model: folders read on demand with std::filesystem, so that read
// errors (gone, not a folder, no permission) are seen as errors and not as empty folders.
#include "vantor/ui/explorer/DrawingExplorerModel.h"

#include <QAbstractFileIconProvider>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPersistentModelIndex>
#include <QStorageInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "cad/app/UserDialogs.h"
#include "vantor/ui/explorer/NaturalOrder.h"

namespace vantor {

namespace {

constexpr std::string_view kNotReady =
    "이 드라이브는 아직 준비가 안되었거나, 네트웍 연결이 되지 않았습니다. 나중에 다시 "
    "시도하십시오.";
constexpr std::string_view kNotReadyTitle = "드라이브 에러";

QString absoluteClean(const QString& path) {
    QString clean = QDir::cleanPath(QDir::isAbsolutePath(path)
                                        ? path
                                        : QDir::current().absoluteFilePath(path));
    return clean.isEmpty() ? QStringLiteral("/") : clean;
}

bool under(const QString& path, const QString& folder) {
    if (folder == QStringLiteral("/")) return path.startsWith(u'/');
    return path == folder ||
           (path.startsWith(folder) && path.size() > folder.size() && path[folder.size()] == u'/');
}

QString childPath(const QString& folder, const QString& name) {
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

}  // namespace

struct DrawingExplorerModel::Node {
    QString name;
    QString path;
    Kind kind = Kind::Folder;
    ExplorerLocation::Type locationType = ExplorerLocation::Type::Root;
    bool mounted = false;  // a volume's mount point
    Listing listing = Listing::NotRead;
    Node* parent = nullptr;
    int row = 0;
    std::vector<std::unique_ptr<Node>> children;

    bool isFolder() const { return kind != Kind::Drawing; }
    void renumber(std::size_t from) {
        for (std::size_t i = from; i < children.size(); ++i) children[i]->row = int(i);
    }
};

struct DrawingExplorerModel::Entry {
    QString name;
    bool folder = false;

    bool matches(const Node& node) const { return node.name == name && node.isFolder() == folder; }
    // Folders first, then drawings, each in natural name order.
    friend bool operator<(const Entry& a, const Entry& b) {
        if (a.folder != b.folder) return a.folder;
        return naturalLess(a.name, b.name);
    }
};

DrawingExplorerModel::DrawingExplorerModel(cad::app::UserDialogs& dialogs, QObject* parent)
    : DrawingExplorerModel(systemLocations(), dialogs, parent) {}

DrawingExplorerModel::DrawingExplorerModel(const QList<ExplorerLocation>& locations,
                                           cad::app::UserDialogs& dialogs, QObject* parent)
    : QAbstractItemModel(parent), dialogs_(dialogs), root_(std::make_unique<Node>()) {
    root_->listing = Listing::Read;
    for (const ExplorerLocation& location : locations) {
        auto node = std::make_unique<Node>();
        node->name = location.name;
        node->path = absoluteClean(location.path);
        node->kind = Kind::Location;
        node->locationType = location.type;
        node->mounted = location.isVolume();
        node->parent = root_.get();
        node->row = int(root_->children.size());
        root_->children.push_back(std::move(node));
    }
    QAbstractFileIconProvider provider;
    setIconProvider(provider);
}

DrawingExplorerModel::~DrawingExplorerModel() = default;

bool DrawingExplorerModel::isDrawingFileName(QStringView name) {
    return name.size() > 4 && (name.endsWith(u".dxf", Qt::CaseInsensitive) ||
                               name.endsWith(u".dwg", Qt::CaseInsensitive));
}

void DrawingExplorerModel::setIconProvider(const QAbstractFileIconProvider& provider) {
    locationIcon_ = provider.icon(QAbstractFileIconProvider::Drive);
    networkIcon_ = provider.icon(QAbstractFileIconProvider::Network);
    homeIcon_ = provider.icon(QFileInfo(QDir::homePath()));
    folderIcon_ = provider.icon(QAbstractFileIconProvider::Folder);
    drawingIcon_ = provider.icon(QAbstractFileIconProvider::File);
    if (!root_->children.empty()) {
        emit dataChanged(index(0, 0), index(int(root_->children.size()) - 1, 0),
                         {Qt::DecorationRole});
    }
}

DrawingExplorerModel::Node* DrawingExplorerModel::nodeOf(const QModelIndex& index) const {
    return index.isValid() ? static_cast<Node*>(index.internalPointer()) : root_.get();
}

QModelIndex DrawingExplorerModel::indexOf(const Node* node) const {
    if (node == nullptr || node == root_.get()) return {};
    return createIndex(node->row, 0, const_cast<Node*>(node));
}

QString DrawingExplorerModel::filePath(const QModelIndex& index) const {
    return index.isValid() ? nodeOf(index)->path : QString();
}

DrawingExplorerModel::Kind DrawingExplorerModel::kind(const QModelIndex& index) const {
    return index.isValid() ? nodeOf(index)->kind : Kind::Location;
}

DrawingExplorerModel::Listing DrawingExplorerModel::listing(const QModelIndex& index) const {
    return nodeOf(index)->listing;
}

QModelIndex DrawingExplorerModel::index(int row, int column, const QModelIndex& parent) const {
    const Node* folder = nodeOf(parent);
    if (column != 0 || row < 0 || row >= int(folder->children.size())) return {};
    return createIndex(row, 0, folder->children[std::size_t(row)].get());
}

QModelIndex DrawingExplorerModel::parent(const QModelIndex& child) const {
    if (!child.isValid()) return {};
    return indexOf(nodeOf(child)->parent);
}

int DrawingExplorerModel::rowCount(const QModelIndex& parent) const {
    if (parent.column() > 0) return 0;
    return int(nodeOf(parent)->children.size());
}

int DrawingExplorerModel::columnCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : 1;
}

QIcon DrawingExplorerModel::iconOf(const Node& node) const {
    switch (node.kind) {
        case Kind::Drawing: return drawingIcon_;
        case Kind::Folder: return folderIcon_;
        case Kind::Location: break;
    }
    switch (node.locationType) {
        case ExplorerLocation::Type::Home: return homeIcon_;
        case ExplorerLocation::Type::Network: return networkIcon_;
        default: return locationIcon_;
    }
}

QVariant DrawingExplorerModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& node = *nodeOf(index);
    switch (role) {
        case Qt::DisplayRole: return node.name;
        case Qt::DecorationRole: return iconOf(node);
        case Qt::ToolTipRole:
        case PathRole: return node.path;
        case KindRole: return int(node.kind);
        default: return {};
    }
}

Qt::ItemFlags DrawingExplorerModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (!nodeOf(index)->isFolder()) flags |= Qt::ItemNeverHasChildren;
    return flags;
}

// A folder not read yet (or that failed) shows that it can be expanded without being read:
// asking a slow disk whether a folder is empty is what listing on demand avoids.
bool DrawingExplorerModel::hasChildren(const QModelIndex& parent) const {
    const Node* node = nodeOf(parent);
    if (!node->isFolder()) return false;
    return node->listing != Listing::Read || !node->children.empty();
}

// A failed folder is not fetched again by the view's own layout passes: the user hears of
// it once per expansion, and refresh() is the new attempt.
bool DrawingExplorerModel::canFetchMore(const QModelIndex& parent) const {
    const Node* node = nodeOf(parent);
    return node->isFolder() && node->listing == Listing::NotRead;
}

void DrawingExplorerModel::fetchMore(const QModelIndex& parent) {
    if (canFetchMore(parent)) read(nodeOf(parent));
}

bool DrawingExplorerModel::read(Node* folder) {
    std::vector<Entry> entries;
    bool readable = true;
    // A mount point left behind by an unmounted volume is an empty folder that would read
    // without an error: a volume is checked to be still mounted first.
    if (folder->mounted) {
        const QStorageInfo volume(folder->path);
        readable = volume.isValid() && volume.isReady() &&
                   QDir::cleanPath(volume.rootPath()) == folder->path;
    }
    if (readable) {
        namespace fs = std::filesystem;
        std::error_code error;
        fs::directory_iterator it(fs::path(QFile::encodeName(folder->path).toStdString()),
                                  fs::directory_options::none, error);
        for (; !error && it != fs::directory_iterator(); it.increment(error)) {
            const QString name = QFile::decodeName(it->path().filename().native().c_str());
            // Hidden entries are the system's and programs' own, never a user's drawings.
            if (name.startsWith(u'.')) continue;
            std::error_code statError;
            if (it->is_directory(statError)) {
                entries.push_back({name, true});
            } else if (isDrawingFileName(name) && it->is_regular_file(statError)) {
                entries.push_back({name, false});
            }
        }
        readable = !error;
    }
    if (!readable) {
        if (!folder->children.empty()) {
            beginRemoveRows(indexOf(folder), 0, int(folder->children.size()) - 1);
            folder->children.clear();
            endRemoveRows();
        }
        folder->listing = Listing::Failed;
        reportUnreadable(folder);
        return false;
    }
    folder->listing = Listing::Read;
    merge(folder, std::move(entries));
    return true;
}

void DrawingExplorerModel::reportUnreadable(Node* folder) {
    const QPersistentModelIndex index(indexOf(folder));
    dialogs_.messageBox(kNotReady, kNotReadyTitle, cad::app::MB_OK | cad::app::MB_ICONERROR);
    if (index.isValid()) emit locationUnreadable(index);
}

void DrawingExplorerModel::merge(Node* folder, std::vector<Entry> entries) {
    std::sort(entries.begin(), entries.end());
    const QModelIndex parent = indexOf(folder);
    auto& children = folder->children;

    // Rows that went, in runs from the end so the rows before a run keep their numbers.
    QHash<QString, bool> present;
    present.reserve(qsizetype(entries.size()));
    for (const Entry& entry : entries) present.insert(entry.name, entry.folder);
    for (std::size_t end = children.size(); end > 0;) {
        auto kept = [&](std::size_t i) {
            auto it = present.constFind(children[i]->name);
            return it != present.cend() && it.value() == children[i]->isFolder();
        };
        if (kept(end - 1)) {
            --end;
            continue;
        }
        std::size_t begin = end - 1;
        while (begin > 0 && !kept(begin - 1)) --begin;
        beginRemoveRows(parent, int(begin), int(end) - 1);
        children.erase(children.begin() + std::ptrdiff_t(begin),
                       children.begin() + std::ptrdiff_t(end));
        folder->renumber(begin);
        endRemoveRows();
        end = begin;
    }

    // What stays is in the order the new entries are sorted in, so new rows go in as runs
    // between the rows kept.
    std::size_t row = 0;
    for (std::size_t i = 0; i < entries.size();) {
        if (row < children.size() && entries[i].matches(*children[row])) {
            ++row;
            ++i;
            continue;
        }
        std::size_t last = i;
        while (last + 1 < entries.size() &&
               !(row < children.size() && entries[last + 1].matches(*children[row])))
            ++last;
        beginInsertRows(parent, int(row), int(row + last - i));
        std::vector<std::unique_ptr<Node>> run;
        run.reserve(last - i + 1);
        for (std::size_t k = i; k <= last; ++k) {
            auto node = std::make_unique<Node>();
            node->name = std::move(entries[k].name);
            node->path = childPath(folder->path, node->name);
            node->kind = entries[k].folder ? Kind::Folder : Kind::Drawing;
            node->parent = folder;
            run.push_back(std::move(node));
        }
        children.insert(children.begin() + std::ptrdiff_t(row),
                        std::make_move_iterator(run.begin()), std::make_move_iterator(run.end()));
        folder->renumber(row);
        endInsertRows();
        row += last - i + 1;
        i = last + 1;
    }
}

void DrawingExplorerModel::refresh(const QModelIndex& folderIndex) {
    Node* folder = nodeOf(folderIndex);
    if (!folderIndex.isValid() || !folder->isFolder() || folder->listing == Listing::NotRead)
        return;
    if (folder->listing == Listing::Failed) {
        read(folder);
        return;
    }
    // A folder that cannot be read any more has most often been deleted or renamed: its
    // parent's new listing drops it without a word. Only one that is still there is reported.
    Node* parent = folder->parent;
    if (parent != root_.get()) {
        const QFileInfo info(folder->path);
        if (!info.exists() || !info.isDir()) {
            const QPersistentModelIndex kept(folderIndex);
            refresh(indexOf(parent));
            if (!kept.isValid()) return;
        }
    }
    read(folder);
}

QModelIndex DrawingExplorerModel::indexForPath(const QString& path, bool* found) {
    if (found != nullptr) *found = false;
    const QString target = absoluteClean(path);
    Node* node = nullptr;
    for (const auto& location : root_->children) {
        if (under(target, location->path) &&
            (node == nullptr || location->path.size() > node->path.size()))
            node = location.get();
    }
    if (node == nullptr) return {};

    const QStringList names =
        target.mid(node->path.size()).split(u'/', Qt::SkipEmptyParts);
    for (const QString& name : names) {
        if (!node->isFolder()) return indexOf(node);
        if (node->listing != Listing::Read && !read(node)) return indexOf(node);
        auto it = std::find_if(node->children.begin(), node->children.end(),
                               [&](const auto& child) { return child->name == name; });
        if (it == node->children.end()) return indexOf(node);
        node = it->get();
    }
    if (found != nullptr) *found = true;
    return indexOf(node);
}

}  // namespace vantor
