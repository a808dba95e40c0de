// The CSV export's settings dialog.
#include "vantor/ui/dialogs/SaveTextDlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"

namespace vantor {

namespace {

QPushButton* button(const char* text, QWidget* parent) {
    auto* made = new QPushButton(QString::fromUtf8(text), parent);
    made->setAccessibleName(made->text());
    return made;
}

}  // namespace

CSaveTextDlg::CSaveTextDlg(const Choice& initial, cad::app::UserDialogs& dialogs, QWidget* parent)
    : QDialog(parent),
      dialogs_(dialogs),
      initialDelimiter_(initial.delimiter),
      delimiter_(new QComboBox(this)),
      path_(new QLineEdit(this)),
      browse_(button("찾아보기...", this)) {
    setWindowTitle(QString::fromUtf8("데이터 저장 위치 선택창"));

    // The index of an entry is the Delimiter setting it stands for.
    delimiter_->addItems({QStringLiteral("COMMA( , )"), QStringLiteral("LINE( | )"),
                          QStringLiteral("TAB")});
    delimiter_->setCurrentIndex(initial.delimiter >= 0 && initial.delimiter < delimiter_->count()
                                    ? initial.delimiter
                                    : -1);
    path_->setText(QString::fromStdString(initial.savePath));
    path_->setMinimumWidth(320);

    auto* delimiterLabel = new QLabel(QString::fromUtf8("구분 문자"), this);
    auto* pathLabel = new QLabel(QString::fromUtf8("저장 위치"), this);
    delimiterLabel->setBuddy(delimiter_);
    pathLabel->setBuddy(path_);
    delimiter_->setAccessibleName(delimiterLabel->text());
    path_->setAccessibleName(pathLabel->text());
    connect(browse_, &QPushButton::clicked, this, &CSaveTextDlg::browse);

    auto* grid = new QGridLayout;
    grid->addWidget(delimiterLabel, 0, 0);
    grid->addWidget(delimiter_, 0, 1, Qt::AlignLeft);
    grid->addWidget(pathLabel, 1, 0);
    grid->addWidget(path_, 1, 1);
    grid->addWidget(browse_, 1, 2);
    grid->setColumnStretch(1, 1);

    QPushButton* ok = button("확    인", this);
    QPushButton* cancel = button("취    소", this);
    ok->setObjectName(QStringLiteral("id%1").arg(cad::app::IDOK));
    cancel->setObjectName(QStringLiteral("id%1").arg(cad::app::IDCANCEL));
    ok->setDefault(true);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);
}

std::optional<CSaveTextDlg::Choice> CSaveTextDlg::run(QWidget* parent, const Choice& initial,
                                                      cad::app::UserDialogs& dialogs) {
    CSaveTextDlg dialog(initial, dialogs, parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return dialog.choice();
}

CSaveTextDlg::Choice CSaveTextDlg::choice() const {
    const int index = delimiter_->currentIndex();
    return {index >= 0 ? index : initialDelimiter_, path_->text().toStdString()};
}

void CSaveTextDlg::browse() {
    // The port takes the extension with its dot, as every caller passes it.
    std::optional<std::string> chosen = dialogs_.saveFile(
        "다른 이름으로 저장", "Flat file (*.csv)", ".csv", path_->text().toStdString());
    if (chosen) path_->setText(QString::fromStdString(*chosen));
}

}  // namespace vantor
