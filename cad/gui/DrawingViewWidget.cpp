// The drawing view widget: events in, pictures out.
#include "cad/gui/DrawingViewWidget.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTimer>
#include <QWheelEvent>
#include <cmath>

#include "cad/app/Document.h"
#include "cad/gs/DrawingView.h"
#include "cad/gs/EntityPicker.h"
#include "cad/gs/PickfirstSelection.h"
#include "cad/gs/SceneRenderer.h"

namespace cad::gui {

namespace {

const QColor kBackground(33, 40, 48);
const QColor kCursor(200, 206, 212);
const QColor kRubber(230, 230, 230);
const QColor kDragged(250, 250, 250);
const QColor kHighlight(80, 160, 255);
const QColor kSnapMarker(255, 200, 0);
constexpr int kPickBox = 4;          // pixels from the cursor to the pick box's sides
constexpr int kAperture = 10;        // pixels within which a snap is taken
constexpr int kMarker = 6;           // half the size of a snap marker
constexpr double kWheelStep = 1.25;  // zoom factor of one wheel notch

bool takesPoints(const std::optional<ed::InputRequest>& request) {
    using Kind = ed::InputRequest::Kind;
    if (!request) return false;
    switch (request->kind) {
    case Kind::Point:
    case Kind::Corner:
    case Kind::Angle:
    case Kind::Distance:
    case Kind::Drag: return true;
    default: return false;
    }
}

}  // namespace

struct DrawingViewWidget::DocumentState {
    explicit DocumentState(db::Database& database) : view(database) {}
    gs::DrawingView view;
    gs::PickfirstSelection selection;
    std::optional<gs::DisplayList> highlight;
};

DrawingViewWidget::DrawingViewWidget(QWidget* parent)
    : QWidget(parent), layoutTabs_(new QTabBar(this)) {
    setMinimumSize(320, 200);
    setMouseTracking(true);
    setCursor(Qt::BlankCursor);  // the crosshair is drawn
    setFocusPolicy(Qt::ClickFocus);
    setAccessibleName(tr("Drawing"));
    setAcceptDrops(true);
    layoutTabs_->setShape(QTabBar::RoundedSouth);
    layoutTabs_->setDocumentMode(true);
    layoutTabs_->setExpanding(false);
    layoutTabs_->setAccessibleName(tr("Layouts"));
    layoutTabs_->setCursor(Qt::ArrowCursor);
    connect(layoutTabs_, &QTabBar::currentChanged, this, [this](int index) {
        DocumentState* current = state();
        if (current == nullptr || index < 0) return;
        current->view.showLayout(layoutTabs_->tabText(index).toStdString());
        clearSelection();
        update();
    });
    refreshLayoutTabs();
}

DrawingViewWidget::~DrawingViewWidget() = default;

DrawingViewWidget::DocumentState* DrawingViewWidget::state() const {
    auto it = states_.find(document_);
    return it != states_.end() ? it->second.get() : nullptr;
}

gs::DrawingView* DrawingViewWidget::view() const {
    DocumentState* current = state();
    return current ? &current->view : nullptr;
}

void DrawingViewWidget::setDocument(app::Document* document) {
    if (document != nullptr && document->database() == nullptr) document = nullptr;
    if (document == document_) return;
    document_ = document;
    if (document_ != nullptr && !states_.contains(document_)) {
        auto made = std::make_unique<DocumentState>(*document_->database());
        made->view.setBackground(kBackground);
        states_.emplace(document_, std::move(made));
    }
    dragged_.reset();
    snap_.reset();
    refreshLayoutTabs();
    emit selectionChanged();
    update();
}

void DrawingViewWidget::forgetDocument(app::Document* document) {
    if (document == document_) setDocument(nullptr);
    states_.erase(document);
}

void DrawingViewWidget::refreshLayoutTabs() {
    QSignalBlocker quiet(layoutTabs_);
    while (layoutTabs_->count() > 0) layoutTabs_->removeTab(0);
    gs::DrawingView* current = view();
    layoutTabs_->setVisible(current != nullptr);
    if (current == nullptr) return;
    for (const std::string& name : current->layoutNames()) {
        const int index = layoutTabs_->addTab(QString::fromStdString(name));
        if (name == current->layout()) layoutTabs_->setCurrentIndex(index);
    }
}

void DrawingViewWidget::setRequest(std::optional<ed::InputRequest> request) {
    request_ = std::move(request);
    // The command a drop started drags from the drop point, not from wherever the mouse
    // goes next.
    if (request_ && droppedAt_) {
        const ge::Point2d at = *droppedAt_;
        droppedAt_.reset();
        QTimer::singleShot(0, this, [this, at] { emit pointerMoved(at.x, at.y); });
    }
    if (!takesPoints(request_)) snap_.reset();
    draggedSelection_.reset();
    if (gs::DrawingView* current = view(); current && request_ && request_->basePoint && !request_->dragged.empty())
        draggedSelection_ = current->scene().entitiesList(request_->dragged);
    if (DocumentState* current = state(); current && request_) current->selection.cancelWindow();
    update();
}

void DrawingViewWidget::drawingChanged() {
    if (DocumentState* current = state()) {
        current->view.drawingChanged();
        if (current->selection.clear()) selectionEdited();
    }
    refreshLayoutTabs();
    update();
}

std::vector<db::ObjectId> DrawingViewWidget::selection() const {
    DocumentState* current = state();
    return current ? current->selection.ids() : std::vector<db::ObjectId>{};
}

void DrawingViewWidget::clearSelection() {
    DocumentState* current = state();
    if (current != nullptr && current->selection.clear()) selectionEdited();
    update();
}

void DrawingViewWidget::selectionEdited() {
    DocumentState* current = state();
    if (current == nullptr) return;
    current->highlight.reset();
    if (!current->selection.ids().empty())
        current->highlight = current->view.scene().entitiesList(current->selection.ids());
    emit selectionChanged();
}

void DrawingViewWidget::dragImageChanged(const db::Entity* entity) {
    gs::DrawingView* current = view();
    if (current == nullptr || entity == nullptr)
        dragged_.reset();
    else
        dragged_ = current->scene().entityList(*entity);
    update();
}

void DrawingViewWidget::dragEnded() {
    dragged_.reset();
    update();
}

double DrawingViewWidget::pickRadius() const {
    gs::DrawingView* current = view();
    return current ? kPickBox / current->transform().pixelsPerUnit() : 0.0;
}

std::vector<db::ObjectId> DrawingViewWidget::entitiesAt(const ge::Point3d& point) {
    gs::DrawingView* current = view();
    if (current == nullptr) return {};
    return gs::EntityPicker(current->scene(), current->block()).entitiesAt({point.x, point.y}, pickRadius());
}

std::vector<db::ObjectId> DrawingViewWidget::entitiesIn(const ge::Point3d& corner1, const ge::Point3d& corner2,
                                                        bool crossing) {
    gs::DrawingView* current = view();
    if (current == nullptr) return {};
    gs::Box2d box;
    box.add(corner1.x, corner1.y);
    box.add(corner2.x, corner2.y);
    return gs::EntityPicker(current->scene(), current->block()).entitiesIn(box, crossing);
}

void DrawingViewWidget::zoomExtents() {
    if (gs::DrawingView* current = view()) current->zoomExtents();
    viewMoved();
}

void DrawingViewWidget::zoomWindow(const ge::Point3d& corner1, const ge::Point3d& corner2) {
    gs::Box2d window;
    window.add(corner1.x, corner1.y);
    window.add(corner2.x, corner2.y);
    if (gs::DrawingView* current = view()) current->zoomWindow(window);
    viewMoved();
}

bool DrawingViewWidget::zoomPrevious() {
    gs::DrawingView* current = view();
    const bool done = current != nullptr && current->zoomPrevious();
    viewMoved();
    return done;
}

void DrawingViewWidget::zoomScale(double factor) {
    gs::DrawingView* current = view();
    if (current == nullptr) return;
    const gs::ViewTransform& shown = current->transform();
    current->zoomAbout(shown.deviceWidth() / 2, shown.deviceHeight() / 2, factor);
    viewMoved();
}

void DrawingViewWidget::pan(const ge::Vector3d& displacement) {
    if (gs::DrawingView* current = view()) current->panDrawing(displacement.x, displacement.y);
    viewMoved();
}

void DrawingViewWidget::redraw() {
    if (gs::DrawingView* current = view()) current->redraw();
    update();
}

void DrawingViewWidget::viewMoved() {
    emit viewChanged();
    update();
}

void DrawingViewWidget::showView(const ge::Point2d& centre, double height) {
    gs::DrawingView* current = view();
    if (current == nullptr) return;
    const gs::ViewTransform& shown = current->transform();
    current->setTransform(gs::ViewTransform(centre, height, shown.deviceWidth(), shown.deviceHeight()));
    update();
}

QRect DrawingViewWidget::drawingRect() const {
    QRect area = rect();
    if (layoutTabs_->isVisible()) area.setBottom(area.bottom() - layoutTabs_->sizeHint().height());
    return area;
}

void DrawingViewWidget::resizeEvent(QResizeEvent*) {
    const int tabsHeight = layoutTabs_->sizeHint().height();
    layoutTabs_->setGeometry(0, height() - tabsHeight, width(), tabsHeight);
}

void DrawingViewWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect area = drawingRect();
    gs::DrawingView* current = view();
    if (current == nullptr) {
        painter.fillRect(area, kBackground);
        painter.setPen(kCursor);
        painter.drawText(area, Qt::AlignCenter, tr("No drawing open"));
        return;
    }
    const bool opening = !current->isSized();
    current->setDeviceSize(area.width(), area.height());
    if (opening) emit viewChanged();
    painter.drawImage(area.topLeft(), current->image());
    painter.setClipRect(area);
    paintOverlays(painter, *current);
}

void DrawingViewWidget::paintOverlays(QPainter& painter, gs::DrawingView& view) {
    const QRectF area = drawingRect();
    const gs::Box2d clip{area.left(), area.top(), area.right(), area.bottom()};
    auto drawList = [&](const gs::DisplayList& list, const QColor& colour) {
        gs::RenderOptions options;
        options.background = kBackground;
        options.override = colour;
        gs::SceneRenderer renderer(view.scene(), painter, options);
        renderer.drawEntities(list, view.transform().worldToDevice(), clip);
    };
    if (DocumentState* current = state(); current && current->highlight) drawList(*current->highlight, kHighlight);
    if (dragged_) drawList(*dragged_, kDragged);
    if (!cursor_) return;
    const QPointF at = *cursor_;
    if (draggedSelection_) paintDraggedSelection(painter, view);
    std::optional<QPointF> base;
    if (request_ && request_->basePoint) {
        const ge::Point2d p = view.transform().toDevice({request_->basePoint->x, request_->basePoint->y});
        base = QPointF(p.x, p.y);
    }
    const bool window = request_ ? request_->kind == ed::InputRequest::Kind::Corner : false;
    if (DocumentState* current = state(); current && !request_ && current->selection.windowCorner()) {
        const ge::Point2d p = view.transform().toDevice(*current->selection.windowCorner());
        base = QPointF(p.x, p.y);
    }
    // The rubber band ends where a click would land: at the snap when there is one.
    QPointF end = at;
    if (snap_) {
        const ge::Point2d p = view.transform().toDevice(snap_->point);
        end = QPointF(p.x, p.y);
    }
    if (base) {
        const bool boxed = window || !request_;
        // A window dragged to the left crosses: drawn dashed, as users know it.
        const bool crossing = boxed && end.x() < base->x();
        painter.setPen(QPen(kRubber, 0, crossing || !boxed ? Qt::DashLine : Qt::SolidLine));
        if (boxed)
            painter.drawRect(QRectF(*base, end).normalized());
        else
            painter.drawLine(*base, end);
    }
    if (snap_) {
        const ge::Point2d p = view.transform().toDevice(snap_->point);
        paintSnapMarker(painter, QPointF(p.x, p.y), snap_->mode);
    }
    painter.setPen(QPen(kCursor, 0));
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(QPointF(area.left(), at.y()), QPointF(area.right(), at.y()));
    painter.drawLine(QPointF(at.x(), area.top()), QPointF(at.x(), area.bottom()));
    painter.drawRect(QRectF(at.x() - kPickBox, at.y() - kPickBox, 2 * kPickBox, 2 * kPickBox));
}

void DrawingViewWidget::paintDraggedSelection(QPainter& painter, gs::DrawingView& view) {
    // The selection moved from the base point to where a click would land, or turned about
    // the base point towards it.
    const ge::Point2d base{request_->basePoint->x, request_->basePoint->y};
    const ge::Point2d to = snap_ ? snap_->point : view.toWorld(cursor_->x(), cursor_->y());
    gs::Affine2d motion = gs::Affine2d::translation(to.x - base.x, to.y - base.y);
    if (request_->motion == ed::InputRequest::Motion::Rotate) {
        const double angle = std::atan2(to.y - base.y, to.x - base.x);
        const double c = std::cos(angle), s = std::sin(angle);
        motion = gs::Affine2d::translation(base.x, base.y) * gs::Affine2d{c, s, -s, c, 0.0, 0.0} *
                 gs::Affine2d::translation(-base.x, -base.y);
    }
    const QRectF area = drawingRect();
    gs::RenderOptions options;
    options.background = kBackground;
    options.override = kDragged;
    gs::SceneRenderer renderer(view.scene(), painter, options);
    renderer.drawEntities(*draggedSelection_, view.transform().worldToDevice() * motion,
                          {area.left(), area.top(), area.right(), area.bottom()});
}

void DrawingViewWidget::paintSnapMarker(QPainter& painter, const QPointF& at, gs::SnapMode mode) {
    painter.setPen(QPen(kSnapMarker, 2));
    painter.setBrush(Qt::NoBrush);
    const double m = kMarker;
    const QRectF square(at.x() - m, at.y() - m, 2 * m, 2 * m);
    switch (mode) {
    case gs::kSnapEndpoint: painter.drawRect(square); break;
    case gs::kSnapMidpoint:
        painter.drawPolygon(QPolygonF({QPointF(at.x(), at.y() - m), QPointF(at.x() + m, at.y() + m),
                                       QPointF(at.x() - m, at.y() + m)}));
        break;
    case gs::kSnapCenter: painter.drawEllipse(at, m, m); break;
    case gs::kSnapNode:
        painter.drawEllipse(at, m, m);
        painter.drawLine(square.topLeft(), square.bottomRight());
        painter.drawLine(square.topRight(), square.bottomLeft());
        break;
    case gs::kSnapQuadrant:
        painter.drawPolygon(QPolygonF({QPointF(at.x(), at.y() - m), QPointF(at.x() + m, at.y()),
                                       QPointF(at.x(), at.y() + m), QPointF(at.x() - m, at.y())}));
        break;
    case gs::kSnapIntersection:
        painter.drawLine(square.topLeft(), square.bottomRight());
        painter.drawLine(square.topRight(), square.bottomLeft());
        break;
    case gs::kSnapInsertion:
        painter.drawRect(square);
        painter.drawRect(square.adjusted(m / 2, m / 2, -m / 2, -m / 2));
        break;
    default:  // nearest: an hourglass
        painter.drawPolygon(QPolygonF({square.topLeft(), square.topRight(), square.bottomLeft(), square.bottomRight()}));
    }
}

void DrawingViewWidget::updateSnap(const QPoint& at) {
    snap_.reset();
    gs::DrawingView* current = view();
    if (current == nullptr || !takesPoints(request_) || !snapModes_) return;
    const ge::Point2d world = current->toWorld(at.x(), at.y());
    snap_ = gs::findSnap(current->scene(), current->block(), world,
                         kAperture / current->transform().pixelsPerUnit(), snapModes_());
}

void DrawingViewWidget::wheelEvent(QWheelEvent* event) {
    gs::DrawingView* current = view();
    const double notches = event->angleDelta().y() / 120.0;
    if (current == nullptr || notches == 0.0) return;
    current->zoomAbout(event->position().x(), event->position().y(), std::pow(kWheelStep, notches));
    viewMoved();
}

void DrawingViewWidget::mousePressEvent(QMouseEvent* event) {
    DocumentState* current = state();
    if (current == nullptr) return;
    if (event->button() == Qt::MiddleButton) {
        current->view.beginPan();
        panFrom_ = event->position().toPoint();
        return;
    }
    if (event->button() != Qt::LeftButton) return;
    const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
    ge::Point2d at = current->view.toWorld(event->position().x(), event->position().y());
    if (request_) {
        if (snap_ && takesPoints(request_)) at = snap_->point;
        emit pointPicked(at.x, at.y, shift);
        return;
    }
    const gs::EntityPicker picker(current->view.scene(), current->view.block());
    if (current->selection.click(picker, at, pickRadius(), shift)) selectionEdited();
    update();
}

void DrawingViewWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    cursor_ = at;
    gs::DrawingView* current = view();
    if (current == nullptr) return;
    if (panFrom_) {
        current->panBy(at.x() - panFrom_->x(), at.y() - panFrom_->y());
        panFrom_ = at;
        emit viewChanged();
    }
    updateSnap(at);
    const ge::Point2d world = snap_ ? snap_->point : current->toWorld(at.x(), at.y());
    emit pointerMoved(world.x, world.y);
    update();
}

void DrawingViewWidget::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasFormat(app::kCommandMimeType) && view() != nullptr)
        event->acceptProposedAction();
}

void DrawingViewWidget::dragMoveEvent(QDragMoveEvent* event) {
    if (event->mimeData()->hasFormat(app::kCommandMimeType) && view() != nullptr)
        event->acceptProposedAction();
}

void DrawingViewWidget::dropEvent(QDropEvent* event) {
    gs::DrawingView* current = view();
    if (current == nullptr || !event->mimeData()->hasFormat(app::kCommandMimeType)) return;
    event->acceptProposedAction();
    const QPoint at = event->position().toPoint();
    const ge::Point2d world = current->toWorld(at.x(), at.y());
    droppedAt_ = world;
    const QString command = QString::fromUtf8(event->mimeData()->data(app::kCommandMimeType));
    emit commandDropped(command, world.x, world.y);
}

void DrawingViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) panFrom_.reset();
}

void DrawingViewWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    gs::DrawingView* current = view();
    if (current == nullptr) return;
    if (event->button() == Qt::MiddleButton) {
        current->zoomExtents();
        viewMoved();
        return;
    }
    mousePressEvent(event);
}

void DrawingViewWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !request_) {
        clearSelection();
        return;
    }
    QWidget::keyPressEvent(event);
}

void DrawingViewWidget::leaveEvent(QEvent*) {
    cursor_.reset();
    snap_.reset();
    update();
}

}  // namespace cad::gui
