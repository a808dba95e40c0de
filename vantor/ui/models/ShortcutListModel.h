// One of the short lists of parts (favourites, inserted last) as a list: each part's label, its
// drawing in the tool tip.
#pragma once

#include <QAbstractListModel>
#include <functional>
#include <vector>

#include "vantor/ui/PartShortcuts.h"

namespace vantor {

class ShortcutListModel : public QAbstractListModel {
    Q_OBJECT
public:
    using Source = std::function<const std::vector<PartShortcut>&()>;

    // `source` answers the list as it stands; refresh() shows it again after it changed.
    explicit ShortcutListModel(Source source, QObject* parent = nullptr);
    void refresh();
    std::optional<PartShortcut> partAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // A part can be dragged onto the drawing to place it there.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    Source source_;
    std::vector<PartShortcut> shown_;  // a copy, so the list may change before refresh()
};

}  // namespace vantor
