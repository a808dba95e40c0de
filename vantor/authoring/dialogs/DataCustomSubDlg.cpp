// The user-field page of the data dialog.
#include "vantor/authoring/dialogs/DataCustomSubDlg.h"

#include <QGridLayout>

#include "vantor/authoring/dialogs/DialogControls.h"
#include "vantor/store/PartRecord.h"

namespace vantor {

using namespace authoring_controls;

namespace {

constexpr int kEditIds[] = {463, 465, 467, 469, 471, 473};  // User1 ... User6
constexpr int kTitleIds[] = {479, 481, 483, 485, 488, 490};

}  // namespace

CDataCustomSubDlg::CDataCustomSubDlg(const FieldLabels::Texts& labels, QWidget* parent)
    : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    int row = 0;
    for (const PartFields::Field& field : PartFields::all()) {
        if (field.kind != PartFields::Kind::User) continue;
        QLabel* label = title(fieldTitle(labels[field.id]), kTitleIds[row], this);
        QLineEdit* line = edit(qText(labels[field.id]), kEditIds[row], this);
        label->setBuddy(line);
        grid->addWidget(label, row, 0);
        grid->addWidget(line, row, 1);
        fields_.emplace_back(field.id, line);
        ++row;
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(row, 1);
}

QLineEdit* CDataCustomSubDlg::fieldEdit(PartFields::Id field) const {
    for (const auto& [id, line] : fields_)
        if (id == field) return line;
    return nullptr;
}

void CDataCustomSubDlg::fill(const PartRecord& record) {
    for (const auto& [id, line] : fields_) line->setText(QString::fromStdString(record.text(id)));
}

void CDataCustomSubDlg::take(PartRecord& record) const {
    for (const auto& [id, line] : fields_) record.text(id) = line->text().toStdString();
}

}  // namespace vantor
