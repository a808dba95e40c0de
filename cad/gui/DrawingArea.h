// The drawing area of the main window. Until the drawing view comes it shows which drawing is
// current and how many entities its model space holds, so the window is never blank.
#pragma once

#include <QWidget>
#include <optional>

namespace cad::app {
class Document;
}
namespace cad::db {
class Database;
}

namespace cad::gui {

class DrawingArea : public QWidget {
    Q_OBJECT
public:
    explicit DrawingArea(QWidget* parent = nullptr);

    // nullptr when no drawing is open. The owner clears it before the document goes.
    void setDocument(app::Document* document);
    app::Document* document() const { return document_; }

    // The entities of model space; nullopt while model space cannot be opened for reading
    // (a command holds it open for writing).
    static std::optional<std::size_t> modelSpaceEntityCount(db::Database& database);
    // The two lines the area shows.
    QString caption() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    app::Document* document_ = nullptr;
};

}  // namespace cad::gui
