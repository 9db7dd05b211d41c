#include "area_select_tools.h"

#include "carto/view/map_view.h"
#include "recordset/erreur.h"

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
        qWarning("%s", qPrintable(e.message()));
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

// ---- radius

void RadiusSelectTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
}

void RadiusSelectTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Dragging;
    centre_ = mouse_ = e.position();
}

void RadiusSelectTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Dragging)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void RadiusSelectTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Dragging || !isLeft(e))
        return;
    mouse_ = e.position();
    cancel();
    std::optional<Feature> circle;
    if (isDrag(centre_, mouse_)) {
        const Point c = view_.toMap(centre_);
        circle = Feature::fromGeometry(Geometry::circle(c, distance(c, view_.toMap(mouse_))));
    }
    selectCentresWithin(view_, circle, hasShift(e));
}

bool RadiusSelectTool::keyPress(QKeyEvent& e) {
    if (!isEscape(e) || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void RadiusSelectTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    const double r = QLineF(centre_, mouse_).length();
    painter.save();
    useRubberBand(painter);
    painter.drawEllipse(centre_, r, r);
    painter.drawLine(centre_, mouse_);
    painter.restore();
}

// ---- rectangle

void RectangleSelectTool::cancel() {
    if (state_ != State::Idle)
        view_.updateOverlay();
    state_ = State::Idle;
}

void RectangleSelectTool::mousePress(QMouseEvent& e) {
    if (!isLeft(e))
        return;
    state_ = State::Dragging;
    start_ = mouse_ = e.position();
}

void RectangleSelectTool::mouseMove(QMouseEvent& e) {
    if (state_ != State::Dragging)
        return;
    mouse_ = e.position();
    view_.updateOverlay();
}

void RectangleSelectTool::mouseRelease(QMouseEvent& e) {
    if (state_ != State::Dragging || !isLeft(e))
        return;
    mouse_ = e.position();
    cancel();
    const bool add = hasShift(e);
    if (!isDrag(start_, mouse_)) {
        selectCentresWithin(view_, std::nullopt, add);
        return;
    }
    const Rect r = Rect::fromCorners(view_.toMap(start_), view_.toMap(mouse_));
    try {
        selectFirstHits(
            view_,
            [&](const Layer& layer) {
                return layer.searchWithinRectangle(r, searchmode::CentreWithin);
            },
            add);
    } catch (const veldra::Erreur& err) {
        qWarning("%s", qPrintable(err.message()));
    }
}

bool RectangleSelectTool::keyPress(QKeyEvent& e) {
    if (!isEscape(e) || state_ == State::Idle)
        return false;
    cancel();
    return true;
}

void RectangleSelectTool::paintOverlay(QPainter& painter) const {
    if (state_ != State::Dragging)
        return;
    painter.save();
    useRubberBand(painter);
    painter.drawRect(QRectF(start_, mouse_).normalized());
    painter.restore();
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
        qWarning("%s", qPrintable(err.message()));
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
