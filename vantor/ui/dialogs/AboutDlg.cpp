// The about box.
#include "vantor/ui/dialogs/AboutDlg.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"

namespace vantor {

CAboutDlg::CAboutDlg(const std::string& version, QWidget* parent)
    : QDialog(parent),
      title_(new QLabel(QStringLiteral("Vantor") + QStringLiteral(" Ver.") +
                            QString::fromStdString(version),
                        this)) {
    setWindowTitle(QString::fromUtf8("Vantor 정보"));
    QFont big = title_->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    title_->setFont(big);
    title_->setAccessibleName(title_->text());
    auto* description = new QLabel(QString::fromUtf8("CAD 도면 부품 라이브러리 관리"), this);
    description->setAccessibleName(description->text());

    auto* ok = new QPushButton(QString::fromUtf8("확    인"), this);
    ok->setObjectName(QStringLiteral("id%1").arg(cad::app::IDOK));
    ok->setAccessibleName(ok->text());
    ok->setDefault(true);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    title_->setAlignment(Qt::AlignCenter);
    description->setAlignment(Qt::AlignCenter);
    title_->setMinimumWidth(260);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 14);
    layout->setSpacing(8);
    layout->addWidget(title_);
    layout->addWidget(description);
    layout->addSpacing(10);
    layout->addWidget(buttons, 0, Qt::AlignHCenter);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void CAboutDlg::run(QWidget* parent, const std::string& version) {
    CAboutDlg dialog(version, parent);
    dialog.exec();
}

}  // namespace vantor
