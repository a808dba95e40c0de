// The field-title dialog.
#include "vantor/ui/dialogs/LabelEditDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

constexpr int kFirstEditId = 272;
constexpr int kResetId = 271;

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QPushButton* button(const char* text, int id, QWidget* parent) {
    auto* made = new QPushButton(QString::fromUtf8(text), parent);
    made->setObjectName(QStringLiteral("id%1").arg(id));
    made->setAccessibleName(made->text());
    return made;
}

}  // namespace

CLabelEditDlg::CLabelEditDlg(ModuleSettings& settings, cad::app::UserDialogs& dialogs,
                             QWidget* parent)
    : QDialog(parent), settings_(settings), dialogs_(dialogs) {
    setWindowTitle(QString::fromUtf8("Vantor 속성 타이틀 설정"));

    // Part information (the general fields), additional information (the user fields), part
    // drawings (the view slots): the same split as the data entry pages.
    const struct {
        const char* title;
        std::size_t first;
        std::size_t end;
    } groups[] = {
        {"부품정보 타이틀", FieldLabels::KName, FieldLabels::User1},
        {"추가정보 타이틀", FieldLabels::User1, FieldLabels::FrontView},
        {"부품도면 타이틀", FieldLabels::FrontView, FieldLabels::kCount},
    };
    auto* columns = new QHBoxLayout;
    for (const auto& group : groups) {
        auto* box = new QGroupBox(QString::fromUtf8(group.title), this);
        box->setAccessibleName(box->title());
        auto* form = new QFormLayout(box);
        form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        for (std::size_t i = group.first; i < group.end; ++i) {
            auto* edit = new QLineEdit(box);
            edit->setObjectName(QStringLiteral("id%1").arg(kFirstEditId + static_cast<int>(i)));
            // The default title names the field, whatever the user has renamed it to.
            const QString name = fromUtf8(FieldLabels::defaultLabel(i));
            edit->setAccessibleName(name);
            edit->setMinimumWidth(110);
            auto* label = new QLabel(name, box);
            label->setBuddy(edit);
            form->addRow(label, edit);
            edits_[i] = edit;
        }
        columns->addWidget(box, 0, Qt::AlignTop);
    }

    QPushButton* ok = button("확    인", cad::app::IDOK, this);
    QPushButton* cancel = button("취    소", cad::app::IDCANCEL, this);
    QPushButton* resetButton = button("초기화", kResetId, this);
    ok->setDefault(true);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    buttons->addButton(resetButton, QDialogButtonBox::ResetRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CLabelEditDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CLabelEditDlg::reject);
    connect(resetButton, &QPushButton::clicked, this, &CLabelEditDlg::reset);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    fill();
}

bool CLabelEditDlg::run(QWidget* parent, ModuleSettings& settings,
                        cad::app::UserDialogs& dialogs) {
    CLabelEditDlg dialog(settings, dialogs, parent);
    return dialog.exec() == QDialog::Accepted;
}

FieldLabels::Texts CLabelEditDlg::texts() const {
    FieldLabels::Texts texts;
    for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = edits_[i]->text().toStdString();
    return texts;
}

void CLabelEditDlg::accept() {
    // The warning does not keep the dialog open: the blank title is stored as entered, and its
    // edit is left selected and focused for whoever opens the dialog after the message.
    const int blank = FieldLabels::applyLabels(settings_, texts(), dialogs_);
    if (blank >= 0) {
        QLineEdit* edit = edits_[static_cast<std::size_t>(blank)];
        edit->selectAll();
        edit->setFocus();
    }
    QDialog::accept();
}

void CLabelEditDlg::fill() {
    for (std::size_t i = 0; i < edits_.size(); ++i)
        edits_[i]->setText(QString::fromStdString(settings_.labels[i]));
}

void CLabelEditDlg::reset() {
    FieldLabels::resetLabels(settings_);
    fill();
}

}  // namespace vantor
