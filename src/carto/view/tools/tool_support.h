#pragma once
// What the tools share: the pixel tolerances of the mouse, picking the feature under a
// point, replacing or extending a selection, writing edited features in one transaction,
// collecting clicked points, and drawing outlines, handles and rubber bands.
//
// Tolerances are in screen pixels, so picking feels the same at every zoom.

#include "carto/model/map.h"
#include "carto/view/map_view.h"

#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QMouseEvent;
class QPainter;

namespace carto {

class EditCommand;

// How near a vertex, an edge, a handle or a line the mouse must be to take it.
inline constexpr double kPickPixels = 5;
// A press and release nearer than this is a click: it never moves anything.
inline constexpr double kDragPixels = 3;

bool isLeft(const QMouseEvent& e);
bool isDrag(QPointF from, QPointF to);
bool hasShift(const QMouseEvent& e);
bool hasControl(const QMouseEvent& e);

// The layers a tool may select in, topmost first: visible, selectable vector layers.
std::vector<Layer*> selectableLayers(const MapView& view);

struct Hit {
    Layer* layer = nullptr;
    Feature feature;
};

// The topmost feature under a screen point: the last drawn of the topmost layer that has
// one. Regions and texts are hit inside; lines and symbols within kPickPixels.
std::optional<Hit> featureAt(const MapView& view, QPointF screen);
std::optional<Feature> featureAt(const MapView& view, const Layer& layer, QPointF screen);

// Clears the selection of every layer but `keep` (nullptr: of every layer).
void clearSelections(Map& map, const Layer* keep = nullptr);
// Selects `hits` in their layer: replacing its selection and clearing the others, or, with
// `add`, appending them to its selection and leaving the others alone.
void selectIn(Map& map, Layer& layer, const Features& hits, bool add);
// Searches the selectable layers top down and selects the hits of the first layer that
// has any; when none has, clears every selection unless `add`.
void selectFirstHits(MapView& view, const std::function<Features(const Layer&)>& search, bool add);

// Runs an edit command on the view's map and tells the view an edit was made; a failure
// is reported through MapView::failed and leaves the map as it was. False on failure.
bool runEdit(MapView& view, std::unique_ptr<EditCommand> command);

// The points of a shape clicked one by one (polygon selection, drawing, broken lines).
// A click within kDragPixels of the previous point adds nothing: it is the second click
// of a double-click, which finishes the shape instead.
class ClickedPoints {
public:
    // False when the point repeats the last one.
    bool add(const MapView& view, QPointF screen);
    void clear() { points_.clear(); }
    bool isEmpty() const { return points_.empty(); }
    const std::vector<Point>& points() const { return points_; }
    // The points without consecutive repeats, and for a ring without a last point equal
    // to the first.
    std::vector<Point> distinct(bool ring) const;

private:
    std::vector<Point> points_;
};

// Drawing over the map, in widget pixels.
QPen rubberBandPen();
QPolygonF toScreen(const Viewport& viewport, PartView part, QPointF shift = {});
// The outline of a feature's geometry (a small cross for a symbol, the box of a text),
// shifted by a number of pixels.
void paintOutline(QPainter& painter, const Viewport& viewport, const FeatureData& data,
                  QPointF shift = {});
// A small square centred on a screen point: a vertex or a handle.
void paintHandle(QPainter& painter, QPointF at);
// A polyline through the points (closed for a ring), with a last leg to the mouse when
// there is one.
void paintRubberLine(QPainter& painter, const Viewport& viewport, const std::vector<Point>& points,
                     std::optional<QPointF> mouse, bool ring);

} // namespace carto
