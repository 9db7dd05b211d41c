#pragma once
// Where a view looks: a centre in map units, a zoom (the width shown, in map units) and a
// size in pixels. Map y grows upwards, screen y downwards; pixels are square.

#include "carto/geometry/rect.h"

#include <QPointF>
#include <QSize>
#include <QTransform>

namespace carto {

struct Viewport {
    Point centre{0, 0};
    double zoom = 100; // map units across the width of the view
    QSize size{1, 1};

    double unitsPerPixel() const { return zoom / std::max(1, size.width()); }
    double pixelsPerUnit() const { return 1.0 / unitsPerPixel(); }

    QPointF toScreen(Point p) const {
        const double k = pixelsPerUnit();
        return {size.width() / 2.0 + (p.x - centre.x) * k,
                size.height() / 2.0 - (p.y - centre.y) * k};
    }
    Point toMap(QPointF s) const {
        const double u = unitsPerPixel();
        return {centre.x + (s.x() - size.width() / 2.0) * u,
                centre.y - (s.y() - size.height() / 2.0) * u};
    }
    // The map area the view shows.
    Rect visible() const {
        const double hw = zoom / 2, hh = size.height() * unitsPerPixel() / 2;
        return {centre.x - hw, centre.y - hh, centre.x + hw, centre.y + hh};
    }
    // Map to screen as a transform, for painting whole paths.
    QTransform transform() const {
        const double k = pixelsPerUnit();
        return QTransform(k, 0, 0, -k, size.width() / 2.0 - centre.x * k,
                          size.height() / 2.0 + centre.y * k);
    }
    // The viewport that shows the rectangle whole, centred, in the same pixel size.
    Viewport fitting(const Rect& r) const {
        Viewport v = *this;
        if (r.isNull())
            return v;
        v.centre = r.center();
        const double aspect = double(std::max(1, size.width())) / std::max(1, size.height());
        const double w = std::max(r.width(), r.height() * aspect);
        if (w > 0)
            v.zoom = w;
        return v;
    }

    friend bool operator==(const Viewport&, const Viewport&) = default;
};

} // namespace carto
