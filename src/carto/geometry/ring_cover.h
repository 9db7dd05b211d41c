#pragma once
// Whether a region's rings hold a whole rectangle, without GEOS: a cheap, cautious test for
// caches that ask it of many small cells. The region is what the rings enclose by parity (a
// point inside an odd number of rings is in it), as Geometry::fromRings builds it. Rings
// may be open or closed.

#include "carto/geometry/point.h"
#include "carto/geometry/rect.h"
#include "carto/geometry/shape.h"

#include <vector>

namespace carto {

// True when no edge of any ring reaches the rectangle (borders included) and its centre is
// in the region: the region then covers it all. A rectangle an edge touches gives false,
// even where the region would cover it.
bool ringsHoldRect(ShapeView rings, const Rect& r);
inline bool ringsHoldRect(const Shape& rings, const Rect& r) {
    return ringsHoldRect(rings.view(), r);
}

} // namespace carto
