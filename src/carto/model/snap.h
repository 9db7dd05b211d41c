#pragma once
// Snapping: the point of the given layers nearest to a pointer, within a tolerance in map
// units. A vertex within the tolerance wins over any edge, however near the edge; among
// vertices (and then among edges) the nearest wins. Candidates come from each layer's
// R-tree, never from a scan of the layer.

#include "carto/geometry/point.h"

#include <optional>
#include <span>

namespace carto {

class Layer;

struct SnapHit {
    Point point;
    bool vertex = false; // a vertex, else the nearest point of an edge
    double distance = 0;
};

std::optional<SnapHit> snapPoint(std::span<const Layer* const> layers, Point p, double tolerance);

} // namespace carto
