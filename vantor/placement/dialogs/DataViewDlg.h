// The "데이터 보기" dialog: the chosen part's record, every field under its title, to read
// before placing it.
#pragma once

#include <QDialog>

#include "vantor/ui/FieldLabels.h"

class QTreeWidget;

namespace vantor {

struct PartRecord;

class CDataViewDlg : public QDialog {
    Q_OBJECT
public:
    CDataViewDlg(const PartRecord& record, const FieldLabels::Texts& labels,
                 QWidget* parent = nullptr);

    static void run(QWidget* parent, const PartRecord& record, const FieldLabels::Texts& labels);

    QTreeWidget* list() const { return list_; }

private:
    QTreeWidget* list_;
};

}  // namespace vantor
