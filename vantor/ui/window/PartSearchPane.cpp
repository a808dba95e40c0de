#include "vantor/ui/window/PartSearchPane.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <functional>

#include "vantor/ui/models/SearchHitModel.h"
#include "vantor/ui/models/ShortcutListModel.h"

namespace vantor {

namespace {

const QString kAddFavourite = QStringLiteral("즐겨찾기에 추가");
const QString kRemoveFavourite = QStringLiteral("즐겨찾기에서 빼기");
const QString kInsert = QStringLiteral("삽입");

// A list whose drag is handed to the pane, which has the part list drag the record: one drag
// of a part, wherever it starts.
template <typename View>
class DragOutView : public View {
public:
    DragOutView(std::function<void()> drag, QWidget* parent) : View(parent), drag_(std::move(drag)) {
        this->setDragEnabled(true);
        this->setDragDropMode(QAbstractItemView::DragOnly);
    }

protected:
    void startDrag(Qt::DropActions) override { drag_(); }

private:
    std::function<void()> drag_;
};

QListView* makeShortList(const QString& name, std::function<void()> drag, QWidget* parent) {
    auto* view = new DragOutView<QListView>(std::move(drag), parent);
    view->setAccessibleName(name);
    view->setUniformItemSizes(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    return view;
}

}  // namespace

PartSearchPane::PartSearchPane(PartShortcuts& shortcuts, const FieldLabels::Texts& labels,
                               QWidget* parent)
    : QWidget(parent),
      shortcuts_(shortcuts),
      hits_(std::make_unique<SearchHitModel>(labels)),
      favourites_(std::make_unique<ShortcutListModel>(
          [&shortcuts]() -> const std::vector<PartShortcut>& { return shortcuts.favourites(); })),
      recent_(std::make_unique<ShortcutListModel>(
          [&shortcuts]() -> const std::vector<PartShortcut>& { return shortcuts.recent(); })) {
    buildBar();
    buildLists();

    insert_ = new QPushButton(kInsert, this);
    insert_->setAccessibleName(QStringLiteral("고른 부품 삽입"));
    favourite_ = new QPushButton(kAddFavourite, this);
    favourite_->setAccessibleName(QStringLiteral("즐겨찾기 추가 또는 빼기"));
    count_ = new QLabel(this);
    count_->setAccessibleName(QStringLiteral("찾은 부품 수"));

    auto* buttonRow = new QHBoxLayout;
    buttonRow->addWidget(count_, 1);
    buttonRow->addWidget(favourite_);
    buttonRow->addWidget(insert_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    layout->addWidget(tabs_, 1);
    layout->addLayout(buttonRow);

    connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!text.trimmed().isEmpty()) tabs_->setCurrentIndex(HitsTab);
        emit queryChanged(text, everyWindow());
        updateButtons();
    });
    connect(listButton_, &QToolButton::toggled, this, [this](bool down) {
        if (down && query().trimmed().isEmpty()) tabs_->setCurrentIndex(FavouritesTab);
        updateButtons();
    });
    connect(everyWindow_, &QCheckBox::toggled, this,
            [this](bool every) { emit queryChanged(query(), every); });
    connect(tabs_, &QTabWidget::currentChanged, this, [this] { updateButtons(); });
    connect(insert_, &QPushButton::clicked, this, [this] {
        if (std::optional<PartShortcut> part = currentPart()) emit insertRequested(*part);
    });
    connect(favourite_, &QPushButton::clicked, this, [this] { toggleFavourite(); });
    showResult({});
}

PartSearchPane::~PartSearchPane() {
    if (bar_ && bar_->parent() == nullptr) delete bar_;
}

void PartSearchPane::buildBar() {
    bar_ = new QWidget;
    field_ = new QLineEdit(bar_);
    field_->setAccessibleName(QStringLiteral("부품 검색"));
    field_->setPlaceholderText(QStringLiteral("부품 검색: 이름, 규격, 재질, 초성"));
    field_->setToolTip(QStringLiteral("여러 낱말을 띄어 쓰면 모두 담은 부품을 찾습니다. "
                                      "초성만으로도 찾습니다(ㅇㄱㅂㅌ → 육각볼트)."));
    field_->setClearButtonEnabled(true);
    for (QAbstractButton* clear : field_->findChildren<QAbstractButton*>())
        clear->setAccessibleName(QStringLiteral("검색어 지우기"));
    field_->installEventFilter(this);
    everyWindow_ = new QCheckBox(QStringLiteral("모든 관리창"), bar_);
    everyWindow_->setAccessibleName(everyWindow_->text());
    everyWindow_->setToolTip(QStringLiteral("모든 관리창의 도면에서 찾습니다."));
    listButton_ = new QToolButton(bar_);
    listButton_->setText(QStringLiteral("★"));
    listButton_->setCheckable(true);
    listButton_->setAccessibleName(QStringLiteral("즐겨찾기와 최근 삽입 목록"));
    listButton_->setToolTip(listButton_->accessibleName());
    auto* row = new QHBoxLayout(bar_);
    row->setContentsMargins(2, 2, 2, 2);
    row->setSpacing(4);
    row->addWidget(field_, 1);
    row->addWidget(everyWindow_);
    row->addWidget(listButton_);
}

bool PartSearchPane::wantsLists() const {
    return !query().trimmed().isEmpty() || listButton_->isChecked();
}

void PartSearchPane::buildLists() {
    tabs_ = new QTabWidget(this);
    tabs_->setAccessibleName(QStringLiteral("검색 결과와 부품 목록"));
    const auto drag = [this] {
        if (std::optional<PartShortcut> part = currentPart()) emit dragRequested(*part);
    };
    hitView_ = new DragOutView<QTreeView>(drag, tabs_);
    hitView_->setAccessibleName(QStringLiteral("검색 결과"));
    hitView_->setRootIsDecorated(false);
    hitView_->setUniformRowHeights(true);
    hitView_->setAllColumnsShowFocus(true);
    hitView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    hitView_->setModel(hits_.get());
    hitView_->header()->setStretchLastSection(true);
    hitView_->header()->resizeSection(SearchHitModel::KName, 110);
    favouriteView_ = makeShortList(QStringLiteral("즐겨찾기"), drag, tabs_);
    favouriteView_->setModel(favourites_.get());
    recentView_ = makeShortList(QStringLiteral("최근 삽입"), drag, tabs_);
    recentView_->setModel(recent_.get());
    tabs_->addTab(hitView_, QStringLiteral("검색 결과"));
    tabs_->addTab(favouriteView_, QStringLiteral("즐겨찾기"));
    tabs_->addTab(recentView_, QStringLiteral("최근 삽입"));
    for (QAbstractItemView* view : {static_cast<QAbstractItemView*>(hitView_),
                                    static_cast<QAbstractItemView*>(favouriteView_),
                                    static_cast<QAbstractItemView*>(recentView_)})
        wire(view);
}

void PartSearchPane::wire(QAbstractItemView* view) {
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this,
            [this, view](const QPoint& at) { showMenu(view, at); });
    // A click shows the part in the window; a double click or Enter inserts it.
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this, view] {
        updateButtons();
        if (view != shownView()) return;
        if (std::optional<PartShortcut> part = currentPart()) emit partChosen(*part);
    });
    connect(view, &QAbstractItemView::activated, this, [this] {
        if (std::optional<PartShortcut> part = currentPart()) emit insertRequested(*part);
    });
}

void PartSearchPane::showResult(PartSearchResult result) {
    hits_->setResult(std::move(result));
    const bool asked = !query().trimmed().isEmpty();
    count_->setText(!asked ? QString()
                    : hits_->rowCount() == 0
                        ? QStringLiteral("찾는 부품이 없습니다.")
                        : QStringLiteral("부품 %1개").arg(hits_->rowCount()));
    updateButtons();
}

void PartSearchPane::shortcutsChanged() {
    favourites_->refresh();
    recent_->refresh();
    updateButtons();
}

QString PartSearchPane::query() const { return field_->text(); }

bool PartSearchPane::everyWindow() const { return everyWindow_->isChecked(); }

QAbstractItemView* PartSearchPane::shownView() const {
    switch (tabs_->currentIndex()) {
        case FavouritesTab:
            return favouriteView_;
        case RecentTab:
            return recentView_;
        default:
            return hitView_;
    }
}

std::optional<PartShortcut> PartSearchPane::currentPart() const {
    const int row = shownView()->currentIndex().row();
    switch (tabs_->currentIndex()) {
        case FavouritesTab:
            return favourites_->partAt(row);
        case RecentTab:
            return recent_->partAt(row);
        default:
            return hits_->partAt(row);
    }
}

void PartSearchPane::toggleFavourite() {
    const std::optional<PartShortcut> part = currentPart();
    if (!part) return;
    if (shortcuts_.isFavourite(*part)) {
        shortcuts_.removeFavourite(*part);
    } else if (!shortcuts_.addFavourite(*part)) {
        count_->setText(QStringLiteral("즐겨찾기는 %1개까지입니다.").arg(PartShortcuts::kFavouriteLimit));
        return;
    }
    favourites_->refresh();
    updateButtons();
}

void PartSearchPane::showMenu(QAbstractItemView* view, const QPoint& at) {
    if (!view->indexAt(at).isValid()) return;
    view->setCurrentIndex(view->indexAt(at));
    const std::optional<PartShortcut> part = currentPart();
    if (!part) return;
    QMenu menu(this);
    menu.addAction(kInsert, this, [this, part] { emit insertRequested(*part); });
    menu.addAction(shortcuts_.isFavourite(*part) ? kRemoveFavourite : kAddFavourite, this,
                   [this] { toggleFavourite(); });
    menu.exec(view->viewport()->mapToGlobal(at));
}

void PartSearchPane::updateButtons() {
    if (wantsLists() != listsShown_) {
        listsShown_ = wantsLists();
        emit listsWanted(listsShown_);
    }
    const std::optional<PartShortcut> part = currentPart();
    insert_->setEnabled(part.has_value());
    favourite_->setEnabled(part.has_value());
    favourite_->setText(part && shortcuts_.isFavourite(*part) ? kRemoveFavourite : kAddFavourite);
}

bool PartSearchPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape && (!field_->text().isEmpty() || listButton_->isChecked())) {
            field_->clear();
            listButton_->setChecked(false);
            return true;
        }
        // Down from the field into the hits, as in a browser's address bar.
        if (key == Qt::Key_Down && hits_->rowCount() > 0) {
            tabs_->setCurrentIndex(HitsTab);
            hitView_->setFocus();
            if (!hitView_->currentIndex().isValid()) hitView_->setCurrentIndex(hits_->index(0, 0));
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace vantor
