// The general page of the data dialog.
#include "vantor/authoring/dialogs/DataGenSubDlg.h"

#include <QGridLayout>

#include "vantor/authoring/dialogs/DialogControls.h"
#include "vantor/store/PartRecord.h"
#include "vantor/store/RequiredFields.h"

namespace vantor {

using namespace authoring_controls;

namespace {

// The resource's ids of the general fields' edits and titles, in field order (KName ...
// Remark); the group's come first and stand apart.
constexpr int kGroupEditId = 403;
constexpr int kGroupTitleId = 464;
constexpr int kEditIds[] = {438, 441, 448, 443, 445, 451, 454};
constexpr int kTitleIds[] = {466, 468, 470, 472, 474, 475, 477};

}  // namespace

CDataGenSubDlg::CDataGenSubDlg(const FieldLabels::Texts& labels, QWidget* parent)
    : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    grid->addWidget(title(qText(kGroupTitle) + QStringLiteral(" :"), kGroupTitleId, this), 0, 0);
    group_ = edit(qText(kGroupTitle), kGroupEditId, this);
    grid->addWidget(group_, 0, 1);
    std::size_t row = 0;
    for (const PartFields::Field& field : PartFields::all()) {
        if (field.kind != PartFields::Kind::General || field.id == PartFields::Group) continue;
        QLabel* label = title(fieldTitle(labels[field.id]), kTitleIds[row], this);
        QLineEdit* line = edit(qText(labels[field.id]), kEditIds[row], this);
        label->setBuddy(line);
        ++row;
        grid->addWidget(label, static_cast<int>(row), 0);
        grid->addWidget(line, static_cast<int>(row), 1);
        fields_.emplace_back(field.id, line);
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(static_cast<int>(row) + 1, 1);
}

QLineEdit* CDataGenSubDlg::fieldEdit(PartFields::Id field) const {
    for (const auto& [id, line] : fields_)
        if (id == field) return line;
    return nullptr;
}

void CDataGenSubDlg::fill(const PartRecord& record) {
    group_->setText(QString::fromStdString(record.group));
    for (const auto& [id, line] : fields_) line->setText(QString::fromStdString(record.text(id)));
}

void CDataGenSubDlg::take(PartRecord& record) const {
    record.group = group_->text().toStdString();
    for (const auto& [id, line] : fields_) record.text(id) = line->text().toStdString();
}

}  // namespace vantor
