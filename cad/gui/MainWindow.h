// The host's main window: the menu bar (File, then the pull-downs of the loaded menu groups),
// a tab per open document, the drawing view, the command line and a status bar with the
// cursor's coordinates. It follows the document
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
class DrawingViewWidget;
class QtInputSource;

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
    DrawingViewWidget* drawingView() const { return drawingView_; }
    QTabBar* documentTabs() const { return tabs_; }
    // The pull-downs of the menu groups, in menu-bar order.
    const std::vector<QMenu*>& groupMenus() const { return groupMenus_; }

    // The GUI's input: the command line and the view answer the editor's requests through
    // `input`; the view draws drags, answers picks and windows, and takes the viewing
    // commands. Headless, none of this is attached.
    void attachInput(QtInputSource& input);

public slots:
    // Tabs, drawing view and title from the document manager.
    void refresh();

signals:
    // The window is closing: input must stop waiting.
    void closing();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // File, and Edit with Undo (Ctrl+Z) and Redo (Ctrl+Y).
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
    // A view made current by a command (VIEWCTR and VIEWSIZE) is shown.
    void sysVarChanged(const std::string& name, bool success) override;
    // The view's centre and height go into VIEWCTR and VIEWSIZE, so a command that saves the
    // view saves what is shown.
    void storeView();
    void detachInput();
    // F3: the running snaps on or off, OSMODE's bits kept.
    void toggleRunningSnaps();

    app::Application& app_;
    TypeText typeText_;
    QTabBar* tabs_;
    DrawingViewWidget* drawingView_;
    CommandLineWidget* commandLine_;
    std::vector<QMenu*> groupMenus_;
    bool inputAttached_ = false;
    bool storingView_ = false;
};

}  // namespace cad::gui
