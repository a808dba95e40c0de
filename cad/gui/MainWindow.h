// The host's main window: the menu bar (File, then the pull-downs of the loaded menu groups),
// a tab per open document, the drawing area and the command line. It follows the document
// manager and the editor to stay current; what the user chooses is typed to the command line,
// so menus, typed commands and scripts take one path.
#pragma once

#include <QMainWindow>
#include <functional>
#include <string>
#include <vector>

#include "cad/app/DocumentManagerReactor.h"
#include "cad/ed/EditorReactor.h"

class QMenu;
class QTabBar;

namespace cad::app {
class Application;
struct MenuItem;
}  // namespace cad::app

namespace cad::gui {

class CommandLineWidget;
class DrawingArea;

class MainWindow : public QMainWindow,
                   private app::DocumentManagerReactor,
                   private ed::EditorReactor {
    Q_OBJECT
public:
    // `typeText` types text as the user would ("\x03" is Esc, "\n" Enter).
    using TypeText = std::function<void(const std::string& text)>;

    MainWindow(app::Application& application, TypeText typeText, QWidget* parent = nullptr);
    ~MainWindow() override;

    CommandLineWidget* commandLine() const { return commandLine_; }
    DrawingArea* drawingArea() const { return drawingArea_; }
    QTabBar* documentTabs() const { return tabs_; }
    // The pull-downs of the menu groups, in menu-bar order.
    const std::vector<QMenu*>& groupMenus() const { return groupMenus_; }

public slots:
    // Tabs, drawing area and title from the document manager.
    void refresh();

signals:
    // The window is closing: input must stop waiting.
    void closing();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildFileMenu();
    void rebuildGroupMenus();
    void addItems(QMenu* menu, const std::vector<app::MenuItem>& items);
    // Runs the command line's text after cancelling whatever command runs, as a menu macro
    // starting with ^C^C does.
    void runCommand(const std::string& text);
    void openDrawings();
    void saveDrawingAs();

    void documentCreated(app::Document* document) override;
    void documentToBeDestroyed(app::Document* document) override;
    void documentDestroyed(const std::string& fileName) override;
    void documentActivated(app::Document* document) override;
    void commandEnded(const std::string& commandName) override;

    app::Application& app_;
    TypeText typeText_;
    QTabBar* tabs_;
    DrawingArea* drawingArea_;
    CommandLineWidget* commandLine_;
    std::vector<QMenu*> groupMenus_;
};

}  // namespace cad::gui
