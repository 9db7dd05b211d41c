#include "area_select_tools.h"

#include "base/erreur.h"
#include "carto/view/map_view.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>

namespace carto {

namespace {

// Selects the features whose centre lies within the shape; nothing when there is no
// shape (a click rather than a drag).
void selectCentresWithin(MapView& view, const std::optional<Feature>& shape, bool add) {
    try {
        selectFirstHits(
            view,
            [&](const Layer& layer) {
                return shape ? layer.searchWithinFeature(*shape, searchmode::CentreWithin)
                             : Features(&layer);
            },
            add);
    } catch (const veldra::Erreur& e) {
        view.reportFailure(e);
    }
}

void useRubberBand(QPainter& painter) {
    painter.setPen(rubberBandPen());
    painter.setBrush(QColor(0, 0, 160, 24));
}

bool isEscape(const QKeyEvent& e) {
    return e.key() == Qt::Key_Escape;
}

} // namespace

// ---- shapes dragged

void DragSelectTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
}

void DragSelectTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Dragging;
    start_ = mouse_ = e.position();
}

void DragSelectTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Dragging)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void DragSelectTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Dragging || !isLeft(e))
        return;
    mouse_ = e.position();
    cancel();
    if (isDrag(start_, mouse_))
        select(start_, mouse_, hasShift(e));
    else
        selectCentresWithin(view_, std::nullopt, hasShift(e)); // a click: nothing caught
}

bool DragSelectTool::keyPress(QKeyEvent& e) {
    if (!isEscape(e) || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void DragSelectTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    painter.save();
    useRubberBand(painter);
    paintShape(painter, start_, mouse_);
    painter.restore();
}

void RadiusSelectTool::select(QPointF from, QPointF to, bool add) {
    const Point c = view_.toMap(from);
    selectCentresWithin(
        view_, Feature::fromGeometry(Geometry::circle(c, distance(c, view_.toMap(to)))), add);
}

void RadiusSelectTool::paintShape(QPainter& painter, QPointF from, QPointF to) const {
    const double r = QLineF(from, to).length();
    painter.drawEllipse(from, r, r);
    painter.drawLine(from, to);
}

void RectangleSelectTool::select(QPointF from, QPointF to, bool add) {
    const Rect r = Rect::fromCorners(view_.toMap(from), view_.toMap(to));
    try {
        selectFirstHits(
            view_,
            [&](const Layer& layer) {
                return layer.searchWithinRectangle(r, searchmode::CentreWithin);
            },
            add);
    } catch (const veldra::Erreur& err) {
        view_.reportFailure(err);
    }
}

void RectangleSelectTool::paintShape(QPainter& painter, QPointF from, QPointF to) const {
    painter.drawRect(QRectF(from, to).normalized());
}

// ---- polygon

void PolygonSelectTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
    points_.clear();
    mouse_.reset();
}

void PolygonSelectTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Collecting;
    points_.add(view_, e.position());
    mouse_ = e.position();
    view_.updateOverlay();
}

void PolygonSelectTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Collecting)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void PolygonSelectTool::mouseDoubleClick(QMouseEvent& e) {
    if (state_ != State::Collecting || !isLeft(e))
        return;
    // The press of this double-click has already added its point.
    points_.add(view_, e.position());
    std::vector<Point> ring = points_.distinct(true);
    cancel();
    if (ring.size() < 3)
        return;
    ring.push_back(ring.front());
    std::optional<Feature> shape;
    try {
        shape = Feature::region({ring});
    } catch (const veldra::Erreur& err) {
        view_.reportFailure(err);
        return;
    }
    selectCentresWithin(view_, shape, hasShift(e));
}

bool PolygonSelectTool::keyPress(QKeyEvent& e) {
    if (!isEscape(e) || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void PolygonSelectTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Collecting)
        return;
    painter.save();
    useRubberBand(painter);
    paintRubberLine(painter, view_.viewport(), points_.points(), mouse_, true);
    painter.restore();
}

} // namespace carto
