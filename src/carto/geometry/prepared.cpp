#include "carto/geometry/prepared.h"

namespace carto {

namespace {

Geometry validated(Geometry g) {
    return g.isValid() ? std::move(g) : g.makeValid();
}

} // namespace

PreparedGeometry::PreparedGeometry(Geometry geometry)
    : geometry_(validated(std::move(geometry))), bounds_(geometry_.bounds()),
      prepared_(GEOSPrepare_r(geos(), geometry_.get())) {
    if (!prepared_)
        throwGeosError("GEOSPrepare");
}

PreparedGeometry& PreparedGeometry::operator=(PreparedGeometry&& other) noexcept {
    // The old prepared geometry refers to the old geometry: it goes first.
    prepared_.reset();
    geometry_ = std::move(other.geometry_);
    bounds_ = other.bounds_;
    prepared_ = std::move(other.prepared_);
    return *this;
}

bool PreparedGeometry::on(Predicate predicate, const Geometry& g, const char* name) const {
    char result = predicate(geos(), prepared_.get(), g.get());
    if (result == 2 && !g.isValid()) {
        geosContext().takeError();
        result = predicate(geos(), prepared_.get(), g.makeValid().get());
    }
    if (result == 2)
        throwGeosError(name);
    return result == 1;
}

bool PreparedGeometry::onPoint(Predicate predicate, Point p, const char* name) const {
    // Also rejects NaN coordinates.
    if (!bounds_.contains(p))
        return false;
    const GeosPtr<GEOSGeometry, &GEOSGeom_destroy_r> point(
        GEOSGeom_createPointFromXY_r(geos(), p.x, p.y));
    if (!point)
        throwGeosError("GEOSGeom_createPoint");
    const char result = predicate(geos(), prepared_.get(), point.get());
    if (result == 2)
        throwGeosError(name);
    return result == 1;
}

bool PreparedGeometry::contains(Point p) const {
    return onPoint(&GEOSPreparedContains_r, p, "GEOSPreparedContains");
}

bool PreparedGeometry::covers(Point p) const {
    return onPoint(&GEOSPreparedCovers_r, p, "GEOSPreparedCovers");
}

bool PreparedGeometry::contains(const Geometry& g) const {
    return on(&GEOSPreparedContains_r, g, "GEOSPreparedContains");
}

bool PreparedGeometry::containsProperly(const Geometry& g) const {
    return on(&GEOSPreparedContainsProperly_r, g, "GEOSPreparedContainsProperly");
}

bool PreparedGeometry::covers(const Geometry& g) const {
    return on(&GEOSPreparedCovers_r, g, "GEOSPreparedCovers");
}

bool PreparedGeometry::intersects(const Geometry& g) const {
    return on(&GEOSPreparedIntersects_r, g, "GEOSPreparedIntersects");
}

} // namespace carto
