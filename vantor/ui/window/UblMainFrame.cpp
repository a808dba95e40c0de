// The library window's frame.
#include "vantor/ui/window/UblMainFrame.h"

#include <QActionGroup>
#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "vantor/host/FrameMessages.h"
#include "vantor/host/ToolbarLabel.h"
#include "vantor/store/ListBase.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/SupplierInfo.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/FrameLayout.h"
#include "vantor/ui/ModuleSettings.h"
#include "cad/sys/FileLock.h"
#include "vantor/ui/dialogs/AboutDlg.h"
#include "vantor/ui/dialogs/CompanyInfoFlow.h"
#include "vantor/ui/dialogs/CsvExportFlow.h"
#include "vantor/ui/dialogs/LabelEditDlg.h"
#include "vantor/ui/dialogs/SupplierInfoPanel.h"
#include "vantor/ui/explorer/ShellTreeViewEx.h"
#include "vantor/ui/models/BlockIconWorker.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/models/CategoryTreeModel.h"
#include "vantor/ui/models/DrawingTreeModel.h"
#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/models/PartListModel.h"
#include "vantor/placement/dialogs/PreviewSubDlg.h"
#include "vantor/ui/window/CommandIcons.h"
#include "vantor/ui/window/FrameFlows.h"
#include "vantor/ui/window/FrameSearch.h"
#include "vantor/ui/window/HelpWindow.h"
#include "vantor/ui/window/ListViewEx.h"
#include "vantor/ui/window/PartSearchPane.h"
#include "vantor/placement/dialogs/PartPicture.h"
#include "vantor/ui/window/RecListView.h"
#include "vantor/ui/window/UblPreviewView.h"
#include "vantor/ui/window/UblTreeView.h"
#include "vantor/ui/window/VNTreeViewEx.h"
#include "vantor/ui/window/ViewSplitter.h"

namespace vantor {

namespace {

constexpr int kDisplayStyleIds[] = {32769, 32770, 32771};

// The settings' display style of each view-menu command.
int styleOfCommand(int id) {
    switch (id) {
        case 32770: return CRecListView::List;
        case 32771: return CRecListView::Details;
        default: return CRecListView::Icons;
    }
}

}  // namespace

CUblMainFrame::CUblMainFrame(FrameContext context, QWidget* parent)
    : QMainWindow(parent),
      context_(std::move(context)),
      settings_(context_.settings),
      dialogs_(context_.dialogs),
      tree_(dialogs_),
      explorerTree_(dialogs_),
      windows_(settings_, list_, *this, dialogs_),
      explorerDrawing_(context_.documents, dialogs_),
      drawingModel_(std::make_unique<DrawingTreeModel>()),
      treeModel_(std::make_unique<CategoryTreeModel>(tree_)),
      explorerTreeModel_(std::make_unique<CategoryTreeModel>(explorerTree_)),
      partModel_(std::make_unique<PartListModel>(settings_.labels)),
      blockModel_(std::make_unique<BlockListModel>()),
      flows_(std::make_unique<FrameFlows>(
          *this, PlacementDialogContext{settings_, dialogs_, context_.editor}, context_.insertions,
          context_.documents)) {
    setWindowTitle(qText(context_.title));
    setWindowIcon(frameIcon(*style()));
    setAccessibleName(qText(context_.title));
    setMinimumSize(FrameGeometry::kMinimumWidth, FrameGeometry::kMinimumHeight);
    const FrameRect rect = settings_.frameRect();
    setGeometry(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);

    buildMenu();
    buildToolBar();
    buildStatusBar();
    buildClientArea();
    wireViews();

    windows_.loadTabList();
    previewView_->refreshWindows();
    windows_.loadList();
    previewView_->refreshWindows();
}

CUblMainFrame::~CUblMainFrame() = default;

// ---- building -----------------------------------------------------------------------------

QAction* CUblMainFrame::makeAction(int id, bool forToolBar) {
    if (QAction* existing = commandAction(id)) return existing;
    const FrameCommand& command = *frameCommand(id);
    const std::string text = forToolBar ? toolbarLabel(command.entry) : std::string(command.entry);
    auto* action = new QAction(qText(text), this);
    action->setObjectName(QStringLiteral("id%1").arg(id));
    action->setStatusTip(qText(commandPrompt(command)));
    action->setToolTip(qText(commandPrompt(command)));
    if (forToolBar) action->setIcon(commandIcon(id, *style()));
    connect(action, &QAction::triggered, this, [this, id] { runCommand(id); });
    actions_[id] = action;
    return action;
}

QAction* CUblMainFrame::commandAction(int id) const {
    const auto found = actions_.find(id);
    return found != actions_.end() ? found->second : nullptr;
}

void CUblMainFrame::buildMenu() {
    QMenu* help = menuBar()->addMenu(QStringLiteral("도움기능(&H)"));
    for (int id : {1100, 1101, 1102}) help->addAction(makeAction(id, false));
    help->addSeparator();
    QAction* onTop = makeAction(1103, false);
    onTop->setCheckable(true);
    help->addAction(onTop);
    QMenu* quit = menuBar()->addMenu(QStringLiteral("종  료(&X)"));
    quit->addAction(makeAction(1104, false));
}

void CUblMainFrame::buildToolBar() {
    toolBar_ = addToolBar(QStringLiteral("Vantor"));
    toolBar_->setObjectName(QStringLiteral("toolbar703"));
    toolBar_->setAccessibleName(QStringLiteral("도구 모음"));
    toolBar_->setIconSize(QSize(18, 18));
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolBar_->setMovable(false);
    // Eighteen buttons with their texts fit the narrowest frame only when packed closely.
    toolBar_->setStyleSheet(
        QStringLiteral("QToolButton { padding: 0px; margin: 0px; font-size: 8pt; }"
                       "QToolButton[popupMode=\"1\"] { padding-right: 14px; }"));
    auto* sides = new QActionGroup(this);
    for (int id : mainToolBar()) {
        if (id == 0) {
            toolBar_->addSeparator();
            continue;
        }
        QAction* action = makeAction(id, true);
        if (id == 1200 || id == 1201) {
            action->setCheckable(true);
            sides->addAction(action);
        }
        if (id == 1202 || id == 1203 || id == 1212) action->setCheckable(true);
        toolBar_->addAction(action);
    }
    commandAction(1202)->setChecked(settings_.preView != 0);
    commandAction(1203)->setChecked(settings_.dataView != 0);

    // The view button opens the display styles, from its arrow as from itself.
    auto* styles = new QMenu(this);
    auto* styleGroup = new QActionGroup(this);
    for (int id : kDisplayStyleIds) {
        QAction* action = makeAction(id, false);
        action->setCheckable(true);
        styleGroup->addAction(action);
        styles->addAction(action);
    }
    connect(styles, &QMenu::aboutToShow, this, [this] {
        for (int id : kDisplayStyleIds)
            commandAction(id)->setChecked(styleOfCommand(id) == dataPane_->style());
    });
    commandAction(1211)->setMenu(styles);
    if (auto* button = qobject_cast<QToolButton*>(toolBar_->widgetForAction(commandAction(1211))))
        button->setPopupMode(QToolButton::MenuButtonPopup);

    for (int id = 1203; id <= 1211; ++id)
        if (QAction* action = commandAction(id)) {
            action->setVisible(false);
            action->setEnabled(false);
        }
}

void CUblMainFrame::buildStatusBar() {
    statusWindow_ = new QLabel(this);
    statusDrawings_ = new QLabel(this);
    statusParts_ = new QLabel(this);
    statusWindow_->setAccessibleName(QStringLiteral("관리창"));
    statusDrawings_->setAccessibleName(QStringLiteral("도면 수"));
    statusParts_->setAccessibleName(QStringLiteral("부품 수"));
    statusBar()->addPermanentWidget(statusWindow_);
    statusBar()->addPermanentWidget(statusDrawings_);
    statusBar()->addPermanentWidget(statusParts_);
}

void CUblMainFrame::buildClientArea() {
    mainSplitter_ = new CViewSplitter(Qt::Horizontal, 2, this);
    // The search bar stands above the trees; its lists take the drawing tree's place while
    // they are wanted, so the trees keep their kept pane sizes.
    auto* leftColumn = new QWidget(mainSplitter_);
    searchPane_ = new PartSearchPane(settings_.shortcuts, settings_.labels);
    search_ = new FrameSearch(*this, *searchPane_, settings_);
    connect(searchPane_, &PartSearchPane::listsWanted, this, [this] { showUpperLeftView(); });
    leftSplitter_ = new CViewSplitter(Qt::Vertical, 2, leftColumn);
    auto* leftLayout = new QVBoxLayout(leftColumn);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(0);
    leftLayout->addWidget(searchPane_->bar());
    leftLayout->addWidget(leftSplitter_, 1);
    rightSplitter_ = new CViewSplitter(Qt::Vertical, 2, mainSplitter_);
    rightUpperSplitter_ = new CViewSplitter(Qt::Vertical, 2, rightSplitter_);
    mainSplitter_->addView(0, leftColumn);
    mainSplitter_->addView(1, rightSplitter_);
    rightSplitter_->addView(0, rightUpperSplitter_);

    drawingTree_ = new CUblTreeView(*drawingModel_, leftSplitter_);
    explorer_ = new CShellTreeViewEx(dialogs_, leftSplitter_);
    leftSplitter_->addView(0, drawingTree_);
    leftSplitter_->addView(0, explorer_);
    leftSplitter_->addView(0, searchPane_);
    categoryTree_ = new CVNTreeViewEx(leftSplitter_);
    categoryTree_->showTree(tree_, *treeModel_);
    leftSplitter_->addView(1, categoryTree_);

    // Icons are drawn on a worker from the drawing's file and kept in the user's cache, so
    // the icon view never waits for a drawing to be read or a block to be drawn.
    blockModel_->setIconWorker(
        new BlockIconWorker(BlockIconWorker::defaultCacheFolder(), blockModel_.get()));
    dataPane_ = new CRecListView(*blockModel_, settings_, rightUpperSplitter_);
    partList_ = new CListViewEx(*partModel_, settings_, rightUpperSplitter_);
    rightUpperSplitter_->addView(0, dataPane_);
    rightUpperSplitter_->addView(1, partList_);

    auto* canvas = new PartPicture([this](const std::string& path) { return drawing(path); });
    canvas->setMinimumSize(40, 40);
    supplierPanel_ = new SupplierInfoPanel();
    supplierPanel_->setMinimumWidth(180);
    auto* companyInfo = new QAction(QStringLiteral("회사 정보 입력..."), supplierPanel_);
    companyInfo->setObjectName(QStringLiteral("companyInfo"));
    connect(companyInfo, &QAction::triggered, this, [this] { editCompanyInfo(); });
    supplierPanel_->addAction(companyInfo);
    supplierPanel_->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* controls = new CPreviewSubDlg(flows_->context());
    flows_->setPreviewControls(controls);
    previewView_ = new CUblPreviewView(windows_, canvas, supplierPanel_, controls, rightSplitter_);
    rightSplitter_->addView(1, previewView_);
    setCentralWidget(mainSplitter_);

    // Hidden until a side is chosen, as their buttons are.
    rightUpperSplitter_->setPaneVisible(0, false);
    showPreviewPane();
    for (CViewSplitter* splitter : {mainSplitter_, leftSplitter_, rightSplitter_, rightUpperSplitter_})
        connect(splitter, &QSplitter::splitterMoved, this, [this] { storePaneSizes(); });
}

void CUblMainFrame::wireViews() {
    connect(drawingTree_, &CUblTreeView::drawingChosen, this,
            [this](const std::string& path) { registeredDrawingChosen(path); });
    connect(explorer_, &CShellTreeViewEx::drawingSelected, this,
            [this](const QString& path) { explorerDrawingChosen(path); });
    connect(explorer_, &CShellTreeViewEx::folderSelected, this,
            [this] { explorerDrawingChosen({}); });
    connect(categoryTree_, &CVNTreeViewEx::nodeChosen, this,
            [this](TreeNode* node) { nodeChosen(node); });
    connect(categoryTree_, &CVNTreeViewEx::addPartDataRequested, this,
            [this] { emit placementOrAuthoringRequested(FrameAction::AddPartData); });
    connect(partList_, &CListViewEx::recordChosen, this,
            [this](const PartRecord* record) { recordChosen(record); });
    connect(partList_, &CListViewEx::insertRequested, this, [this] { runCommand(1501); });
    connect(partList_, &CListViewEx::addRequested, this, [this] { runCommand(1502); });
    connect(partList_, &CListViewEx::modifyRequested, this, [this] { runCommand(1503); });
    connect(partList_, &CListViewEx::deleteRequested, this, [this] { runCommand(1504); });
    connect(dataPane_, &CRecListView::blockChosen, this,
            [this](const std::string& name) { blockChosen(name); });
    connect(this, &CUblMainFrame::placementOrAuthoringRequested, this,
            [this](FrameAction action) { flows_->run(action); });
    partList_->setDragPreparer([this] { return flows_->prepareDrop(); },
                               [this](bool dropped) { flows_->dropEnded(dropped); });
    connect(previewView_, &CUblPreviewView::insertRequested, this, [this] { flows_->insertFromPreview(); });
    connect(explorer_, &CShellTreeViewEx::openDrawingRequested, this,
            [this](const QString& path) { flows_->openDrawing(path); });
    connect(explorer_, &CShellTreeViewEx::r14CopyRequested, this,
            [this](const QString& path) { flows_->writeR14Copy(path); });
    connect(explorer_, &CShellTreeViewEx::registerDrawingRequested, this,
            [this](const QString& path) { flows_->registerDrawing(path); });
    connect(explorer_, &CShellTreeViewEx::newDrawingRequested, this,
            [this](const QString& folder) { flows_->newDrawing(folder); });
}

// ---- geometry -----------------------------------------------------------------------------

void CUblMainFrame::applyPaneSizes() {
    const PaneSizes sizes = PaneSizes::fromSettings(settings_);
    mainSplitter_->setFirstPane(sizes.leftWidth, PaneSizes::kLeftWidthMinimum);
    leftSplitter_->setFirstPane(sizes.subTree, PaneSizes::kRowMinimum);
    rightSplitter_->setFirstPane(sizes.subPreview, PaneSizes::kRowMinimum);
    rightUpperSplitter_->setFirstPane(sizes.subList, PaneSizes::kRowMinimum);
}

void CUblMainFrame::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (laidOut_) return;
    // The splitters have their sizes once the window is shown; before, there is nothing to
    // share out.
    laidOut_ = true;
    applyPaneSizes();
}

void CUblMainFrame::storeGeometry() {
    if (!laidOut_) return;
    const QRect frame = geometry();
    FrameGeometry{frame.x(), frame.y(), frame.width(), frame.height()}.store(settings_);
}

void CUblMainFrame::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    storeGeometry();
}

void CUblMainFrame::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    storeGeometry();
}

void CUblMainFrame::storePaneSizes() {
    PaneSizes sizes;
    sizes.leftWidth = mainSplitter_->firstPaneSize();
    sizes.subTree = leftSplitter_->firstPaneSize();
    sizes.subPreview = rightSplitter_->firstPaneSize();
    sizes.subList = rightUpperSplitter_->isHidden() ? 0 : rightUpperSplitter_->firstPaneSize();
    // A pane the user cannot see keeps what it had.
    if (!dataPane_->isVisible())
        sizes.subList = PaneSizes::fromSettings(settings_).subList;
    vantor::storePaneSizes(settings_, sizes);
}

CViewSplitter* CUblMainFrame::splitter(int which) const {
    switch (which) {
        case 0: return mainSplitter_;
        case 1: return leftSplitter_;
        case 2: return rightSplitter_;
        default: return rightUpperSplitter_;
    }
}

// ---- commands and messages ----------------------------------------------------------------

void CUblMainFrame::runCommand(int id) {
    const FrameCommand* command = frameCommand(id);
    if (command == nullptr) return;
    auto post = [this](unsigned message, std::intptr_t wParam) {
        QMetaObject::invokeMethod(this, [this, message, wParam] { handleMessage(message, wParam, 0); },
                                  Qt::QueuedConnection);
    };
    switch (command->action) {
        case FrameAction::ShowDrawingTree: post(kMsgSwitchPane, kPaneDrawingTree); break;
        case FrameAction::ShowExplorer: post(kMsgSwitchPane, kPaneExplorer); break;
        case FrameAction::TogglePreview:
            settings_.preView = commandAction(1202)->isChecked() ? 1 : 0;
            post(kMsgPreviewPane, 0);
            break;
        case FrameAction::ToggleDataView:
            settings_.dataView = commandAction(1203)->isChecked() ? 1 : 0;
            post(kMsgDataPane, 0);
            break;
        case FrameAction::ViewMenu: showViewMenu(); break;
        case FrameAction::IconView:
        case FrameAction::ListView:
        case FrameAction::DetailsView: setDisplayStyle(styleOfCommand(id)); break;
        case FrameAction::AlwaysOnTop: post(kMsgAlwaysOnTop, 0); break;
        case FrameAction::Quit: post(WM_CLOSE, 0); break;
        case FrameAction::FieldLabels:
            if (CLabelEditDlg::run(this, settings_, dialogs_)) partModel_->labelsChanged();
            break;
        case FrameAction::Help: HelpWindow::show(context_.helpPage, this); break;
        case FrameAction::About: CAboutDlg::run(this, settings_.version); break;
        case FrameAction::Export: runCsvExport(this, settings_, shownTree(), dialogs_); break;
        case FrameAction::NewCategory: categoryTree_->newCategory(); break;
        case FrameAction::RenameCategory: categoryTree_->renameCategory(); break;
        case FrameAction::DeleteCategory: categoryTree_->deleteCategory(); break;
        case FrameAction::DeleteAllData: categoryTree_->deleteAllData(); break;
        case FrameAction::DeletePartData: deleteRecord(); break;
        case FrameAction::AddWindow:
        case FrameAction::RenameWindow:
        case FrameAction::DeleteWindow:
        case FrameAction::RefreshWindow: previewView_->runWindowCommand(command->action); break;
        case FrameAction::RegisterDrawings:
        case FrameAction::ManageRegistrations:
        case FrameAction::ScanFolder:
        case FrameAction::CaptureBlock:
        case FrameAction::OpenDrawing:
        case FrameAction::AddPartData:
        case FrameAction::InsertPart:
        case FrameAction::ModifyPartData:
            emit placementOrAuthoringRequested(command->action);
            break;
    }
}

void CUblMainFrame::handleMessage(unsigned message, std::intptr_t wParam, std::intptr_t lParam) {
    switch (message) {
        case WM_CLOSE: close(); break;
        case kMsgSwitchPane:
            switchPane(wParam == kPaneExplorer ? LeftPane::Explorer : LeftPane::DrawingTree);
            break;
        case kMsgAlwaysOnTop: toggleAlwaysOnTop(); break;
        case kMsgPreviewPane: showPreviewPane(); break;
        case kMsgDataPane: showDataPane(); break;
        case kMsgSelectionState:
            selection_.captureAllowed = wParam != 0;
            updateButtons();
            break;
        case kMsgPaneShown: break;  // the splitters lay themselves out
        case kMsgDrawingsOpened:
            reportOpenedDrawings(static_cast<int>(wParam), static_cast<int>(lParam));
            break;
        case kMsgDocumentActivated: explorer_->documentActivated(); break;
        default: break;
    }
}

void CUblMainFrame::showUpperLeftView() {
    QWidget* side = selection_.side == LeftPane::DrawingTree ? static_cast<QWidget*>(drawingTree_)
                                                             : explorer_;
    leftSplitter_->showView(0, searchPane_->wantsLists() ? searchPane_ : side);
}

void CUblMainFrame::switchPane(LeftPane side) {
    selection_.side = side;
    const bool tree = side == LeftPane::DrawingTree;
    settings_.ublView = tree ? 1 : 0;
    settings_.displayMode = tree;
    commandAction(tree ? 1200 : 1201)->setChecked(true);
    showUpperLeftView();
    if (tree) {
        categoryTree_->showTree(tree_, *treeModel_);
        if (drawingTree_->currentPath().empty() && !list_.empty())
            drawingTree_->selectPath(list_.begin()->path);
        registeredDrawingChosen(drawingTree_->currentPath());
        if (commandAction(1203)->isChecked()) {
            commandAction(1203)->setChecked(false);
            settings_.dataView = 0;
        }
    } else {
        categoryTree_->showTree(explorerTree_, *explorerTreeModel_);
        explorerDrawingChosen(explorer_->currentDrawingPath());
    }
    showDataPane();
    updateButtons();
}

void CUblMainFrame::updateButtons() {
    for (int id = 1203; id <= 1211; ++id) {
        QAction* action = commandAction(id);
        if (action == nullptr) continue;
        const ButtonState state = buttonState(id, selection_);
        action->setVisible(state.visible);
        action->setEnabled(state.enabled);
    }
}

void CUblMainFrame::toggleAlwaysOnTop() {
    const bool onTop = !(windowFlags() & Qt::WindowStaysOnTopHint);
    const QRect frame = geometry();
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    setGeometry(frame);
    show();
    commandAction(1212)->setChecked(onTop);
    commandAction(1103)->setChecked(onTop);
}

void CUblMainFrame::showPreviewPane() {
    previewView_->setPictureVisible(settings_.preView != 0);
    rightSplitter_->widget(1)->setMaximumHeight(previewView_->maximumHeight());
    if (settings_.preView != 0) redrawPreview();
    QMetaObject::invokeMethod(this, [this] { handleMessage(kMsgPaneShown, 1202, 0); },
                              Qt::QueuedConnection);
}

void CUblMainFrame::showDataPane() {
    const bool shown = settings_.dataView != 0 && selection_.side == LeftPane::Explorer;
    rightUpperSplitter_->setPaneVisible(0, shown);
    QMetaObject::invokeMethod(this, [this] { handleMessage(kMsgPaneShown, 1203, 0); },
                              Qt::QueuedConnection);
}

void CUblMainFrame::setDisplayStyle(int style) {
    dataPane_->setStyle(static_cast<CRecListView::Style>(style));
}

void CUblMainFrame::showViewMenu() {
    QWidget* button = toolBar_->widgetForAction(commandAction(1211));
    QMenu* menu = commandAction(1211)->menu();
    if (button != nullptr && menu != nullptr)
        menu->popup(button->mapToGlobal(QPoint(0, button->height())));
}

void CUblMainFrame::reportOpenedDrawings(int queued, int failed) {
    if (queued > 0 && failed >= queued) {
        dialogs_.messageBox("도면 열기를 수행하지 못했습니다.", "도면 열기 에러",
                            cad::app::MB_OK | cad::app::MB_ICONINFORMATION);
    } else if (failed > 0) {
        const std::string text = std::to_string(queued) + "의 도면 중 " + std::to_string(failed) +
                                 "개의 도면 열기에 실패하였습니다.";
        dialogs_.messageBox(text, "도면 열기 결과", cad::app::MB_OK | cad::app::MB_ICONINFORMATION);
    }
}

void CUblMainFrame::redrawPreview() {
    previewView_->canvas()->repaint();
}

void CUblMainFrame::refreshBlockList() {
    const std::string path = blockModel_->drawingPath();
    if (!path.empty()) showDrawing(path, drawing(path));
}

void CUblMainFrame::status(const QString& text) {
    statusBar()->showMessage(text);
}

}  // namespace vantor
