#pragma once
// A geometry prepared by GEOS for repeated predicates against it (a point search over
// thousands of plots, the features within a section). Owns the geometry it was built from;
// an invalid geometry is repaired first, so a predicate never fails on the prepared side.
// An argument GEOS fails on is tried once more repaired, as the plain predicates do.
//
// GEOS builds its indexes lazily on the first queries: one PreparedGeometry must not be
// queried from two threads at once.

#include "carto/geometry/geometry.h"

namespace carto {

class PreparedGeometry {
public:
    explicit PreparedGeometry(Geometry geometry);
    PreparedGeometry(PreparedGeometry&&) noexcept = default;
    PreparedGeometry& operator=(PreparedGeometry&& other) noexcept;
    ~PreparedGeometry() = default;

    // The geometry queried (the repaired one when the original was invalid).
    const Geometry& geometry() const { return geometry_; }
    const Rect& bounds() const { return bounds_; }

    // Points outside the bounds are answered without calling GEOS.
    bool contains(Point p) const; // false on the boundary
    bool covers(Point p) const;   // true on the boundary

    bool contains(const Geometry& g) const;
    bool containsProperly(const Geometry& g) const;
    bool covers(const Geometry& g) const;
    bool intersects(const Geometry& g) const;

private:
    using Predicate = char (*)(GEOSContextHandle_t, const GEOSPreparedGeometry*,
                               const GEOSGeometry*);
    bool onPoint(Predicate predicate, Point p, const char* name) const;
    bool on(Predicate predicate, const Geometry& g, const char* name) const;

    // Declared before prepared_, which refers to it, so that it is destroyed after.
    Geometry geometry_;
    Rect bounds_;
    GeosPtr<const GEOSPreparedGeometry, &GEOSPreparedGeom_destroy_r> prepared_;
};

} // namespace carto
