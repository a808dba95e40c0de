// The data dialog's first page: the group and the part's catalogue fields under their titles.
#pragma once

#include <QWidget>
#include <vector>

#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/PartFields.h"

class QLineEdit;

namespace vantor {

struct PartRecord;

class CDataGenSubDlg : public QWidget {
    Q_OBJECT
public:
    CDataGenSubDlg(const FieldLabels::Texts& labels, QWidget* parent = nullptr);

    void fill(const PartRecord& record);
    void take(PartRecord& record) const;

    QLineEdit* groupEdit() const { return group_; }
    // The edit of a general field (KName ... Remark).
    QLineEdit* fieldEdit(PartFields::Id field) const;

private:
    QLineEdit* group_ = nullptr;
    std::vector<std::pair<PartFields::Id, QLineEdit*>> fields_;
};

}  // namespace vantor
