// The drawing explorer's item model: the top-level locations, their folders and the drawing
// files in them, each folder read only when it is first expanded.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <QList>

#include <memory>

#include "vantor/ui/explorer/ExplorerLocations.h"

class QAbstractFileIconProvider;

namespace cad::app {
class UserDialogs;
}

namespace vantor {

class DrawingExplorerModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Role {
        PathRole = Qt::UserRole + 1,  // QString: the item's absolute path
        KindRole,                     // int: a Kind
    };
    enum class Kind { Location, Folder, Drawing };
    Q_ENUM(Kind)

    enum class Listing {
        NotRead,  // the folder has not been expanded yet
        Read,
        Failed,  // the last attempt could not read it; the user was told
    };

    // The system's locations (systemLocations()).
    explicit DrawingExplorerModel(cad::app::UserDialogs& dialogs, QObject* parent = nullptr);
    DrawingExplorerModel(const QList<ExplorerLocation>& locations, cad::app::UserDialogs& dialogs,
                         QObject* parent = nullptr);
    ~DrawingExplorerModel() override;

    // ".dxf" or ".dwg" in any letter case.
    static bool isDrawingFileName(QStringView name);

    // Takes the icons of locations, folders and drawings from `provider` (the widgets'
    // provider falls back to the style's icons where the desktop has no icon theme).
    void setIconProvider(const QAbstractFileIconProvider& provider);

    QString filePath(const QModelIndex& index) const;
    Kind kind(const QModelIndex& index) const;
    bool isDrawing(const QModelIndex& index) const { return kind(index) == Kind::Drawing; }
    Listing listing(const QModelIndex& index) const;

    // The item of `path`, reading the folders on the way to it. When the path is not there
    // (gone, hidden, or past a folder that cannot be read, of which the user is told as on
    // expanding it) the deepest item on the way is given and `found` is set false; an
    // invalid index when no location holds the path.
    QModelIndex indexForPath(const QString& path, bool* found = nullptr);

    // Reads a folder again after files changed: rows that went are removed, new ones
    // inserted, and the items that stay keep their rows' identity, so what was expanded
    // below them stays expanded. A folder that cannot be read any more is taken from its
    // parent when it is gone, otherwise it is emptied and reported. A folder never read is
    // left to its first expansion; one that failed is tried again.
    void refresh(const QModelIndex& folder);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

signals:
    // A folder or location could not be read; the user has been told. A view collapses it.
    void locationUnreadable(const QModelIndex& folder);

private:
    struct Node;
    struct Entry;

    Node* nodeOf(const QModelIndex& index) const;
    QModelIndex indexOf(const Node* node) const;
    bool read(Node* folder);
    void merge(Node* folder, std::vector<Entry> entries);
    void reportUnreadable(Node* folder);
    QIcon iconOf(const Node& node) const;

    cad::app::UserDialogs& dialogs_;
    std::unique_ptr<Node> root_;
    QIcon locationIcon_;
    QIcon homeIcon_;
    QIcon networkIcon_;
    QIcon folderIcon_;
    QIcon drawingIcon_;
};

}  // namespace vantor
