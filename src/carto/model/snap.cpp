#include "carto/model/snap.h"

#include "carto/model/layer.h"

#include <algorithm>
#include <cmath>

namespace carto {

namespace {

// The point of segment ab nearest to p.
Point nearestOnSegment(Point a, Point b, Point p) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double len2 = dx * dx + dy * dy;
    if (len2 == 0)
        return a;
    const double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len2, 0.0, 1.0);
    return {a.x + t * dx, a.y + t * dy};
}

} // namespace

std::optional<SnapHit> snapPoint(std::span<const Layer* const> layers, Point p, double tolerance) {
    if (!(tolerance > 0))
        return std::nullopt;
    const Rect box{p.x - tolerance, p.y - tolerance, p.x + tolerance, p.y + tolerance};
    std::optional<SnapHit> vertex, edge;
    for (const Layer* layer : layers) {
        if (!layer)
            continue;
        for (const auto& [fid, data] : layer->dataInBox(box)) {
            for (const PartView part : data->parts) {
                for (size_t i = 0; i < part.size(); ++i) {
                    const double d = distance(p, part[i]);
                    if (d <= tolerance && (!vertex || d < vertex->distance))
                        vertex = SnapHit{part[i], true, d};
                    if (vertex || i + 1 >= part.size())
                        continue; // once a vertex is in reach, edges no longer matter
                    const Point q = nearestOnSegment(part[i], part[i + 1], p);
                    const double e = distance(p, q);
                    if (e <= tolerance && (!edge || e < edge->distance))
                        edge = SnapHit{q, false, e};
                }
            }
        }
    }
    return vertex ? vertex : edge;
}

} // namespace carto
