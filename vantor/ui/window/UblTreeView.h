// The drawing tree: the registered drawings of the current management window. Choosing one
// shows its blocks and its libraries.
#pragma once

#include <QTreeView>
#include <string>

namespace vantor {

class DrawingTreeModel;

class CUblTreeView : public QTreeView {
    Q_OBJECT
public:
    explicit CUblTreeView(DrawingTreeModel& model, QWidget* parent = nullptr);

    // The drawing chosen, or an empty path.
    std::string currentPath() const;
    void selectPath(const std::string& path);

signals:
    void drawingChosen(const std::string& path);

private:
    DrawingTreeModel& model_;
};

}  // namespace vantor
