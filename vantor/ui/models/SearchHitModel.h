// The hits of a part search as a table: the Korean name, the specification, the English name
// and the material under the user's field titles (the first two tell parts apart in a narrow
// pane), then the drawing's file name and the categories down to the group.
#pragma once

#include <QAbstractTableModel>

#include "vantor/search/PartSearchIndex.h"
#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/PartShortcuts.h"

namespace vantor {

class SearchHitModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { KName, Spec, EName, Material, Drawing, Place, kColumnCount };

    explicit SearchHitModel(const FieldLabels::Texts& labels, QObject* parent = nullptr);

    void setResult(PartSearchResult result);
    const PartSearchResult& result() const { return result_; }
    // The part of a row as the favourites keep it; nullopt for a row that is not there.
    std::optional<PartShortcut> partAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // A part can be dragged onto the drawing to place it there.
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    const FieldLabels::Texts& labels_;
    PartSearchResult result_;
};

// "육각볼트 M12x40": how a part is named in the short lists.
std::string partLabel(std::string_view kname, std::string_view spec);

}  // namespace vantor
