#include "tool_support.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"

#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace carto {

bool isLeft(const QMouseEvent& e) {
    return e.button() == Qt::LeftButton;
}

bool isDrag(QPointF from, QPointF to) {
    return QLineF(from, to).length() >= kDragPixels;
}

bool hasShift(const QMouseEvent& e) {
    return e.modifiers().testFlag(Qt::ShiftModifier);
}

bool hasControl(const QMouseEvent& e) {
    return e.modifiers().testFlag(Qt::ControlModifier);
}

std::vector<Layer*> selectableLayers(const MapView& view) {
    std::vector<Layer*> layers = view.layersTopDown();
    std::erase_if(
        layers, [](const Layer* l) { return !l->visible() || !l->selectable() || l->isRaster(); });
    return layers;
}

std::optional<Feature> featureAt(const MapView& view, const Layer& layer, QPointF screen) {
    const Point p = view.toMap(screen);
    const double tol = kPickPixels * view.viewport().unitsPerPixel();
    qint64 top = -1;
    // Regions and texts are hit inside their shape; a line or a symbol has no inside, so
    // it is hit near it.
    for (const Feature& f : layer.searchAtPoint(p))
        if (f.kind() == FeatureKind::Region || f.kind() == FeatureKind::Text)
            top = std::max(top, f.fid());
    const Rect box{p.x - tol, p.y - tol, p.x + tol, p.y + tol};
    for (const Feature& f : layer.searchWithinRectangle(box, searchmode::PartlyWithin))
        if (f.kind() == FeatureKind::Line || f.kind() == FeatureKind::Symbol)
            top = std::max(top, f.fid());
    if (top < 0)
        return std::nullopt;
    return layer.feature(top); // features are drawn in FID order: the last is on top
}

std::optional<Hit> featureAt(const MapView& view, QPointF screen) {
    for (Layer* layer : selectableLayers(view))
        if (auto f = featureAt(view, *layer, screen))
            return Hit{layer, std::move(*f)};
    return std::nullopt;
}

void clearSelections(Map& map, const Layer* keep) {
    for (Layer* layer : map.layers())
        if (layer != keep)
            layer->clearSelection();
}

void selectIn(Map& map, Layer& layer, const Features& hits, bool add) {
    if (!add) {
        clearSelections(map, &layer);
        layer.selectOnly(hits);
        return;
    }
    Features merged(&layer, layer.selection().fids());
    merged.add(hits);
    layer.selectOnly(merged);
}

void selectFirstHits(MapView& view, const std::function<Features(const Layer&)>& search, bool add) {
    for (Layer* layer : selectableLayers(view)) {
        const Features hits = search(*layer);
        if (!hits.isEmpty()) {
            selectIn(view.map(), *layer, hits, add);
            return;
        }
    }
    if (!add)
        clearSelections(view.map());
}

bool runEdit(MapView& view, std::unique_ptr<EditCommand> command) {
    try {
        view.map().execute(std::move(command));
    } catch (const veldra::Erreur& e) {
        view.reportFailure(e);
        return false;
    }
    view.notifyEdited();
    return true;
}

bool ClickedPoints::add(const MapView& view, QPointF screen) {
    if (!points_.empty() && !isDrag(view.toScreen(points_.back()), screen))
        return false;
    points_.push_back(view.toMap(screen));
    return true;
}

std::vector<Point> ClickedPoints::distinct(bool ring) const {
    std::vector<Point> out;
    for (const Point& p : points_)
        if (out.empty() || !(out.back() == p))
            out.push_back(p);
    if (ring && out.size() > 1 && out.front() == out.back())
        out.pop_back();
    return out;
}

QPen rubberBandPen() {
    QPen pen(QColor(0, 0, 160), 1, Qt::DashLine);
    pen.setCosmetic(true);
    return pen;
}

QPolygonF toScreen(const Viewport& viewport, PartView part, QPointF shift) {
    QPolygonF poly;
    poly.reserve(qsizetype(part.size()));
    for (const Point& p : part)
        poly << viewport.toScreen(p) + shift;
    return poly;
}

void paintOutline(QPainter& painter, const Viewport& viewport, const FeatureData& data,
                  QPointF shift) {
    switch (data.kind) {
    case FeatureKind::Region:
        for (const PartView ring : data.parts)
            painter.drawPolygon(toScreen(viewport, ring, shift));
        break;
    case FeatureKind::Line:
        for (const PartView line : data.parts)
            painter.drawPolyline(toScreen(viewport, line, shift));
        break;
    case FeatureKind::Symbol:
        if (!data.parts.empty() && !data.parts[0].empty()) {
            const QPointF c = viewport.toScreen(data.parts[0][0]) + shift;
            painter.drawLine(c - QPointF(kPickPixels, 0), c + QPointF(kPickPixels, 0));
            painter.drawLine(c - QPointF(0, kPickPixels), c + QPointF(0, kPickPixels));
        }
        break;
    case FeatureKind::Text:
        if (const Rect box = data.bounds(); !box.isNull())
            painter.drawRect(QRectF(viewport.toScreen({box.xmin, box.ymax}),
                                    viewport.toScreen({box.xmax, box.ymin}))
                                 .translated(shift));
        break;
    }
}

void paintHandle(QPainter& painter, QPointF at) {
    const double h = 3;
    painter.drawRect(QRectF(at - QPointF(h, h), at + QPointF(h, h)));
}

void paintRubberLine(QPainter& painter, const Viewport& viewport, const std::vector<Point>& points,
                     std::optional<QPointF> mouse, bool ring) {
    QPolygonF poly = toScreen(viewport, points);
    if (mouse)
        poly << *mouse;
    if (ring && poly.size() > 2)
        painter.drawPolygon(poly);
    else
        painter.drawPolyline(poly);
}

} // namespace carto
