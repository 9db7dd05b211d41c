#pragma once
// Plane shapes of the tool, in plan metres. A ring lists its corners once, counter-clockwise,
// without repeating the first; writers close it.

#include "carto/geometry/point.h"

#include <vector>

namespace veldra::plantool {

using carto::Point;

using Ring = std::vector<Point>;
using Polyline = std::vector<Point>;

Ring rectangle(double x0, double y0, double x1, double y1);
// A regular polygon of `sides` corners approximating a circle.
Ring circle(Point centre, double radius, int sides = 24);
// The shape turned by `degrees` counter-clockwise about `centre`.
Ring rotated(const Ring& ring, Point centre, double degrees);

} // namespace veldra::plantool
