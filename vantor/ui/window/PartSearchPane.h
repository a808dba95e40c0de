// The library window's search: a bar above the trees (one field, a switch that widens the
// search to every management window, a button that opens the short lists) and the lists it
// opens in place of the drawing tree while a query stands or the button is down (the hits, the
// favourites, the parts inserted last), so the category tree stays in sight to show where a
// hit lives. It only shows and asks: the frame's search answers the queries and finds the
// chosen part in the window.
#pragma once

#include <QPointer>
#include <QWidget>

#include "vantor/search/PartSearchIndex.h"
#include "vantor/ui/FieldLabels.h"
#include "vantor/ui/PartShortcuts.h"

class QAbstractItemView;
class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QTabWidget;
class QToolButton;
class QTreeView;

namespace vantor {

class SearchHitModel;
class ShortcutListModel;

class PartSearchPane : public QWidget {
    Q_OBJECT
public:
    enum Tab { HitsTab, FavouritesTab, RecentTab };

    PartSearchPane(PartShortcuts& shortcuts, const FieldLabels::Texts& labels,
                   QWidget* parent = nullptr);
    ~PartSearchPane() override;

    // The bar, made without a parent: the frame puts it above the trees and owns it then.
    QWidget* bar() const { return bar_; }
    // Whether the lists should be in sight: a query stands or the list button is down.
    bool wantsLists() const;

    // The hits of the query the field holds, with their count under the lists.
    void showResult(PartSearchResult result);
    // The favourites or the parts inserted last changed elsewhere.
    void shortcutsChanged();

    QString query() const;
    bool everyWindow() const;
    QLineEdit* field() const { return field_; }
    QCheckBox* everyWindowBox() const { return everyWindow_; }
    QTabWidget* tabs() const { return tabs_; }
    QTreeView* hitView() const { return hitView_; }
    QListView* favouriteView() const { return favouriteView_; }
    QListView* recentView() const { return recentView_; }
    QPushButton* insertButton() const { return insert_; }
    QPushButton* favouriteButton() const { return favourite_; }
    QToolButton* listButton() const { return listButton_; }
    // The part the list shown has current; nullopt when none is.
    std::optional<PartShortcut> currentPart() const;

signals:
    void queryChanged(const QString& query, bool everyWindow);
    void partChosen(const vantor::PartShortcut& part);
    void insertRequested(const vantor::PartShortcut& part);
    // A hit or a short list's part is being dragged out: the frame drags its record.
    void dragRequested(const vantor::PartShortcut& part);
    // wantsLists() changed.
    void listsWanted(bool wanted);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildBar();
    void buildLists();
    void wire(QAbstractItemView* view);
    void toggleFavourite();
    void showMenu(QAbstractItemView* view, const QPoint& at);
    void updateButtons();
    QAbstractItemView* shownView() const;

    PartShortcuts& shortcuts_;
    std::unique_ptr<SearchHitModel> hits_;
    std::unique_ptr<ShortcutListModel> favourites_;
    std::unique_ptr<ShortcutListModel> recent_;
    bool listsShown_ = false;  // what listsWanted last said
    QPointer<QWidget> bar_;
    QLineEdit* field_ = nullptr;
    QToolButton* listButton_ = nullptr;
    QCheckBox* everyWindow_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    QTreeView* hitView_ = nullptr;
    QListView* favouriteView_ = nullptr;
    QListView* recentView_ = nullptr;
    QLabel* count_ = nullptr;
    QPushButton* insert_ = nullptr;
    QPushButton* favourite_ = nullptr;
};

}  // namespace vantor
