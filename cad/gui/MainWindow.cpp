// The host's main window.
#include "cad/gui/MainWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QLineEdit>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QSignalBlocker>
#include <QTabBar>
#include <QVBoxLayout>

#include "cad/app/Application.h"
#include "cad/app/UserDialogs.h"
#include "cad/gui/CommandLineWidget.h"
#include "cad/gui/DrawingViewWidget.h"
#include "cad/gui/QtInputSource.h"
#include "cad/ed/ResultCodes.h"
#include "cad/gs/DrawingView.h"
#include "cad/gs/ObjectSnap.h"

namespace cad::gui {

namespace {

constexpr const char* kCancelTwice = "\x03\x03";
constexpr const char* kDrawingFilter = "Drawings (*.dxf);;All files (*)";

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

}  // namespace

MainWindow::MainWindow(app::Application& application, TypeText typeText, QWidget* parent)
    : QMainWindow(parent),
      app_(application),
      typeText_(std::move(typeText)),
      tabs_(new QTabBar(this)),
      drawingView_(new DrawingViewWidget(this)),
      commandLine_(new CommandLineWidget(this)) {
    resize(1024, 720);

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    tabs_->setDocumentMode(true);
    tabs_->setExpanding(false);
    layout->addWidget(tabs_);
    layout->addWidget(drawingView_, 1);
    setCentralWidget(central);

    auto* dock = new QDockWidget(tr("Command Line"), this);
    dock->setObjectName("commandLine");
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    dock->setWidget(commandLine_);
    commandLine_->setMinimumHeight(140);
    addDockWidget(Qt::BottomDockWidgetArea, dock);

    connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
        auto* document = reinterpret_cast<app::Document*>(tabs_->tabData(index).value<quintptr>());
        // Switching drawings in the middle of a command would pull the drawing from under it.
        if (document == nullptr || app_.commandProcessor().isCommandActive()) {
            refresh();
            return;
        }
        app_.documentManager().activateDocument(document);
    });

    auto* coordinates = new QLabel(this);
    coordinates->setAccessibleName(tr("Cursor coordinates"));
    coordinates->setMinimumWidth(220);
    statusBar()->addPermanentWidget(coordinates);
    connect(drawingView_, &DrawingViewWidget::pointerMoved, coordinates, [coordinates](double x, double y) {
        coordinates->setText(QString("%1, %2").arg(x, 0, 'f', 4).arg(y, 0, 'f', 4));
    });

    buildFileMenu();
    rebuildGroupMenus();
    app_.menuBar().setChangedHandler([this] { rebuildGroupMenus(); });
    app_.documentManager().addReactor(this);
    app_.editor().addReactor(this);
    app_.editor().commandLine().addSink(commandLine_);
    commandLine_->write(app_.editor().commandLine().text());
    refresh();
    commandLine_->inputLine()->setFocus();
}

MainWindow::~MainWindow() {
    detachInput();
    app_.editor().commandLine().removeSink(commandLine_);
    app_.editor().removeReactor(this);
    app_.documentManager().removeReactor(this);
    app_.menuBar().setChangedHandler(nullptr);
}

void MainWindow::attachInput(QtInputSource& input) {
    inputAttached_ = true;
    ed::Editor& editor = app_.editor();
    editor.setDragPreview(drawingView_);
    editor.setHitTester(drawingView_);
    app_.viewCommands().setViewPort(drawingView_);
    drawingView_->setSnapModes([this] {
        ed::SysVarValue modes;
        return app_.editor().getVar("OSMODE", modes) == ed::RTNORM ? std::get<int>(modes) : 0;
    });
    connect(this, &MainWindow::closing, &input, &QtInputSource::shutdown);
    connect(&input, &QtInputSource::idle, this, &MainWindow::refresh);
    connect(commandLine_, &CommandLineWidget::lineEntered, &input, &QtInputSource::submitLine);
    connect(commandLine_, &CommandLineWidget::cancelRequested, &input, [this, &input] {
        // Esc at the prompt also lets go of what was selected there.
        if (!input.isWaiting()) drawingView_->clearSelection();
        input.submitCancel();
    });
    connect(drawingView_, &DrawingViewWidget::pointPicked, &input,
            [&input](double x, double y, bool shift) { input.submitPointer(true, x, y, shift); });
    connect(drawingView_, &DrawingViewWidget::pointerMoved, &input,
            [&input](double x, double y) { input.submitPointer(false, x, y, false); });
    connect(&input, &QtInputSource::requestStarted, drawingView_,
            [this](const ed::InputRequest& request) { drawingView_->setRequest(request); });
    connect(&input, &QtInputSource::requestEnded, drawingView_, [this] { drawingView_->setRequest(std::nullopt); });
    connect(drawingView_, &DrawingViewWidget::viewChanged, this, &MainWindow::storeView);
    connect(drawingView_, &DrawingViewWidget::commandDropped, this,
            [this](const QString& command, double x, double y) {
                app_.editor().setLastPoint(ge::Point3d(x, y, 0.0));
                runCommand(command.toStdString());
            });
    connect(drawingView_, &DrawingViewWidget::selectionChanged, this,
            [this] { app_.editor().setPickfirst(drawingView_->selection()); });
    auto* snaps = new QAction(tr("Running object snaps"), this);
    snaps->setShortcut(Qt::Key_F3);
    snaps->setShortcutContext(Qt::ApplicationShortcut);
    connect(snaps, &QAction::triggered, this, &MainWindow::toggleRunningSnaps);
    addAction(snaps);
}

void MainWindow::detachInput() {
    if (!inputAttached_) return;
    ed::Editor& editor = app_.editor();
    if (editor.dragPreview() == drawingView_) editor.setDragPreview(nullptr);
    if (editor.hitTester() == drawingView_) editor.setHitTester(nullptr);
    if (app_.viewCommands().viewPort() == drawingView_) app_.viewCommands().setViewPort(nullptr);
    inputAttached_ = false;
}

void MainWindow::storeView() {
    const gs::DrawingView* view = drawingView_->view();
    if (view == nullptr) return;
    ed::ViewRecord record = app_.editor().currentView();
    const gs::ViewTransform& shown = view->transform();
    record.centerPoint = shown.centre();
    record.height = shown.height();
    record.width = shown.width();
    storingView_ = true;
    app_.editor().setCurrentView(record);
    storingView_ = false;
}

void MainWindow::sysVarChanged(const std::string& name, bool success) {
    // VIEWMODE is the last variable a view made current sets.
    if (!inputAttached_ || storingView_ || !success || name != "VIEWMODE") return;
    const ed::ViewRecord record = app_.editor().currentView();
    drawingView_->showView(record.centerPoint, record.height);
}

void MainWindow::toggleRunningSnaps() {
    ed::Editor& editor = app_.editor();
    ed::SysVarValue modes;
    if (editor.getVar("OSMODE", modes) != ed::RTNORM) return;
    const int toggled = std::get<int>(modes) ^ gs::kSnapOff;
    editor.setVar("OSMODE", toggled);
    editor.print(toggled & gs::kSnapOff ? "<Osnap off>" : "<Osnap on>");
}

void MainWindow::buildFileMenu() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    auto add = [&](const QString& label, QKeySequence::StandardKey key, auto run) {
        QAction* action = file->addAction(label);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, run);
    };
    add(tr("&Open..."), QKeySequence::Open, [this] { openDrawings(); });
    add(tr("&New"), QKeySequence::New, [this] { runCommand("_NEW\n"); });
    add(tr("&Save"), QKeySequence::Save, [this] { runCommand("_QSAVE\n"); });
    add(tr("Save &As..."), QKeySequence::SaveAs, [this] { saveDrawingAs(); });
    add(tr("&Close"), QKeySequence::Close, [this] { runCommand("_CLOSE\n"); });
    file->addSeparator();
    add(tr("&Quit"), QKeySequence::Quit, [this] { runCommand("_QUIT\n"); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = edit->addAction(tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    connect(undo, &QAction::triggered, this, [this] { runCommand("_U\n"); });
    QAction* redo = edit->addAction(tr("&Redo"));
    redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence::Redo});
    connect(redo, &QAction::triggered, this, [this] { runCommand("_REDO\n"); });
}

void MainWindow::rebuildGroupMenus() {
    for (QMenu* menu : groupMenus_) {
        menuBar()->removeAction(menu->menuAction());
        menu->deleteLater();
    }
    groupMenus_.clear();
    for (const app::MenuBar::Entry& entry : app_.menuBar().menus()) {
        QMenu* menu = menuBar()->addMenu(text(entry.menu.label));
        addItems(menu, entry.menu.items);
        groupMenus_.push_back(menu);
    }
}

void MainWindow::addItems(QMenu* menu, const std::vector<app::MenuItem>& items) {
    for (const app::MenuItem& item : items) {
        switch (item.kind) {
            case app::MenuItem::Kind::Separator:
                menu->addSeparator();
                break;
            case app::MenuItem::Kind::Submenu:
                addItems(menu->addMenu(text(item.label)), item.items);
                break;
            case app::MenuItem::Kind::Command: {
                QAction* action = menu->addAction(text(item.label));
                action->setStatusTip(text(item.helpString));
                action->setEnabled(item.enabled);
                std::string typed = item.typedText();
                connect(action, &QAction::triggered, this, [this, typed] { typeText_(typed); });
                break;
            }
        }
    }
}

void MainWindow::runCommand(const std::string& text) {
    typeText_(kCancelTwice + text);
}

void MainWindow::openDrawings() {
    auto paths = app::userDialogs().openFiles("Open Drawing", kDrawingFilter, {}, true);
    if (!paths) return;
    std::string typed;
    for (const std::string& path : *paths) typed += "_OPEN\n" + path + "\n";
    runCommand(typed);
}

void MainWindow::saveDrawingAs() {
    app::Document* document = app_.documentManager().curDocument();
    if (document == nullptr) return;
    auto path = app::userDialogs().saveFile("Save Drawing As", kDrawingFilter, ".dxf",
                                            document->fileName());
    if (path) runCommand("_SAVEAS\n" + *path + "\n");
}

void MainWindow::refresh() {
    app::DocumentManager& documents = app_.documentManager();
    app::Document* active = documents.mdiActiveDocument();
    {
        QSignalBlocker quiet(tabs_);
        while (tabs_->count() > 0) tabs_->removeTab(0);
        for (app::Document* document : documents.documents()) {
            int index = tabs_->addTab(text(document->docTitle()));
            tabs_->setTabData(index, QVariant::fromValue(reinterpret_cast<quintptr>(document)));
            tabs_->setTabToolTip(index, text(document->fileName()));
            if (document == active) tabs_->setCurrentIndex(index);
        }
    }
    drawingView_->setDocument(active);
    setWindowTitle(active ? text(active->docTitle()) + " - vantor-cad" : QString("vantor-cad"));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    emit closing();
    event->accept();
}

void MainWindow::documentCreated(app::Document*) {
    refresh();
}

void MainWindow::documentToBeDestroyed(app::Document* document) {
    drawingView_->forgetDocument(document);
}

void MainWindow::documentDestroyed(const std::string&) {
    refresh();
}

void MainWindow::documentActivated(app::Document*) {
    refresh();
}

void MainWindow::commandEnded(const std::string& commandName) {
    if (commandName == "QUIT") {
        close();
        return;
    }
    drawingView_->drawingChanged();
}

}  // namespace cad::gui
