#include "carto/geometry/ring_cover.h"

#include <algorithm>

namespace carto {

namespace {

// Liang-Barsky: does the segment have a point in the closed rectangle?
bool reaches(Point a, Point b, const Rect& r) {
    double t0 = 0, t1 = 1;
    const auto clip = [&](double p, double q) { // keeps the t where p * t <= q
        if (p == 0)
            return q >= 0;
        const double t = q / p;
        if (p < 0) {
            if (t > t1)
                return false;
            t0 = std::max(t0, t);
        } else {
            if (t < t0)
                return false;
            t1 = std::min(t1, t);
        }
        return true;
    };
    const double dx = b.x - a.x, dy = b.y - a.y;
    return clip(-dx, a.x - r.xmin) && clip(dx, r.xmax - a.x) && clip(-dy, a.y - r.ymin) &&
           clip(dy, r.ymax - a.y);
}

} // namespace

bool ringsHoldRect(ShapeView rings, const Rect& r) {
    if (r.isNull())
        return false;
    // Grown a little, so that rounding cannot let an edge that touches the rectangle pass.
    const Rect margin = r.expanded(std::max(r.width(), r.height()) * 1e-9 + 1e-12);
    const Point c{(r.xmin + r.xmax) / 2, (r.ymin + r.ymax) / 2};
    bool inside = false;
    for (const PartView ring : rings) {
        for (size_t i = 0, n = ring.size(); i < n; ++i) {
            const Point a = ring[i], b = ring[(i + 1) % n];
            if (reaches(a, b, margin))
                return false;
            // No edge comes near the centre, so this crossing count is not a rounding call.
            if ((a.y > c.y) != (b.y > c.y) && c.x < a.x + (c.y - a.y) * (b.x - a.x) / (b.y - a.y))
                inside = !inside;
        }
    }
    return inside;
}

} // namespace carto
