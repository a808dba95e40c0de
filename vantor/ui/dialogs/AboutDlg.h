// The about box of the library window: the product and its version.
#pragma once

#include <QDialog>
#include <string>

class QLabel;

namespace vantor {

class CAboutDlg : public QDialog {
    Q_OBJECT
public:
    // `version` is the module's version text ("0.1.0.0").
    explicit CAboutDlg(const std::string& version, QWidget* parent = nullptr);

    static void run(QWidget* parent, const std::string& version);

    QLabel* titleLabel() const { return title_; }

private:
    QLabel* title_;
};

}  // namespace vantor
