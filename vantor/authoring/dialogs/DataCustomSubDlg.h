// The data dialog's second page: the six user fields under their titles.
#pragma once

#include <QWidget>
#include <vector>

#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/PartFields.h"

class QLineEdit;

namespace vantor {

struct PartRecord;

class CDataCustomSubDlg : public QWidget {
    Q_OBJECT
public:
    CDataCustomSubDlg(const FieldLabels::Texts& labels, QWidget* parent = nullptr);

    void fill(const PartRecord& record);
    void take(PartRecord& record) const;

    QLineEdit* fieldEdit(PartFields::Id field) const;

private:
    std::vector<std::pair<PartFields::Id, QLineEdit*>> fields_;
};

}  // namespace vantor
