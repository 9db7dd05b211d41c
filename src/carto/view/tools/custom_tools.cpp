#include "custom_tools.h"

#include "carto/view/tools/tool_factory.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>

namespace carto {

QCursor CustomTool::cursor() const {
    return toolCursor(cursor_);
}

void CustomTool::used(Point a, Point b, double distance, const QMouseEvent& e) const {
    bool enableDefault = true;
    emit view_.toolUsed(number_, a.x, a.y, b.x, b.y, distance, hasShift(e), hasControl(e),
                        enableDefault);
}

// ---- point

void CustomPointTool::cancel() {
    state_ = State::Idle;
}

void CustomPointTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Pressed;
    start_ = e.position();
}

void CustomPointTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Pressed || !isLeft(e))
        return;
    state_ = State::Idle;
    const Point p = view_.toMap(start_);
    used(p, p, 0, e);
}

// ---- circle and rectangle

void CustomDragTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
}

void CustomDragTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Dragging;
    start_ = mouse_ = e.position();
}

void CustomDragTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Dragging)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void CustomDragTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Dragging || !isLeft(e))
        return;
    mouse_ = e.position();
    cancel();
    if (isDrag(start_, mouse_))
        report(view_.toMap(start_), view_.toMap(mouse_), e);
}

bool CustomDragTool::keyPress(QKeyEvent& e) {
    if (e.key() != Qt::Key_Escape || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void CustomCircleTool::report(Point from, Point to, const QMouseEvent& e) const {
    used(from, to, distance(from, to), e);
}

void CustomCircleTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    const double r = QLineF(start_, mouse_).length();
    painter.save();
    painter.setPen(rubberBandPen());
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(start_, r, r);
    painter.drawLine(start_, mouse_);
    painter.restore();
}

void CustomRectangleTool::report(Point from, Point to, const QMouseEvent& e) const {
    used(from, to, distance(from, to), e);
}

void CustomRectangleTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    painter.save();
    painter.setPen(rubberBandPen());
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(start_, mouse_).normalized());
    painter.restore();
}

// ---- broken line

void CustomBrokenLineTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
    points_.clear();
    mouse_.reset();
}

void CustomBrokenLineTool::report(int flags, bool shift, bool control) {
    // Copied first: a handler may switch tools, which clears the points.
    const std::vector<Point> points = points_.points();
    if (flags == phase::Finished || flags == phase::Cancelled)
        cancel();
    bool enableDefault = true;
    emit view_.polyToolUsed(number_, flags, points, shift, control, enableDefault);
}

void CustomBrokenLineTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    mouse_ = e.position();
    if (!points_.add(view_, e.position()))
        return;
    const int flags = state_ == State::Idle ? phase::Started : phase::PointAdded;
    state_ = State::Collecting;
    view_.updateOverlay();
    report(flags, hasShift(e), hasControl(e));
}

void CustomBrokenLineTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Collecting)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void CustomBrokenLineTool::mouseDoubleClick(QMouseEvent& e) {
    if (state_ != State::Collecting || !isLeft(e))
        return;
    points_.add(view_, e.position()); // nothing when its press already added it
    report(phase::Finished, hasShift(e), hasControl(e));
}

bool CustomBrokenLineTool::keyPress(QKeyEvent& e) {
    if (e.key() != Qt::Key_Escape || state_ == State::Idle)
        return false;
    report(phase::Cancelled, e.modifiers().testFlag(Qt::ShiftModifier),
           e.modifiers().testFlag(Qt::ControlModifier));
    return true;
}

void CustomBrokenLineTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Collecting)
        return;
    painter.save();
    painter.setPen(rubberBandPen());
    painter.setBrush(Qt::NoBrush);
    paintRubberLine(painter, view_.viewport(), points_.points(), mouse_, false);
    painter.restore();
}

} // namespace carto
