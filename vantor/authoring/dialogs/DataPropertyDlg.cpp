// The part data dialog.
#include "vantor/authoring/dialogs/DataPropertyDlg.h"

#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "vantor/authoring/BlockCapture.h"
#include "vantor/authoring/dialogs/DataCustomSubDlg.h"
#include "vantor/authoring/dialogs/DataDrawSubDlg.h"
#include "vantor/authoring/dialogs/DataGenSubDlg.h"
#include "vantor/authoring/dialogs/DialogControls.h"
#include "vantor/store/RequiredFields.h"

namespace vantor {

using namespace authoring_controls;

namespace {

constexpr int kTabId = 436;
constexpr int kAddId = 1001;

}  // namespace

CDataPropertyDlg::CDataPropertyDlg(PartDataEntry entry, const FieldLabels::Texts& labels,
                                   cad::app::UserDialogs& dialogs, QWidget* parent)
    : QDialog(parent), entry_(std::move(entry)), labels_(labels), dialogs_(dialogs) {
    setWindowTitle(qText(PartDataEntry::title(entry_.mode)));

    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("id%1").arg(kTabId));
    // Room for a long specification or block name without scrolling inside the edit.
    tabs_->setMinimumWidth(420);
    general_ = new CDataGenSubDlg(labels_, tabs_);
    user_ = new CDataCustomSubDlg(labels_, tabs_);
    drawing_ = new CDataDrawSubDlg(labels_, tabs_);
    tabs_->addTab(general_, QString::fromUtf8("부품 정보"));
    tabs_->addTab(user_, QString::fromUtf8("추가 정보"));
    tabs_->addTab(drawing_, QString::fromUtf8("도면 정보"));
    tabs_->setAccessibleName(tabs_->tabText(0));
    connect(tabs_, &QTabWidget::currentChanged, this,
            [this](int index) { tabs_->setAccessibleName(tabs_->tabText(index)); });

    QPushButton* add = button(QString::fromUtf8("추   가"), kAddId, this);
    QPushButton* modify = button(QString::fromUtf8("수    정"), cad::app::IDOK, this);
    QPushButton* cancel = button(QString::fromUtf8("취    소"), cad::app::IDCANCEL, this);
    // A new part has nothing stored to change; a stored one may still be added as a copy.
    modify->setEnabled(entry_.mode == PartDataEntry::Mode::Modify);
    (entry_.mode == PartDataEntry::Mode::Add ? add : modify)->setDefault(true);
    connect(add, &QPushButton::clicked, this, [this] { storeRecord(StoreAction::Add); });
    connect(modify, &QPushButton::clicked, this, [this] { storeRecord(StoreAction::Modify); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    connect(drawing_, &CDataDrawSubDlg::captureRequested, this, &CDataPropertyDlg::captureSlot);
    connect(drawing_, &CDataDrawSubDlg::bomPointRequested, this, &CDataPropertyDlg::pickBomPoint);
    connect(drawing_, &CDataDrawSubDlg::clearRequested, this, &CDataPropertyDlg::clearSlot);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(add);
    buttons->addWidget(modify);
    buttons->addWidget(cancel);
    notice_ = new QLabel(this);
    notice_->setObjectName(QStringLiteral("readOnlyNotice"));
    notice_->setWordWrap(true);
    notice_->hide();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(notice_);
    layout->addWidget(tabs_);
    layout->addLayout(buttons);
    fillPages();
}

void CDataPropertyDlg::setReadOnly(const QString& notice) {
    readOnly_ = true;
    setWindowTitle(windowTitle() + QString::fromUtf8(" (읽기 전용)"));
    notice_->setText(notice);
    notice_->setAccessibleName(notice);
    notice_->show();
    for (QLineEdit* line : tabs_->findChildren<QLineEdit*>()) line->setReadOnly(true);
    // Every button but Cancel stores or changes the part: the slots' buttons and Add, Modify.
    for (QPushButton* push : findChildren<QPushButton*>()) {
        if (push->objectName() != QStringLiteral("id%1").arg(cad::app::IDCANCEL))
            push->setEnabled(false);
    }
}

int CDataPropertyDlg::runModal() {
    setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    connect(this, &QDialog::finished, &loop, &QEventLoop::quit);
    show();
    loop.exec(QEventLoop::DialogExec);
    return result();
}

PartDataEntry CDataPropertyDlg::entry() const {
    PartDataEntry current = entry_;
    general_->take(current.record);
    user_->take(current.record);
    return current;
}

CallerWindow CDataPropertyDlg::callerWindow() {
    QWidget* owner = parentWidget() ? parentWidget()->window() : nullptr;
    return CallerWindow{[this, owner] {
                            hide();
                            if (owner) owner->hide();
                            activateHostWindow();
                        },
                        [this, owner] {
                            if (owner) owner->show();
                            show();
                            raise();
                            activateWindow();
                        }};
}

void CDataPropertyDlg::takePages() {
    general_->take(entry_.record);
    user_->take(entry_.record);
}

void CDataPropertyDlg::fillPages() {
    general_->fill(entry_.record);
    user_->fill(entry_.record);
    drawing_->fill(entry_.record);
}

void CDataPropertyDlg::storeRecord(StoreAction action) {
    if (readOnly_) return;
    takePages();
    if (const auto missing = entry_.missingField(labels_)) {
        // Both required fields are on the first page, which may not be the one showing.
        tabs_->setCurrentIndex(0);
        dialogs_.messageBox(missing->message, kRequiredFieldTitle,
                            cad::app::MB_OK | cad::app::MB_ICONERROR);
        QLineEdit* line = missing->field == MissingField::Field::Group
                              ? general_->groupEdit()
                              : general_->fieldEdit(PartFields::KName);
        line->selectAll();
        line->setFocus();
        return;
    }
    if (!store_ || store_(action, entry_.record)) accept();
}

void CDataPropertyDlg::captureSlot(std::size_t slot) {
    if (!capture_) return;
    takePages();  // hiding and showing must not lose what was typed
    if (auto block = capture_->capture(library_, false, callerWindow())) {
        entry_.takeBlock(slot, *block);
        drawing_->fill(entry_.record);
    }
}

void CDataPropertyDlg::pickBomPoint(std::size_t slot) {
    const std::string& name = entry_.record.viewBlocks.at(slot);
    if (!capture_ || !library_ || name.empty()) return;
    if (auto offset = capture_->pickBomPoint(*library_, name, callerWindow()))
        entry_.record.viewPoints[slot] = *offset;
}

void CDataPropertyDlg::clearSlot(std::size_t slot) {
    entry_.clearSlot(slot);
    drawing_->fill(entry_.record);
}

}  // namespace vantor
