// The drawing-slot page of the data dialog.
#include "vantor/authoring/dialogs/DataDrawSubDlg.h"

#include <QGridLayout>
#include <QPalette>
#include <algorithm>

#include "vantor/authoring/dialogs/DialogControls.h"

namespace vantor {

using namespace authoring_controls;

namespace {

// The resource's ids per slot, front view ... drawing 3.
constexpr int kNameIds[] = {408, 409, 411, 412, 414, 418};
constexpr int kCaptureIds[] = {437, 439, 442, 444, 446, 449};
constexpr int kBomIds[] = {476, 478, 480, 482, 484, 486};
constexpr int kClearIds[] = {452, 455, 457, 458, 460, 462};
constexpr int kTitleIds[] = {518, 519, 520, 503, 504, 505};

}  // namespace

CDataDrawSubDlg::CDataDrawSubDlg(const FieldLabels::Texts& labels, QWidget* parent)
    : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    std::size_t slot = 0;
    for (const PartFields::Field& field : PartFields::all()) {
        if (field.kind != PartFields::Kind::View) continue;
        const int row = static_cast<int>(slot);
        const QString name = qText(labels[field.id]);
        QLineEdit* line = edit(name, kNameIds[slot], this);
        line->setReadOnly(true);
        // Read-only as the name is: grey like the dialog, so nobody tries to type a block in.
        QPalette greyed = line->palette();
        greyed.setColor(QPalette::Base, greyed.color(QPalette::Window));
        line->setPalette(greyed);
        QLabel* label = title(fieldTitle(labels[field.id]), kTitleIds[slot], this);
        label->setBuddy(line);
        QPushButton* capture = button(QStringLiteral("..."), kCaptureIds[slot], this);
        QPushButton* bom = button(QStringLiteral("BOM<"), kBomIds[slot], this);
        QPushButton* clear = button(QStringLiteral("X"), kClearIds[slot], this);
        // Six of each: the description tells a listener which slot a button belongs to.
        for (QPushButton* each : {capture, bom, clear}) {
            each->setAccessibleDescription(name);
            // As wide as their texts: the block names get the room.
            each->setFixedWidth(std::max(each->fontMetrics().horizontalAdvance(each->text()) + 16, 28));
        }
        connect(capture, &QPushButton::clicked, this, [this, slot] { emit captureRequested(slot); });
        connect(bom, &QPushButton::clicked, this, [this, slot] { emit bomPointRequested(slot); });
        connect(clear, &QPushButton::clicked, this, [this, slot] { emit clearRequested(slot); });
        grid->addWidget(label, row, 0);
        grid->addWidget(line, row, 1);
        grid->addWidget(capture, row, 2);
        grid->addWidget(bom, row, 3);
        grid->addWidget(clear, row, 4);
        names_[slot++] = line;
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(static_cast<int>(slot), 1);
}

void CDataDrawSubDlg::fill(const PartRecord& record) {
    for (std::size_t slot = 0; slot < kSlotCount; ++slot)
        names_[slot]->setText(QString::fromStdString(record.viewBlocks[slot]));
}

}  // namespace vantor
