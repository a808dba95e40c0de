// The data pane's block list.
#include "vantor/ui/window/RecListView.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QSlider>
#include <QTreeView>
#include <QVBoxLayout>

#include "vantor/ui/BlockIconCache.h"
#include "vantor/ui/ModuleSettings.h"
#include "vantor/ui/models/BlockListModel.h"
#include "vantor/ui/window/ColumnWidthKeeper.h"

namespace vantor {

namespace {

constexpr int kIconStep = 16;  // sizes between are not offered: each size drawn is cached

int snapped(int pixels) {
    pixels = blockIconPixels(pixels);
    return (pixels + kIconStep / 2) / kIconStep * kIconStep;
}

}  // namespace

CRecListView::CRecListView(BlockListModel& model, ModuleSettings& settings, QWidget* parent)
    : QStackedWidget(parent),
      model_(model),
      settings_(settings),
      listPage_(new QWidget(this)),
      listView_(new QListView(listPage_)),
      detailsView_(new QTreeView(this)),
      sizeBar_(new QWidget(listPage_)),
      sizeSlider_(new QSlider(Qt::Horizontal, sizeBar_)),
      sizeLabel_(new QLabel(sizeBar_)),
      pixels_(snapped(settings.iconSize)) {
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

    auto* caption = new QLabel(QStringLiteral("아이콘 크기"), sizeBar_);
    sizeSlider_->setRange(kMinBlockIconPixels, kMaxBlockIconPixels);
    sizeSlider_->setSingleStep(kIconStep);
    sizeSlider_->setPageStep(2 * kIconStep);
    sizeSlider_->setTickInterval(2 * kIconStep);
    sizeSlider_->setTickPosition(QSlider::NoTicks);
    sizeSlider_->setAccessibleName(QStringLiteral("아이콘 크기"));
    sizeSlider_->setMaximumWidth(200);
    caption->setBuddy(sizeSlider_);
    sizeLabel_->setMinimumWidth(sizeLabel_->fontMetrics().horizontalAdvance(QStringLiteral("256 px")));
    auto* bar = new QHBoxLayout(sizeBar_);
    bar->setContentsMargins(4, 2, 4, 2);
    bar->addStretch(1);
    bar->addWidget(caption);
    bar->addWidget(sizeSlider_);
    bar->addWidget(sizeLabel_);
    auto* page = new QVBoxLayout(listPage_);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(0);
    page->addWidget(listView_, 1);
    page->addWidget(sizeBar_);

    sizeSlider_->setValue(pixels_);
    sizeLabel_->setText(QStringLiteral("%1 px").arg(pixels_));
    connect(sizeSlider_, &QSlider::valueChanged, this, [this](int value) {
        if (snapped(value) != value) {
            sizeSlider_->setValue(snapped(value));  // comes back here with the step
            return;
        }
        setIconPixels(value);
    });
    model_.setIconPixels(pixels_);

    addWidget(listPage_);
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
            listView_->setWordWrap(false);
            listView_->setIconSize(QSize(16, 16));
            listView_->setGridSize(QSize());
            sizeBar_->hide();
            setCurrentWidget(listPage_);
            break;
        default:
            style = Icons;
            listView_->setViewMode(QListView::IconMode);
            applyIconStyle();
            sizeBar_->show();
            setCurrentWidget(listPage_);
            break;
    }
    settings_.viewType = style;
}

void CRecListView::applyIconStyle() {
    // Room under the icon for a block name of two lines, and beside it for a name like
    // "GV-10K-150A-F" on one.
    const int line = listView_->fontMetrics().height();
    listView_->setWordWrap(true);
    listView_->setIconSize(QSize(pixels_, pixels_));
    listView_->setGridSize(QSize(std::max(pixels_ + 24, 128), pixels_ + 2 * line + 12));
}

void CRecListView::setIconPixels(int pixels) {
    pixels = snapped(pixels);
    if (sizeSlider_->value() != pixels) sizeSlider_->setValue(pixels);
    if (pixels == pixels_) return;
    pixels_ = pixels;
    settings_.iconSize = pixels;
    sizeLabel_->setText(QStringLiteral("%1 px").arg(pixels));
    // The model first: the view lays its items out by the icons it is given, which must be
    // of the new size by then. Each step of a drag costs no more than the icon being drawn,
    // since a new size drops the requests of the one before.
    model_.setIconPixels(pixels);
    if (style() == Icons) applyIconStyle();
}

std::string CRecListView::currentBlock() const {
    return model_.blockAt(listView_->selectionModel()->currentIndex().row());
}

}  // namespace vantor
