// The part synchronisation list, filled from the plain list VNKSYNC made.
#include "vantor/placement/dialogs/PartSyncDlg.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace vantor {

namespace {

QString text(const std::string& utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

CPartSyncDlg::CPartSyncDlg(const PartSyncList& list, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QString::fromUtf8("부품 동기화"));
    setAccessibleName(windowTitle());

    summary_ = new QLabel(QString::fromUtf8("라이브러리와 다른 부품: 변경 %1개, 없어짐 %2개 "
                                            "(연결된 부품 %3개)")
                              .arg(list.changed)
                              .arg(list.gone)
                              .arg(list.linked),
                          this);
    summary_->setAccessibleName(QString::fromUtf8("요약"));

    table_ = new QTableWidget(static_cast<int>(list.rows.size()), kColumnCount, this);
    table_->setAccessibleName(QString::fromUtf8("바뀐 부품 목록"));
    table_->setHorizontalHeaderLabels({QString::fromUtf8("핸들"), QString::fromUtf8("품명"),
                                       QString::fromUtf8("블록"), QString::fromUtf8("도면 / 그룹"),
                                       QString::fromUtf8("상태"),
                                       QString::fromUtf8("바뀐 항목 (도면 → 라이브러리)")});
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    for (int r = 0; r < table_->rowCount(); ++r) {
        const PartSyncRow& row = list.rows[static_cast<std::size_t>(r)];
        const QString cells[kColumnCount] = {
            text(row.handle), text(row.name),
            text(row.block),  text(row.drawing + " / " + row.group),
            text(row.state),  text(row.changes)};
        for (int c = 0; c < kColumnCount; ++c) {
            auto* item = new QTableWidgetItem(cells[c]);
            item->setToolTip(cells[c]);
            table_->setItem(r, c, item);
        }
    }
    table_->resizeColumnsToContents();

    auto* note = new QLabel(QString::fromUtf8("레코드가 없어진 부품은 그대로 둡니다."), this);
    note->setAccessibleName(QString::fromUtf8("안내"));

    update_ = new QPushButton(QString::fromUtf8("갱신(&U)"), this);
    update_->setAccessibleName(QString::fromUtf8("BOM 속성 갱신"));
    update_->setEnabled(list.changed > 0);
    update_->setDefault(list.changed > 0);
    close_ = new QPushButton(QString::fromUtf8("닫기"), this);
    close_->setAccessibleName(QString::fromUtf8("닫기"));
    connect(update_, &QPushButton::clicked, this, &QDialog::accept);
    connect(close_, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(note, 1);
    buttons->addWidget(update_);
    buttons->addWidget(close_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary_);
    layout->addWidget(table_, 1);
    layout->addLayout(buttons);
    resize(760, 320);
}

bool CPartSyncDlg::run(QWidget* parent, const PartSyncList& list) {
    CPartSyncDlg dialog(list, parent != nullptr ? parent : QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted && list.changed > 0;
}

}  // namespace vantor
