// The part data dialog.
#include "vantor/placement/dialogs/DataViewDlg.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "vantor/store/PartRecord.h"

namespace vantor {

CDataViewDlg::CDataViewDlg(const PartRecord& record, const FieldLabels::Texts& labels,
                           QWidget* parent)
    : QDialog(parent), list_(new QTreeWidget(this)) {
    setWindowTitle(QString::fromUtf8("데이터 보기"));
    list_->setObjectName(QStringLiteral("dataList"));
    list_->setAccessibleName(windowTitle());
    list_->setColumnCount(2);
    list_->setHeaderLabels({QString::fromUtf8("항  목"), QString::fromUtf8("내  용")});
    list_->setRootIsDecorated(false);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setAlternatingRowColors(true);

    // The group first, under the fixed title the data entry dialog gives it; then the fields
    // in display order, views last, each under the title the user gave it.
    auto add = [this](const QString& title, const std::string& value) {
        new QTreeWidgetItem(list_, {title, QString::fromStdString(value)});
    };
    add(QString::fromUtf8("그  룹"), record.group);
    for (std::size_t id = 0; id < FieldLabels::kCount; ++id)
        add(QString::fromStdString(labels[id]), record.text(static_cast<PartFields::Id>(id)));
    list_->resizeColumnToContents(0);
    list_->header()->setStretchLastSection(true);
    // Every row in sight without scrolling: twenty fields.
    const int rows = list_->topLevelItemCount();
    list_->setMinimumSize(340, list_->header()->sizeHint().height() +
                                   rows * list_->sizeHintForRow(0) + 2 * list_->frameWidth() + 4);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QString::fromUtf8("확  인"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("id%1").arg(cad::app::IDOK));
    ok->setAccessibleName(ok->text());
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addWidget(buttons);
}

void CDataViewDlg::run(QWidget* parent, const PartRecord& record, const FieldLabels::Texts& labels) {
    CDataViewDlg dialog(record, labels, parent);
    dialog.exec();
}

}  // namespace vantor
