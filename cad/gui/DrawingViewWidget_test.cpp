// The drawing view driven as a user drives it, offscreen: the wheel zooms about the cursor,
// the middle button pans and its double-click shows everything, clicks at the command prompt
// select (Shift takes away, Esc lets go), while a command waits a click answers it at the
// snapped point, and the layout tabs switch spaces.
#include "cad/gui/DrawingViewWidget.h"

#include <gtest/gtest.h>

#include <QMimeData>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

#include "cad/app/Application.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Circle.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/gs/DrawingView.h"
#include "cad/gui/TestApplication.h"

namespace cad::gui {
namespace {

class DrawingViewWidgetTest : public testing::Test {
protected:
    DrawingViewWidgetTest() {
        app_.documentManager().appContextNewDocument();
        document_ = app_.documentManager().curDocument();
        line_ = add(std::make_unique<db::Line>(ge::Point3d{0, 0, 0}, ge::Point3d{100, 0, 0}));
        circle_ = add(std::make_unique<db::Circle>(ge::Point3d{50, 50, 0}, ge::Vector3d::kZAxis, 20.0));
        widget_.resize(400, 330);
        widget_.setDocument(document_);
        widget_.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget_));
        widget_.setSnapModes([] { return gs::kSnapEndpoint | gs::kSnapCenter; });
    }
    db::ObjectId add(std::unique_ptr<db::Entity> entity) {
        db::ObjectId id;
        db::open<db::BlockTableRecord>(document_->database()->modelSpaceId(), db::OpenMode::ForWrite)
            ->appendEntity(std::move(entity), id);
        return id;
    }
    // Where a drawing point is in the widget.
    QPoint at(double x, double y) {
        const ge::Point2d p = widget_.view()->transform().toDevice({x, y});
        return QPoint(int(std::lround(p.x)), int(std::lround(p.y)));
    }
    void wheel(QPoint where, int notches) {
        QWheelEvent event(where, widget_.mapToGlobal(where), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget_, &event);
    }

    QApplication& qt_ = testApplication();
    app::Application app_;
    app::Document* document_ = nullptr;
    db::ObjectId line_, circle_;
    DrawingViewWidget widget_;
};

TEST_F(DrawingViewWidgetTest, WheelZoomsAboutTheCursorAndTheMiddleButtonPans) {
    QTest::qWait(1);  // the first paint opens the view at the extents
    gs::DrawingView* view = widget_.view();
    ASSERT_NE(view, nullptr);
    const QPoint cursor = at(100, 0);
    const ge::Point2d under = view->toWorld(cursor.x(), cursor.y());
    const double height = view->transform().height();
    wheel(cursor, 2);
    EXPECT_NEAR(view->transform().height(), height / 1.5625, 1e-9);
    const ge::Point2d still = view->toWorld(cursor.x(), cursor.y());
    EXPECT_NEAR(still.x, under.x, 1e-9) << "the point under the cursor stays";
    EXPECT_NEAR(still.y, under.y, 1e-9);

    const ge::Point2d centre = view->transform().centre();
    QTest::mousePress(&widget_, Qt::MiddleButton, Qt::NoModifier, QPoint(200, 150));
    QTest::mouseMove(&widget_, QPoint(230, 140));
    QTest::mouseRelease(&widget_, Qt::MiddleButton, Qt::NoModifier, QPoint(230, 140));
    const double pixel = 1.0 / view->transform().pixelsPerUnit();
    EXPECT_NEAR(view->transform().centre().x, centre.x - 30 * pixel, 1e-9);
    EXPECT_NEAR(view->transform().centre().y, centre.y - 10 * pixel, 1e-9);

    QTest::mouseDClick(&widget_, Qt::MiddleButton, Qt::NoModifier, QPoint(200, 150));
    EXPECT_TRUE(view->transform().visibleBox().contains(view->extents()));
}

TEST_F(DrawingViewWidgetTest, ClicksAtThePromptSelectAndEscLetsGo) {
    QTest::qWait(1);
    QSignalSpy changed(&widget_, &DrawingViewWidget::selectionChanged);
    QTest::mouseClick(&widget_, Qt::LeftButton, Qt::NoModifier, at(30, 0));
    EXPECT_EQ(widget_.selection(), std::vector<db::ObjectId>{line_});
    // A click on nothing, then one to its left: a crossing window over the circle's rim.
    QTest::mouseClick(&widget_, Qt::LeftButton, Qt::NoModifier, at(75, 60));
    QTest::mouseClick(&widget_, Qt::LeftButton, Qt::NoModifier, at(60, 40));
    EXPECT_EQ(widget_.selection(), (std::vector<db::ObjectId>{line_, circle_}));
    QTest::mouseClick(&widget_, Qt::LeftButton, Qt::ShiftModifier, at(30, 0));
    EXPECT_EQ(widget_.selection(), std::vector<db::ObjectId>{circle_});
    QTest::keyClick(&widget_, Qt::Key_Escape);
    EXPECT_TRUE(widget_.selection().empty());
    EXPECT_EQ(changed.count(), 4);
}

TEST_F(DrawingViewWidgetTest, AClickAnswersAWaitingRequestAtTheSnap) {
    QTest::qWait(1);
    widget_.setRequest(ed::InputRequest(ed::InputRequest::Kind::Point, "Point: "));
    QSignalSpy picked(&widget_, &DrawingViewWidget::pointPicked);
    const QPoint nearEnd = at(100, 0) + QPoint(3, -2);
    QTest::mouseMove(&widget_, nearEnd);
    ASSERT_TRUE(widget_.snap());
    EXPECT_EQ(widget_.snap()->mode, gs::kSnapEndpoint);
    QTest::mouseClick(&widget_, Qt::LeftButton, Qt::NoModifier, nearEnd);
    ASSERT_EQ(picked.count(), 1);
    EXPECT_DOUBLE_EQ(picked.at(0).at(0).toDouble(), 100.0);
    EXPECT_DOUBLE_EQ(picked.at(0).at(1).toDouble(), 0.0);
    EXPECT_TRUE(widget_.selection().empty()) << "a click that answers a command selects nothing";

    // Far from everything, the cursor's own point.
    QTest::mouseMove(&widget_, QPoint(5, 5));
    EXPECT_FALSE(widget_.snap());
    widget_.setRequest(std::nullopt);
}

TEST_F(DrawingViewWidgetTest, ACommandDroppedOnTheDrawingRunsFromTheDropPoint) {
    QSignalSpy dropped(&widget_, &DrawingViewWidget::commandDropped);
    QSignalSpy moved(&widget_, &DrawingViewWidget::pointerMoved);
    QMimeData other;
    other.setText("_LINE\n");  // plain text is no command
    QDropEvent ignored(at(50, 50), Qt::CopyAction, &other, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget_, &ignored);
    EXPECT_EQ(dropped.count(), 0);

    QMimeData command;
    command.setData(app::kCommandMimeType, QByteArray("_UBLI\n"));
    QDragEnterEvent enter(at(40, 40), Qt::CopyAction, &command, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget_, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(at(50, 50), Qt::CopyAction, &command, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget_, &drop);
    ASSERT_EQ(dropped.count(), 1);
    EXPECT_EQ(dropped[0][0].toString(), "_UBLI\n");
    EXPECT_NEAR(dropped[0][1].toDouble(), 50.0, 1.0);
    EXPECT_NEAR(dropped[0][2].toDouble(), 50.0, 1.0);
    // The dropped command's first request is answered a sample at the drop point.
    ed::InputRequest drag;
    drag.kind = ed::InputRequest::Kind::Point;
    widget_.setRequest(drag);
    ASSERT_TRUE(moved.wait(1000));
    EXPECT_NEAR(moved.last()[0].toDouble(), 50.0, 1.0);
}

TEST_F(DrawingViewWidgetTest, LayoutTabsSwitchSpacesAndADocumentThatGoesTakesItsView) {
    QTabBar* tabs = widget_.layoutTabs();
    ASSERT_GE(tabs->count(), 1);
    EXPECT_EQ(tabs->tabText(0), "Model");
    if (tabs->count() > 1) {
        tabs->setCurrentIndex(1);
        EXPECT_EQ(widget_.view()->block(), document_->database()->paperSpaceId());
        tabs->setCurrentIndex(0);
        EXPECT_EQ(widget_.view()->block(), document_->database()->modelSpaceId());
    }
    widget_.forgetDocument(document_);
    EXPECT_EQ(widget_.view(), nullptr);
    EXPECT_FALSE(tabs->isVisible());
}

}  // namespace
}  // namespace cad::gui
