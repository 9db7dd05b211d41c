#include "veldra-plan/shapes.h"

#include <cmath>
#include <numbers>

namespace veldra::plantool {

Ring rectangle(double x0, double y0, double x1, double y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

Ring circle(Point centre, double radius, int sides) {
    Ring ring;
    ring.reserve(static_cast<std::size_t>(sides));
    for (int i = 0; i < sides; ++i) {
        const double a = 2 * std::numbers::pi * i / sides;
        ring.push_back({centre.x + radius * std::cos(a), centre.y + radius * std::sin(a)});
    }
    return ring;
}

Ring rotated(const Ring& ring, Point centre, double degrees) {
    const double a = degrees * std::numbers::pi / 180;
    const double c = std::cos(a);
    const double s = std::sin(a);
    Ring out;
    out.reserve(ring.size());
    for (const Point& p : ring) {
        const double dx = p.x - centre.x;
        const double dy = p.y - centre.y;
        out.push_back({centre.x + dx * c - dy * s, centre.y + dx * s + dy * c});
    }
    return out;
}

} // namespace veldra::plantool
