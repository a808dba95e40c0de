// The drawing-options dialog.
#include "vantor/placement/dialogs/DrawOptionDlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <map>

#include "cad/app/UserDialogs.h"
#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/DialogInput.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"

namespace vantor {

namespace {

// The check boxes by id, with the option bit each stands for.
struct OptionBox {
    int id;
    const char* text;
    int bit;
};
constexpr OptionBox kBoxes[] = {
    {256, "분해하기", DrawingOptions::kExplode},
    {257, "그룹화", DrawingOptions::kGroup},
    {260, "대칭 X", DrawingOptions::kMirrorX},
    {261, "대칭 Y", DrawingOptions::kMirrorY},
    {262, "정보점", DrawingOptions::kInfoPoint},
    {263, "좌표 표시", DrawingOptions::kShowCoordinates},
    {264, "사양 표시", DrawingOptions::kShowSpecification},
    {428, "각도 고정", DrawingOptions::kFixedAngle},
};

QString idName(int id) {
    return QStringLiteral("id%1").arg(id);
}

}  // namespace

CDrawOptionDlg::CDrawOptionDlg(const DrawOptionValues& initial, PlacementDialogContext& context,
                               QWidget* parent)
    : QDialog(parent), context_(context), initialOption_(initial.option), angle_(new CheckedEdit(this)) {
    setWindowTitle(QString::fromUtf8("작도 옵션"));

    std::map<int, QCheckBox*> boxes;
    for (const OptionBox& made : kBoxes) {
        auto* box = new QCheckBox(QString::fromUtf8(made.text), this);
        box->setObjectName(idName(made.id));
        box->setAccessibleName(box->text());
        box->setChecked((initial.option & made.bit) != 0);
        boxes[made.id] = box;
    }

    // What the part becomes, and what the drag tells about it while it moves.
    auto* shape = new QGroupBox(QString::fromUtf8("작도"), this);
    auto* shapeGrid = new QGridLayout(shape);
    shapeGrid->addWidget(boxes[256], 0, 0);
    shapeGrid->addWidget(boxes[257], 0, 1);
    shapeGrid->addWidget(boxes[260], 1, 0);
    shapeGrid->addWidget(boxes[261], 1, 1);
    shapeGrid->addWidget(boxes[262], 2, 0);
    auto* shown = new QGroupBox(QString::fromUtf8("표시"), this);
    auto* shownColumn = new QVBoxLayout(shown);
    shownColumn->addWidget(boxes[263]);
    shownColumn->addWidget(boxes[264]);
    shownColumn->addStretch();
    shape->setAccessibleName(shape->title());
    shown->setAccessibleName(shown->title());

    auto* pick = new QPushButton(QString::fromUtf8("각도 <"), this);
    pick->setObjectName(idName(430));
    pick->setAccessibleName(pick->text());
    pick->setAutoDefault(false);
    angle_->setObjectName(idName(432));
    angle_->setAccessibleName(QString::fromUtf8("각도"));
    angle_->setText(QString::fromStdString(initial.angle));
    angle_->setMaximumWidth(90);
    auto* angleRow = new QHBoxLayout;
    angleRow->addWidget(boxes[428]);
    angleRow->addStretch();
    angleRow->addWidget(pick);
    angleRow->addWidget(angle_);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    ok->setObjectName(idName(cad::app::IDOK));
    cancel->setObjectName(idName(cad::app::IDCANCEL));
    ok->setAccessibleName(ok->text());
    cancel->setAccessibleName(cancel->text());
    ok->setDefault(true);
    // Cancel takes no focus, so leaving a wrong angle to cancel does not complain first.
    cancel->setFocusPolicy(Qt::NoFocus);
    connect(buttons, &QDialogButtonBox::accepted, this, &CDrawOptionDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CDrawOptionDlg::reject);
    connect(pick, &QPushButton::clicked, this,
            [this] { pickAngleInDrawing(this, angle_, context_); });
    connect(angle_, &CheckedEdit::left, this, [this] { angleAccepted(*angle_, context_.dialogs); });

    auto* groups = new QHBoxLayout;
    groups->addWidget(shape, 3);
    groups->addWidget(shown, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(groups);
    layout->addLayout(angleRow);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

std::optional<DrawOptionValues> CDrawOptionDlg::run(QWidget* parent,
                                                    const DrawOptionValues& initial,
                                                    PlacementDialogContext& context) {
    CDrawOptionDlg dialog(initial, context, parent);
    if (runHideable(dialog) != QDialog::Accepted) return std::nullopt;
    return dialog.values();
}

DrawOptionValues CDrawOptionDlg::values() const {
    DrawOptionValues values{initialOption_, angle_->text().toStdString()};
    for (const OptionBox& box : kBoxes) {
        values.option &= ~box.bit;
        if (findChild<QCheckBox*>(idName(box.id))->isChecked()) values.option |= box.bit;
    }
    return values;
}

void CDrawOptionDlg::accept() {
    if (!angleAccepted(*angle_, context_.dialogs)) return;
    QDialog::accept();
}

}  // namespace vantor
