// The data pane: the blocks of the chosen drawing as icons (each block's stored preview), as a
// list, or with details ("Block name", "Description"), the style kept in the settings.
#pragma once

#include <QStackedWidget>
#include <string>

class QListView;
class QTreeView;

namespace vantor {

class BlockListModel;
class ModuleSettings;

class CRecListView : public QStackedWidget {
    Q_OBJECT
public:
    // The display styles as the settings keep them (a list view's style bits).
    enum Style { Icons = 0, Details = 1, List = 3 };

    CRecListView(BlockListModel& model, ModuleSettings& settings, QWidget* parent = nullptr);

    Style style() const;
    void setStyle(Style style);
    std::string currentBlock() const;

signals:
    void blockChosen(const std::string& name);

private:
    BlockListModel& model_;
    ModuleSettings& settings_;
    QListView* listView_;
    QTreeView* detailsView_;
};

}  // namespace vantor
