// The drawing view of the main window: paints the current document's drawing from its kept
// picture and, over it, what follows the mouse (crosshair and pick box, rubber line or
// window, snap marker, the dragged entity, the selection's highlight). Wheel zooms about the
// cursor, the middle button pans, a middle double-click zooms to the extents; the viewing
// commands act on it too; the tabs below switch between model space and the layouts. At the
// command prompt clicks select (the pick-first set); while a command waits for a point,
// clicks answer it, snapped to the geometry under the cursor by the running snaps. The view
// logic lives in cad::gs (DrawingView, EntityPicker, ObjectSnap, PickfirstSelection).
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "cad/app/ViewPort.h"
#include "cad/app/CommandDrop.h"
#include "cad/ed/DragPreview.h"
#include "cad/ed/HitTester.h"
#include "cad/ed/InputRequest.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/ObjectSnap.h"

class QTabBar;

namespace cad::app {
class Document;
}
namespace cad::gs {
class DrawingView;
class PickfirstSelection;
}  // namespace cad::gs

namespace cad::gui {

class DrawingViewWidget : public QWidget,
                          public ed::DragPreview,
                          public ed::HitTester,
                          public app::ViewPort {
    Q_OBJECT
public:
    explicit DrawingViewWidget(QWidget* parent = nullptr);
    ~DrawingViewWidget() override;

    // nullptr when no drawing is open.
    void setDocument(app::Document* document);
    app::Document* document() const { return document_; }
    // The document goes: its view goes with it.
    void forgetDocument(app::Document* document);
    // The current document's view; nullptr without a document.
    gs::DrawingView* view() const;
    QTabBar* layoutTabs() const { return layoutTabs_; }

    // What the editor waits for (a rubber line from its base point, snapping); nullopt when
    // nothing: clicks then select.
    void setRequest(std::optional<ed::InputRequest> request);
    // The running snaps (OSMODE bits), asked for as the cursor moves.
    void setSnapModes(std::function<int()> modes) { snapModes_ = std::move(modes); }
    // A command may have changed the drawing: its geometry is built again, and the selection
    // is given up (what it held may be gone).
    void drawingChanged();

    // Shows the drawing about `centre`, `height` drawing units top to bottom (a view a command
    // made current).
    void showView(const ge::Point2d& centre, double height);

    // The pick-first set of the current document.
    std::vector<db::ObjectId> selection() const;
    void clearSelection();
    const std::optional<gs::SnapPoint>& snap() const { return snap_; }

    void dragImageChanged(const db::Entity* entity) override;
    void dragEnded() override;

    std::vector<db::ObjectId> entitiesAt(const ge::Point3d& point) override;
    std::vector<db::ObjectId> entitiesIn(const ge::Point3d& corner1, const ge::Point3d& corner2,
                                         bool crossing) override;

    void zoomExtents() override;
    void zoomWindow(const ge::Point3d& corner1, const ge::Point3d& corner2) override;
    bool zoomPrevious() override;
    void zoomScale(double factor) override;
    void pan(const ge::Vector3d& displacement) override;
    void regen() override { drawingChanged(); }
    void redraw() override;

signals:
    // A left click while a command waits, in drawing units (snapped when a snap was shown).
    void pointPicked(double x, double y, bool shift);
    // The cursor moved to a point of the drawing.
    void pointerMoved(double x, double y);
    // The pick-first set changed.
    void selectionChanged();
    // The user or a viewing command moved the view (its centre or its scale).
    void viewChanged();
    // A command string was dropped at a point of the drawing.
    void commandDropped(const QString& command, double x, double y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct DocumentState;
    DocumentState* state() const;
    QRect drawingRect() const;
    double pickRadius() const;
    void refreshLayoutTabs();
    void selectionEdited();
    void viewMoved();
    void updateSnap(const QPoint& at);
    void paintOverlays(QPainter& painter, gs::DrawingView& view);
    void paintSnapMarker(QPainter& painter, const QPointF& at, gs::SnapMode mode);
    void paintDraggedSelection(QPainter& painter, gs::DrawingView& view);

    app::Document* document_ = nullptr;
    std::unordered_map<app::Document*, std::unique_ptr<DocumentState>> states_;
    QTabBar* layoutTabs_;
    std::optional<ed::InputRequest> request_;
    std::function<int()> snapModes_;
    std::optional<gs::SnapPoint> snap_;
    std::optional<gs::DisplayList> dragged_;
    std::optional<gs::DisplayList> draggedSelection_;  // what MOVE, COPY or ROTATE moves
    std::optional<QPoint> cursor_;
    std::optional<QPoint> panFrom_;
    std::optional<ge::Point2d> droppedAt_;  // where a dropped command's first request starts
};

}  // namespace cad::gui
