// The help window.
#include "vantor/ui/window/HelpWindow.h"

#include <QFileInfo>
#include <QPointer>
#include <QUrl>

namespace vantor {

HelpWindow::HelpWindow(QWidget* owner) : QTextBrowser(owner) {
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Vantor 도움말"));
    setAccessibleName(QStringLiteral("도움말"));
    setOpenExternalLinks(true);
    resize(720, 560);
}

bool HelpWindow::show(const std::string& page, QWidget* owner) {
    const QString file = QString::fromStdString(page);
    if (page.empty() || !QFileInfo(file).isFile()) return false;
    // One help window per owner: asking again brings it back to the index.
    static QPointer<HelpWindow> window;
    if (window == nullptr || window->parentWidget() != owner) window = new HelpWindow(owner);
    window->setSource(QUrl::fromLocalFile(file));
    window->QWidget::show();
    window->raise();
    window->activateWindow();
    return true;
}

}  // namespace vantor
