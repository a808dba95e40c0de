// VNKSYNC's list where windows are shown ("부품 동기화"): the placed parts whose record changed
// or is gone, in a table, with a button that updates the changed ones and one that closes.
#pragma once

#include <QDialog>

#include "vantor/placement/PartSync.h"

class QLabel;
class QPushButton;
class QTableWidget;

namespace vantor {

class CPartSyncDlg : public QDialog {
    Q_OBJECT
public:
    explicit CPartSyncDlg(const PartSyncList& list, QWidget* parent = nullptr);

    // Modal; true when the user chose to update.
    static bool run(QWidget* parent, const PartSyncList& list);

    static constexpr int kColumnCount = 6;

private:
    QLabel* summary_;
    QTableWidget* table_;
    QPushButton* update_;
    QPushButton* close_;
};

}  // namespace vantor
