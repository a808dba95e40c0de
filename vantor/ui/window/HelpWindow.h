// The module's help pages in a window of the program, opened at the index page.
#pragma once

#include <QTextBrowser>
#include <string>

namespace vantor {

class HelpWindow : public QTextBrowser {
    Q_OBJECT
public:
    // Shows `page` (an HTML file); false, with nothing shown, when it is not there.
    static bool show(const std::string& page, QWidget* owner);

private:
    explicit HelpWindow(QWidget* owner);
};

}  // namespace vantor
