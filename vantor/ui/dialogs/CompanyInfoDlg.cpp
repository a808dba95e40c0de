// The company information dialog.
#include "vantor/ui/dialogs/CompanyInfoDlg.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"

namespace vantor {

namespace {

// The texts were kept in fields of 256 bytes with their terminating zero.
constexpr int kMaxTextLength = 255;

QPushButton* button(const char* text, QWidget* parent) {
    auto* made = new QPushButton(QString::fromUtf8(text), parent);
    made->setAccessibleName(made->text());
    return made;
}

}  // namespace

CompanyInfoDlg::CompanyInfoDlg(const SupplierInfo& info, bool hasRecord,
                               cad::app::UserDialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      dialogs_(dialogs),
      filled_(info),
      remark_(new QPlainTextEdit(this)),
      logoPath_(new QLineEdit(this)),
      browse_(button("찾아보기...", this)),
      confirmButton_(button(hasRecord ? "업데이트" : "입   력", this)) {
    setWindowTitle(QString::fromUtf8("회사 정보"));

    // In the order the record keeps the texts.
    static const char* const kTitles[SupplierInfo::kTextCount] = {
        "회 사 명", "주    소", "전화번호", "팩스번호", "홈페이지", "문의 메일", "비    고",
    };
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto addRow = [&](const char* title, QWidget* field, QWidget* editor) {
        auto* label = new QLabel(QString::fromUtf8(title), this);
        label->setBuddy(editor);
        editor->setAccessibleName(label->text());
        form->addRow(label, field);
    };
    for (std::size_t i = 0; i < SupplierInfo::kTextCount; ++i) {
        const QString text = QString::fromStdString(info.texts[i]);
        if (i == SupplierInfo::Remark) {
            remark_->setPlainText(text);
            remark_->setTabChangesFocus(true);
            remark_->setFixedHeight(remark_->fontMetrics().lineSpacing() * 4 + 12);
            addRow(kTitles[i], remark_, remark_);
            continue;
        }
        auto* edit = new QLineEdit(text, this);
        edit->setMaxLength(kMaxTextLength);
        edit->setMinimumWidth(300);
        lines_[i] = edit;
        addRow(kTitles[i], edit, edit);
    }

    logoPath_->setText(QString::fromStdString(info.logoPath));
    auto* logoRow = new QWidget(this);
    auto* logoLayout = new QHBoxLayout(logoRow);
    logoLayout->setContentsMargins(0, 0, 0, 0);
    logoLayout->addWidget(logoPath_, 1);
    logoLayout->addWidget(browse_);
    addRow("로고 파일", logoRow, logoPath_);
    connect(browse_, &QPushButton::clicked, this, &CompanyInfoDlg::browse);

    auto* hint = new QLabel(
        QString::fromUtf8("반드시 150 X 40 픽셀 사이즈의 BMP 이미지를 등록하여 주십시오."), this);
    hint->setAccessibleName(hint->text());
    form->addRow(QString(), hint);

    QPushButton* cancel = button("취    소", this);
    confirmButton_->setObjectName(QStringLiteral("id%1").arg(cad::app::IDOK));
    cancel->setObjectName(QStringLiteral("id%1").arg(cad::app::IDCANCEL));
    confirmButton_->setDefault(true);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(confirmButton_, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CompanyInfoDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    // The tab key follows the record's order, whatever order the edits were made in.
    QWidget* previous = lines_[SupplierInfo::CompanyName];
    for (QWidget* next : {static_cast<QWidget*>(lines_[SupplierInfo::Address]),
                          static_cast<QWidget*>(lines_[SupplierInfo::Phone]),
                          static_cast<QWidget*>(lines_[SupplierInfo::Fax]),
                          static_cast<QWidget*>(lines_[SupplierInfo::Internet]),
                          static_cast<QWidget*>(lines_[SupplierInfo::Mail]),
                          static_cast<QWidget*>(remark_), static_cast<QWidget*>(logoPath_),
                          static_cast<QWidget*>(browse_), static_cast<QWidget*>(confirmButton_),
                          static_cast<QWidget*>(cancel)}) {
        setTabOrder(previous, next);
        previous = next;
    }
}

SupplierInfo CompanyInfoDlg::info() const {
    SupplierInfo entered = filled_;
    for (std::size_t i = 0; i < SupplierInfo::kTextCount; ++i)
        entered.texts[i] = (i == SupplierInfo::Remark ? remark_->toPlainText() : lines_[i]->text())
                               .toStdString();
    entered.logoPath = logoPath_->text().toStdString();
    return entered;
}

void CompanyInfoDlg::accept() {
    if (confirm_ && !confirm_(info())) return;
    QDialog::accept();
}

void CompanyInfoDlg::browse() {
    // Start in the folder of the logo named so far.
    const QString current = logoPath_->text();
    const std::string folder =
        current.isEmpty() ? std::string() : QFileInfo(current).absolutePath().toStdString();
    auto chosen = dialogs_.openFiles("로고 파일 선택", "BMP 이미지 (*.bmp)", folder, false);
    if (chosen && !chosen->empty()) logoPath_->setText(QString::fromStdString(chosen->front()));
}

}  // namespace vantor
