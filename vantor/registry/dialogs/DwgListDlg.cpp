// The registered-drawing dialog.
#include "vantor/registry/dialogs/DwgListDlg.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "cad/app/UserDialogs.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/operations/DrawingListRow.h"
#include "vantor/registry/operations/DrawingRegistration.h"

namespace vantor {

namespace {

constexpr int kEntryRole = Qt::UserRole + 1;

QString fromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QPushButton* button(const char* text, int id, QWidget* parent) {
    auto* made = new QPushButton(QString::fromUtf8(text), parent);
    made->setObjectName(QStringLiteral("id%1").arg(id));
    made->setAccessibleName(made->text());
    made->setAutoDefault(false);
    return made;
}

// An inactive drawing (its library data could not be read) is the file greyed out with a red
// cross, so the rows optimise would remove stand out at a glance.
QIcon inactiveIconFrom(const QIcon& file) {
    QPixmap pixmap = file.pixmap(16, 16, QIcon::Disabled);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(200, 30, 30), 2));
    painter.drawLine(8, 8, 15, 15);
    painter.drawLine(15, 8, 8, 15);
    return QIcon(pixmap);
}

}  // namespace

CDwgListDlg::CDwgListDlg(DrawingRegistration& registration, DrawingList& list,
                         ModuleSettings& settings, QWidget* parent)
    : QDialog(parent), registration_(registration), list_(list), settings_(settings) {
    setWindowTitle(QString::fromUtf8("등록된 부품도면 리스트"));
    activeIcon_ = style()->standardIcon(QStyle::SP_FileIcon);
    inactiveIcon_ = inactiveIconFrom(activeIcon_);

    drawings_ = new QTreeWidget(this);
    drawings_->setObjectName(QStringLiteral("id%1").arg(kListId));
    drawings_->setAccessibleName(QString::fromUtf8("등록된 부품도면"));
    drawings_->setColumnCount(3);
    drawings_->setHeaderLabels(
        {QString::fromUtf8("도면"), QString::fromUtf8("드라이브"), QString::fromUtf8("폴더")});
    drawings_->setRootIsDecorated(false);
    drawings_->setUniformRowHeights(true);
    drawings_->setAllColumnsShowFocus(true);
    drawings_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    drawings_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    drawings_->header()->setStretchLastSection(true);
    drawings_->header()->setSectionsMovable(false);
    drawings_->setColumnWidth(0, 180);
    drawings_->setColumnWidth(1, 80);
    drawings_->setMinimumSize(520, 260);
    connect(drawings_, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { openRow(item); });

    QPushButton* addButton = button("추   가", kAddId, this);
    QPushButton* removeButton = button("제   거", kRemoveId, this);
    QPushButton* optimiseButton = button("최적화", kOptimiseId, this);
    QPushButton* openButton = button("도면 열기", kOpenId, this);
    QPushButton* closeButton = button("닫   기", cad::app::IDCANCEL, this);
    connect(addButton, &QPushButton::clicked, this, &CDwgListDlg::add);
    connect(removeButton, &QPushButton::clicked, this, &CDwgListDlg::remove);
    connect(optimiseButton, &QPushButton::clicked, this, &CDwgListDlg::optimise);
    connect(openButton, &QPushButton::clicked, this, &CDwgListDlg::openSelected);
    connect(closeButton, &QPushButton::clicked, this, &CDwgListDlg::reject);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* each : {addButton, removeButton, optimiseButton, openButton})
        buttons->addWidget(each);
    buttons->addStretch(1);
    buttons->addWidget(closeButton);

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(drawings_, 1);
    layout->addLayout(buttons);
    refill();
}

void CDwgListDlg::refill() {
    drawings_->clear();
    QList<QTreeWidgetItem*> items;
    for (const DrawingListRow& row : DrawingListRow::rowsOf(list_)) {
        auto* item = new QTreeWidgetItem;
        item->setText(0, fromUtf8(row.name));
        item->setText(1, fromUtf8(row.drive));
        item->setText(2, fromUtf8(row.dir));
        item->setIcon(0, row.image == DrawingListRow::kActiveImage ? activeIcon_ : inactiveIcon_);
        item->setToolTip(0, fromUtf8(row.entry->path));
        item->setData(0, kEntryRole, QVariant::fromValue(reinterpret_cast<quintptr>(row.entry)));
        items.append(item);
    }
    drawings_->addTopLevelItems(items);
}

std::vector<const RegisteredDrawing*> CDwgListDlg::selectedEntries() const {
    // In row order, whatever order the user picked them in.
    std::vector<const RegisteredDrawing*> entries;
    for (int row = 0; row < drawings_->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = drawings_->topLevelItem(row);
        if (!item->isSelected()) continue;
        entries.push_back(reinterpret_cast<const RegisteredDrawing*>(
            item->data(0, kEntryRole).value<quintptr>()));
    }
    return entries;
}

void CDwgListDlg::add() {
    // The list may also be loaded again from its file (another program saved it meanwhile),
    // which the frame must show as much as the drawings added.
    const std::vector<std::string> before = list_.paths();
    registration_.addThroughDialog();
    if (list_.paths() != before) listChanged_ = true;
    refill();
}

void CDwgListDlg::remove() {
    const std::vector<const RegisteredDrawing*> selected = selectedEntries();
    if (selected.empty()) return;
    if (registration_.removeSelected(selected)) listChanged_ = true;
    refill();
}

void CDwgListDlg::optimise() {
    if (registration_.optimise() > 0) listChanged_ = true;
    refill();
}

void CDwgListDlg::openSelected() {
    open(selectedEntries());
}

void CDwgListDlg::openRow(QTreeWidgetItem* item) {
    if (item == nullptr) return;
    open({reinterpret_cast<const RegisteredDrawing*>(item->data(0, kEntryRole).value<quintptr>())});
}

void CDwgListDlg::open(const std::vector<const RegisteredDrawing*>& entries) {
    // A batch still being opened keeps the queue; the dialog stays for another try.
    if (!registration_.queueForOpening(entries, settings_)) return;
    drawingsQueued_ = true;
    accept();
}

}  // namespace vantor
