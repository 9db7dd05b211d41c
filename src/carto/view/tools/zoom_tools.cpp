#include "zoom_tools.h"

#include "carto/view/map_view.h"
#include "carto/view/tools/tool_support.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace carto {

namespace {

void zoomAbout(MapView& view, QPointF mouse, double factor) {
    view.setCentre(view.toMap(mouse));
    view.setZoom(view.zoom() * factor);
}

} // namespace

void ZoomInTool::cancel() {
    if (state_ == State::Framing)
        view_.updateOverlay();
    state_ = State::Idle;
}

void ZoomInTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Pressed;
    start_ = mouse_ = e.position();
}

void ZoomInTool::mouseMove(QMouseEvent& e) {
    if (state_ == State::Idle)
        return;
    mouse_ = e.position();
    if (state_ == State::Pressed && isDrag(start_, mouse_))
        state_ = State::Framing;
    if (state_ == State::Framing)
        view_.updateOverlay();
}

void ZoomInTool::mouseRelease(QMouseEvent& e) {
    if (state_ == State::Idle || !isLeft(e))
        return;
    const State was = state_;
    state_ = State::Idle;
    mouse_ = e.position();
    // A frame of a few pixels on one side only is a slip of the hand, not a view.
    const QPointF size = mouse_ - start_;
    if (was == State::Framing && std::abs(size.x()) >= kDragPixels &&
        std::abs(size.y()) >= kDragPixels) {
        view_.setBounds(Rect::fromCorners(view_.toMap(start_), view_.toMap(mouse_)));
        view_.updateOverlay();
    } else {
        zoomAbout(view_, start_, 0.5);
    }
}

void ZoomInTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Framing)
        return;
    painter.setPen(rubberBandPen());
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(start_, mouse_).normalized());
}

QCursor ZoomInTool::cursor() const {
    return Qt::CrossCursor;
}

void ZoomOutTool::cancel() {
    state_ = State::Idle;
}

void ZoomOutTool::mousePress(QMouseEvent& e) {
    if (isLeft(e))
        state_ = State::Pressed;
}

void ZoomOutTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Pressed || !isLeft(e))
        return;
    state_ = State::Idle;
    zoomAbout(view_, e.position(), 2.0);
}

QCursor ZoomOutTool::cursor() const {
    return Qt::CrossCursor;
}

} // namespace carto
