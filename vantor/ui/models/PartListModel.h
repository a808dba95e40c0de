// The part records of one group as a table: the 13 record columns (Korean name to User6) under
// the user's field titles, one row per record in the group's order.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "vantor/store/PartRecord.h"
#include "vantor/ui/FieldLabels.h"

namespace vantor {

class PartListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int kColumnCount = static_cast<int>(PartFields::User6) + 1;

    explicit PartListModel(const FieldLabels::Texts& labels, QObject* parent = nullptr);

    // The records shown, with the drawing they come from.
    void setRecords(std::string drawingPath, std::vector<PartRecord> records);
    void clear() { setRecords({}, {}); }
    // The titles changed (the title dialog): the header is read again.
    void labelsChanged();

    const std::string& drawingPath() const { return drawingPath_; }
    const PartRecord* recordAt(int row) const;
    const std::vector<PartRecord>& records() const { return records_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // A record can be dragged onto the drawing to place it there.
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    const FieldLabels::Texts& labels_;
    std::string drawingPath_;
    std::vector<PartRecord> records_;
};

}  // namespace vantor
