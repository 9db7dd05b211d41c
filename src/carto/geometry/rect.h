#pragma once
// An axis-aligned rectangle in map units, boundaries included.
//
// A default-constructed Rect is null: it holds no point, contains and intersects nothing,
// and is the identity of united(). A rectangle reduced to a point or a segment (the bounds
// of a symbol, of a vertical line) is not null.

#include "carto/geometry/point.h"

#include <algorithm>
#include <limits>

namespace carto {

struct Rect {
    // Inverted on purpose, so that uniting with a point or a rectangle needs no special case.
    double xmin = std::numeric_limits<double>::infinity();
    double ymin = std::numeric_limits<double>::infinity();
    double xmax = -std::numeric_limits<double>::infinity();
    double ymax = -std::numeric_limits<double>::infinity();

    static Rect fromCorners(Point a, Point b) {
        return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
    }

    // Also true when a coordinate is NaN.
    bool isNull() const { return !(xmin <= xmax && ymin <= ymax); }

    double width() const { return isNull() ? 0.0 : xmax - xmin; }
    double height() const { return isNull() ? 0.0 : ymax - ymin; }
    // NaN coordinates for a null rectangle.
    Point center() const { return {(xmin + xmax) / 2, (ymin + ymax) / 2}; }

    bool contains(Point p) const {
        return p.x >= xmin && p.x <= xmax && p.y >= ymin && p.y <= ymax;
    }
    bool contains(const Rect& r) const {
        return !isNull() && !r.isNull() && r.xmin >= xmin && r.xmax <= xmax && r.ymin >= ymin &&
               r.ymax <= ymax;
    }
    // Rectangles that only touch intersect.
    bool intersects(const Rect& r) const {
        return !isNull() && !r.isNull() && r.xmin <= xmax && r.xmax >= xmin && r.ymin <= ymax &&
               r.ymax >= ymin;
    }

    Rect united(const Rect& r) const {
        if (r.isNull())
            return *this;
        if (isNull())
            return r;
        return {std::min(xmin, r.xmin), std::min(ymin, r.ymin), std::max(xmax, r.xmax),
                std::max(ymax, r.ymax)};
    }
    Rect united(Point p) const { return united(Rect{p.x, p.y, p.x, p.y}); }

    // Grows each side by d (shrinks when d is negative); a null rectangle stays null.
    Rect expanded(double d) const {
        if (isNull())
            return *this;
        return {xmin - d, ymin - d, xmax + d, ymax + d};
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

} // namespace carto
