// The preview pane with the management windows.
#include "vantor/ui/window/UblPreviewView.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "vantor/host/ToolbarLabel.h"
#include "vantor/registry/ManagementWindows.h"
#include "vantor/ui/FrameCommands.h"
#include "vantor/ui/models/ModelText.h"
#include "vantor/ui/window/CommandIcons.h"
#include "vantor/placement/dialogs/PartPicture.h"

namespace vantor {

CUblPreviewView::CUblPreviewView(ManagementWindows& windows, PartPicture* canvas,
                                 QWidget* infoPanel, QWidget* controls, QWidget* parent)
    : QWidget(parent),
      windows_(windows),
      canvas_(canvas),
      dropDown_(new QComboBox(this)),
      toolBar_(new QToolBar(this)),
      picture_(new QSplitter(Qt::Horizontal)),
      pictureArea_(new QWidget(this)) {
    dropDown_->setObjectName(QStringLiteral("id%1").arg(kWindowDropDownId));
    dropDown_->setAccessibleName(QStringLiteral("관리창"));
    dropDown_->setMinimumContentsLength(12);
    dropDown_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    toolBar_->setIconSize(QSize(16, 16));
    toolBar_->setAccessibleName(QStringLiteral("관리창 도구"));
    for (int id : vantor::windowToolBar()) {
        if (id == 0) {
            toolBar_->addSeparator();
        } else if (id == kWindowDropDownPlace) {
            toolBar_->addWidget(dropDown_);
        } else {
            const FrameCommand& command = *frameCommand(id);
            QAction* action = toolBar_->addAction(commandIcon(id, *style()),
                                                  qText(toolbarLabel(command.entry)));
            action->setObjectName(QStringLiteral("id%1").arg(id));
            action->setToolTip(qText(commandPrompt(command)));
            connect(action, &QAction::triggered, this, [this, &command] { runWindowCommand(command.action); });
        }
    }
    connect(dropDown_, &QComboBox::currentIndexChanged, this,
            [this](int position) { windows_.selectionChanged(position); });

    canvas_->setParent(picture_);
    picture_->addWidget(canvas_);
    if (infoPanel != nullptr) {
        picture_->addWidget(infoPanel);
        picture_->setStretchFactor(0, 1);
        picture_->setStretchFactor(1, 0);
        picture_->setSizes({400, 200});
    }
    picture_->setChildrenCollapsible(false);

    // Under the picture: how the part goes in, and the button that puts it there.
    auto* insert = new QPushButton(qText(frameCommand(1807)->entry), pictureArea_);
    insert->setObjectName(QStringLiteral("id1807"));
    insert->setAccessibleName(insert->text());
    connect(insert, &QPushButton::clicked, this, &CUblPreviewView::insertRequested);
    auto* placing = new QHBoxLayout;
    placing->setContentsMargins(4, 2, 4, 2);
    if (controls != nullptr) placing->addWidget(controls, 1);
    placing->addWidget(insert, 0, Qt::AlignVCenter);
    auto* area = new QVBoxLayout(pictureArea_);
    area->setContentsMargins(0, 0, 0, 0);
    area->setSpacing(0);
    area->addWidget(picture_, 1);
    area->addLayout(placing);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(toolBar_);
    layout->addWidget(pictureArea_, 1);
    layout->addStretch(0);
}

void CUblPreviewView::refreshWindows() {
    const QSignalBlocker blocker(dropDown_);
    dropDown_->clear();
    for (const std::string& name : windows_.names()) dropDown_->addItem(qText(name));
    dropDown_->setCurrentIndex(windows_.selection());
}

void CUblPreviewView::runWindowCommand(FrameAction action) {
    switch (action) {
        case FrameAction::AddWindow:
            windows_.addWindow();
            break;
        case FrameAction::RenameWindow:
            windows_.renameWindow();
            break;
        case FrameAction::DeleteWindow:
            windows_.deleteWindow();
            break;
        case FrameAction::RefreshWindow:
            windows_.loadList();
            break;
        default:
            return;
    }
    refreshWindows();
}

void CUblPreviewView::setPictureVisible(bool visible) {
    pictureArea_->setVisible(visible);
    // Without the picture the pane is only its tool bar, and the lists above take the room.
    setMaximumHeight(visible ? QWIDGETSIZE_MAX : toolBar_->sizeHint().height());
}

bool CUblPreviewView::pictureVisible() const {
    return !pictureArea_->isHidden();
}

}  // namespace vantor
