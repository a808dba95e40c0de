// The preview pane's controls.
#include "vantor/placement/dialogs/PreviewSubDlg.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <cstdlib>

#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/DialogInput.h"
#include "vantor/placement/dialogs/InsertionFlow.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

QString numberText(double value) {
    return QString::number(value, 'g', 10);
}

// The pane's font: the Korean system face the pane was laid out for, where it is installed;
// otherwise the dialog font stays.
void useDotum(QWidget& pane) {
    const QStringList families = QFontDatabase::families();
    for (const QString& family : {QString::fromUtf8("돋움"), QStringLiteral("Dotum")}) {
        if (!families.contains(family)) continue;
        QFont font = pane.font();
        font.setFamily(family);
        pane.setFont(font);
        return;
    }
}

}  // namespace

CPreviewSubDlg::CPreviewSubDlg(PlacementDialogContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      scaleEdit_(new CheckedEdit(this)),
      angleEdit_(new CheckedEdit(this)),
      pick_(new QPushButton(QStringLiteral("<"), this)) {
    useDotum(*this);
    auto* scaleLabel = new QLabel(QString::fromUtf8("스케일:"), this);
    auto* angleLabel = new QLabel(QString::fromUtf8("각   도"), this);
    scaleLabel->setBuddy(scaleEdit_);
    angleLabel->setBuddy(angleEdit_);
    scaleEdit_->setObjectName(QStringLiteral("scale"));
    angleEdit_->setObjectName(QStringLiteral("angle"));
    scaleEdit_->setAccessibleName(scaleLabel->text());
    angleEdit_->setAccessibleName(angleLabel->text());
    scaleEdit_->setMaximumWidth(80);
    angleEdit_->setMaximumWidth(80);
    pick_->setObjectName(QStringLiteral("anglePick"));
    // The twin of the dialogs' "각 도 <": the label before the edit says what it picks.
    pick_->setAccessibleName(QString::fromUtf8("각 도 <"));
    pick_->setToolTip(QString::fromUtf8("도면에서 각도 지정"));
    pick_->setFixedWidth(pick_->fontMetrics().horizontalAdvance(QStringLiteral("<")) + 16);

    const struct {
        const char* text;
        const char* name;
        int bit;
    } options[] = {
        {"분   해", "explode", DrawingOptions::kExplode},
        {"그룹화", "group", DrawingOptions::kGroup},
        {"대칭X", "mirrorX", DrawingOptions::kMirrorX},
        {"대칭Y", "mirrorY", DrawingOptions::kMirrorY},
        {"정보점", "infoPoint", DrawingOptions::kInfoPoint},
    };
    auto* checks = new QHBoxLayout;
    for (const auto& option : options) {
        auto* box = new QCheckBox(QString::fromUtf8(option.text), this);
        box->setObjectName(QString::fromLatin1(option.name));
        box->setAccessibleName(box->text());
        boxes_[option.bit] = box;
        checks->addWidget(box);
        connect(box, &QCheckBox::toggled, this,
                [this, bit = option.bit](bool on) { optionToggled(bit, on); });
    }
    checks->addStretch();

    auto* numbers = new QHBoxLayout;
    numbers->addWidget(scaleLabel);
    numbers->addWidget(scaleEdit_);
    numbers->addSpacing(12);
    numbers->addWidget(angleLabel);
    numbers->addWidget(angleEdit_);
    numbers->addWidget(pick_);
    numbers->addStretch();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addLayout(numbers);
    layout->addLayout(checks);

    connect(scaleEdit_, &CheckedEdit::left, this, &CPreviewSubDlg::scaleLeft);
    connect(angleEdit_, &CheckedEdit::left, this, &CPreviewSubDlg::angleLeft);
    connect(pick_, &QPushButton::clicked, this, [this] {
        pickAngleInDrawing(this, angleEdit_, context_);
        angleLeft();
    });
    setScale(1.0);
    refresh();
}

void CPreviewSubDlg::setScale(double scale) {
    scale_ = scale;
    scaleEdit_->setText(numberText(scale));
}

void CPreviewSubDlg::refresh() {
    const ModuleSettings& settings = context_.settings;
    for (auto& [bit, box] : boxes_) {
        QSignalBlocker quiet(box);
        box->setChecked((settings.option & bit) != 0);
    }
    angleEdit_->setText(QString::fromStdString(settings.drawAngle));
}

QCheckBox* CPreviewSubDlg::optionBox(int bit) const {
    auto found = boxes_.find(bit);
    return found == boxes_.end() ? nullptr : found->second;
}

void CPreviewSubDlg::optionToggled(int bit, bool on) {
    int& option = context_.settings.option;
    option = on ? option | bit : option & ~bit;
}

void CPreviewSubDlg::scaleLeft() {
    if (scaleAccepted(*scaleEdit_, context_.dialogs))
        scale_ = std::atof(scaleEdit_->text().toStdString().c_str());
}

void CPreviewSubDlg::angleLeft() {
    if (angleAccepted(*angleEdit_, context_.dialogs))
        context_.settings.drawAngle = angleEdit_->text().toStdString();
}

bool CPreviewSubDlg::OnInsertBlock(InsertRequest request, InsertionStates& states) {
    if (!scaleAccepted(*scaleEdit_, context_.dialogs)) return false;
    if (!angleAccepted(*angleEdit_, context_.dialogs)) return false;
    scale_ = std::atof(scaleEdit_->text().toStdString().c_str());
    context_.settings.drawAngle = angleEdit_->text().toStdString();
    request.scale = scale_;
    return vantor::OnInsertBlock(request, context_.settings, states);
}

}  // namespace vantor
