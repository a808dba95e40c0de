// The data pane's block list.
#include "vantor/ui/window/RecListView.h"

#include <QHeaderView>
#include <QListView>
#include <QTreeView>

#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/window/ColumnWidthKeeper.h"

namespace vantor {

CRecListView::CRecListView(BlockListModel& model, ModuleSettings& settings, QWidget* parent)
    : QStackedWidget(parent),
      model_(model),
      settings_(settings),
      listView_(new QListView(this)),
      detailsView_(new QTreeView(this)) {
    setAccessibleName(QStringLiteral("블록 목록"));
    listView_->setModel(&model);
    listView_->setAccessibleName(QStringLiteral("블록 목록"));
    listView_->setUniformItemSizes(true);
    listView_->setResizeMode(QListView::Adjust);
    detailsView_->setModel(&model);
    detailsView_->setAccessibleName(QStringLiteral("블록 목록 자세히"));
    detailsView_->setRootIsDecorated(false);
    detailsView_->setUniformRowHeights(true);
    detailsView_->setAllColumnsShowFocus(true);
    // One selection for both, so a block stays chosen across a change of style.
    detailsView_->setSelectionModel(listView_->selectionModel());
    auto* widths = new ColumnWidthKeeper(*detailsView_->header(), settings, ListOwner::BlockList);
    widths->apply();
    addWidget(listView_);
    addWidget(detailsView_);
    connect(listView_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { emit blockChosen(model_.blockAt(current.row())); });
    setStyle(static_cast<Style>(settings.viewType & 3));
}

CRecListView::Style CRecListView::style() const {
    if (currentWidget() == detailsView_) return Details;
    return listView_->viewMode() == QListView::IconMode ? Icons : List;
}

void CRecListView::setStyle(Style style) {
    switch (style) {
        case Details:
            setCurrentWidget(detailsView_);
            break;
        case List:
            listView_->setViewMode(QListView::ListMode);
            listView_->setFlow(QListView::TopToBottom);
            listView_->setWrapping(true);
            listView_->setIconSize(QSize(16, 16));
            listView_->setGridSize(QSize());
            setCurrentWidget(listView_);
            break;
        default:
            style = Icons;
            listView_->setViewMode(QListView::IconMode);
            listView_->setIconSize(QSize(48, 48));
            listView_->setGridSize(QSize(110, 80));
            setCurrentWidget(listView_);
            break;
    }
    settings_.viewType = style;
}

std::string CRecListView::currentBlock() const {
    return model_.blockAt(listView_->selectionModel()->currentIndex().row());
}

}  // namespace vantor
