// Qt dialogs behind the user-dialogs port.
#include "cad/gui/QtDialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>

#include "cad/gui/ProgressDialog.h"

namespace cad::gui {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QWidget* owner() {
    return QApplication::activeWindow();
}

}  // namespace

QtDialogs::QtDialogs() = default;
QtDialogs::~QtDialogs() = default;

QMessageBox::StandardButtons QtDialogs::buttonsFor(unsigned flags) {
    switch (flags & app::MB_BUTTON_MASK) {
        case app::MB_OKCANCEL:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case app::MB_YESNO:
            return QMessageBox::Yes | QMessageBox::No;
        case app::MB_YESNOCANCEL:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        default:
            return QMessageBox::Ok;
    }
}

QMessageBox::Icon QtDialogs::iconFor(unsigned flags) {
    switch (flags & app::MB_ICON_MASK) {
        case app::MB_ICONERROR:
            return QMessageBox::Critical;
        case app::MB_ICONQUESTION:
            return QMessageBox::Question;
        case app::MB_ICONWARNING:
            return QMessageBox::Warning;
        case app::MB_ICONINFORMATION:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

int QtDialogs::answerFor(QMessageBox::StandardButton button, unsigned flags) {
    switch (button) {
        case QMessageBox::Ok:
            return app::IDOK;
        case QMessageBox::Yes:
            return app::IDYES;
        case QMessageBox::No:
            return app::IDNO;
        case QMessageBox::Cancel:
            return app::IDCANCEL;
        default:
            break;
    }
    const unsigned buttons = flags & app::MB_BUTTON_MASK;
    if (buttons == app::MB_OK) return app::IDOK;
    return buttons == app::MB_YESNO ? app::IDNO : app::IDCANCEL;
}

int QtDialogs::messageBox(std::string_view message, std::string_view title, unsigned flags) {
    QMessageBox box(iconFor(flags), text(title), text(message), buttonsFor(flags), owner());
    box.setTextFormat(Qt::PlainText);
    box.exec();
    return answerFor(box.standardButton(box.clickedButton()), flags);
}

std::optional<std::vector<std::string>> QtDialogs::openFiles(std::string_view title,
                                                             std::string_view filter,
                                                             std::string_view folder,
                                                             bool multiple) {
    QStringList chosen;
    if (multiple) {
        chosen = QFileDialog::getOpenFileNames(owner(), text(title), text(folder), text(filter));
    } else {
        QString one =
            QFileDialog::getOpenFileName(owner(), text(title), text(folder), text(filter));
        if (!one.isEmpty()) chosen << one;
    }
    if (chosen.isEmpty()) return std::nullopt;
    std::vector<std::string> paths;
    for (const QString& path : chosen) paths.push_back(path.toStdString());
    return paths;
}

std::optional<std::string> QtDialogs::saveFile(std::string_view title, std::string_view filter,
                                               std::string_view defaultExtension,
                                               std::string_view initialPath) {
    QFileDialog dialog(owner(), text(title), text(initialPath), text(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    QString suffix = text(defaultExtension);
    if (suffix.startsWith('.')) suffix.remove(0, 1);
    dialog.setDefaultSuffix(suffix);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

std::optional<std::string> QtDialogs::chooseFolder(std::string_view title,
                                                   std::string_view initialFolder) {
    QString folder = QFileDialog::getExistingDirectory(owner(), text(title), text(initialFolder));
    if (folder.isEmpty()) return std::nullopt;
    return folder.toStdString();
}

std::optional<std::string> QtDialogs::askText(std::string_view title, std::string_view label,
                                              std::string_view initialText) {
    bool ok = false;
    QString answer = QInputDialog::getText(owner(), text(title), text(label), QLineEdit::Normal,
                                           text(initialText), &ok);
    if (!ok) return std::nullopt;
    return answer.toStdString();
}

ProgressDialog& QtDialogs::progress() {
    if (!progress_) progress_ = std::make_unique<ProgressDialog>();
    return *progress_;
}

// Long work runs on the user-interface thread, so the dialog is painted as it changes.
void QtDialogs::progressShow() {
    progress().show();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtDialogs::progressRange(int low, int high) {
    progress().setRange(low, high);
}

void QtDialogs::progressPosition(int position) {
    progress().setPosition(position);
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtDialogs::progressText(std::string_view status) {
    progress().setStatus(text(status));
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtDialogs::progressHide() {
    if (progress_) progress_->hide();
}

}  // namespace cad::gui
