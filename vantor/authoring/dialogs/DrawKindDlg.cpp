// The drawing-kind dialog.
#include "vantor/authoring/dialogs/DrawKindDlg.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "vantor/authoring/dialogs/DialogControls.h"

namespace vantor {

using namespace authoring_controls;

namespace {

// The slots' fixed names here, unlike the pages' titles, which the user may rename.
constexpr const char* kSlotTexts[] = {"정면도", "측면도", "평면도", "도면 1", "도면 2", "도면 3"};
constexpr int kSlotIds[] = {427, 429, 431, 433, 434, 435};

}  // namespace

CDrawKindDlg::CDrawKindDlg(std::size_t slot, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QString::fromUtf8("도면 형태 지정"));
    auto* box = new QGroupBox(QString::fromUtf8("블록 정보"), this);
    box->setAccessibleName(box->title());
    auto* grid = new QGridLayout(box);
    auto* group = new QButtonGroup(this);
    for (std::size_t i = 0; i < kSlotCount; ++i) {
        auto* radio = new QRadioButton(QString::fromUtf8(kSlotTexts[i]), box);
        radio->setObjectName(QStringLiteral("id%1").arg(kSlotIds[i]));
        radio->setAccessibleName(radio->text());
        group->addButton(radio, static_cast<int>(i));
        // Views in the first row, drawings in the second.
        grid->addWidget(radio, static_cast<int>(i / 3), static_cast<int>(i % 3));
        buttons_[i] = radio;
    }
    buttons_.at(slot < kSlotCount ? slot : 0)->setChecked(true);

    QPushButton* enter = button(QString::fromUtf8("입   력"), cad::app::IDOK, this);
    QPushButton* cancel = button(QString::fromUtf8("취   소"), cad::app::IDCANCEL, this);
    enter->setDefault(true);
    connect(enter, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(enter);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(box);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

std::size_t CDrawKindDlg::slot() const {
    for (std::size_t i = 0; i < kSlotCount; ++i)
        if (buttons_[i]->isChecked()) return i;
    return 0;
}

std::optional<std::size_t> CDrawKindDlg::choose(QWidget* parent, std::size_t slot) {
    CDrawKindDlg dialog(slot, parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.slot();
}

}  // namespace vantor
