#pragma once
// A GEOS geometry owned by value: move-only, destroyed with its owner, copied only through
// clone(). Every factory and operation returns a new Geometry or throws veldra::Erreur:
// err::GeometrieInvalide for input refused on entry (a NaN or infinite coordinate, a ring
// of fewer than 4 points once closed, a line of fewer than 2 points, a non-positive radius,
// no geometry where one is required), err::Geos when GEOS fails (with GEOS's message).
//
// Overlays (union, intersection, difference) first repair an invalid operand with
// makeValid(), so a self-intersecting polygon gives a result instead of a topology error.
// Predicates run on the operands as they are and, if GEOS fails on them, once more on
// repaired copies.
//
// A moved-from Geometry may only be assigned to or destroyed.

#include "carto/geometry/geos_context.h"
#include "carto/geometry/point.h"
#include "carto/geometry/rect.h"

#include <QString>
#include <QStringView>
#include <span>
#include <vector>

namespace carto {

// Point covers multipoints, Line linestrings and multilinestrings, Polygon polygons and
// multipolygons, Collection mixed collections; any empty geometry is Empty.
enum class GeometryType { Empty, Point, Line, Polygon, Collection };

class Geometry {
public:
    // Factories. Rings are closed when their last point differs from their first.
    static Geometry fromWkt(QStringView wkt);
    // The first ring is the shell, the others its holes.
    static Geometry polygon(const std::vector<std::vector<Point>>& rings);
    // The area that rings listed in any order enclose: a ring inside an odd number of
    // others is a hole (GEOS's BuildArea over the noded rings). One ring is a polygon.
    static Geometry fromRings(const std::vector<std::vector<Point>>& rings);
    static Geometry multiPolygon(const std::vector<std::vector<std::vector<Point>>>& polygons);
    static Geometry lineString(const std::vector<Point>& points);
    static Geometry multiLineString(const std::vector<std::vector<Point>>& lines);
    static Geometry point(Point p);
    // Refuses a null rectangle. A rectangle of zero width or height (a click, the bounds
    // of an empty text) gives its segment or its point, which predicates handle, rather
    // than a collapsed polygon, which they would not.
    static Geometry rectangle(const Rect& r);
    // A regular polygon of at least `segments` sides (rounded up to a multiple of 4)
    // inscribed in the circle.
    static Geometry circle(Point centre, double radius, int segments = 72);
    // An empty geometry collection.
    static Geometry empty();
    // Takes ownership of a geometry a GEOS call returned; Erreur(err::Geos) when it is null,
    // with the message GEOS reported.
    static Geometry adopt(GEOSGeometry* g, const char* operation = "GEOS");

    Geometry(Geometry&&) noexcept = default;
    Geometry& operator=(Geometry&&) noexcept = default;
    Geometry(const Geometry&) = delete;
    Geometry& operator=(const Geometry&) = delete;
    ~Geometry() = default;

    Geometry clone() const;
    // Borrowed; stays owned by this Geometry.
    const GEOSGeometry* get() const noexcept { return g_.get(); }

    GeometryType type() const;
    bool isEmpty() const;
    bool isValid() const;
    double area() const;
    double length() const;  // perimeter of polygons, length of lines
    Rect bounds() const;    // null for an empty geometry
    Point centroid() const; // Erreur for an empty geometry
    // A point inside the geometry (on it, for lines and points); Erreur when empty.
    Point interiorPoint() const;
    // Polygons of a (multi)polygon, lines of a (multi)line, points, members of a
    // collection; 0 when empty.
    int numParts() const;
    // Coordinates, part by part: for each polygon its shell then its holes, each ring
    // closed; each line; each point alone. Members of a collection in order.
    std::vector<std::vector<Point>> parts() const;
    // Coordinates rounded to `decimals`, trailing zeros trimmed, 2D. Like fromWkt(), runs
    // under a process-wide lock: GEOS switches the process's numeric locale meanwhile.
    QString toWkt(int decimals = 6) const;

    // A valid copy (structure method, collapsed parts dropped).
    Geometry makeValid() const;
    // Only the surfaces: the geometry itself when it is a (multi)polygon, the union of the
    // polygons of a collection (an overlay's result may hold lines and points where shapes
    // only touch), an empty geometry when there is no surface.
    Geometry polygonalPart() const;

private:
    using Owner = GeosPtr<GEOSGeometry, &GEOSGeom_destroy_r>;
    explicit Geometry(Owner g) : g_(std::move(g)) {}

    Owner g_;
};

// Overlays. unionOf merges any number of geometries in one pass (GEOS's cascaded union);
// intersectionOf intersects them in order. Both refuse an empty list and null pointers.
Geometry unionOf(std::span<const Geometry* const> geometries);
Geometry intersection(const Geometry& a, const Geometry& b);
Geometry intersectionOf(std::span<const Geometry* const> geometries);
Geometry difference(const Geometry& a, const Geometry& b);

// Predicates (GEOS's DE-9IM semantics: a point on a polygon's boundary is not within it).
bool intersects(const Geometry& a, const Geometry& b);
bool within(const Geometry& a, const Geometry& b); // a entirely within b
bool contains(const Geometry& a, const Geometry& b);
bool covers(const Geometry& a, const Geometry& b);
// mode 1: a and b intersect; mode 2: a lies entirely within b. Other modes:
// Erreur(err::AppelIncorrect).
bool intersectionTest(const Geometry& a, const Geometry& b, int mode);

// Euclidean: the plan is projected, so this is the distance in map units.
double distance(Point a, Point b);

} // namespace carto
