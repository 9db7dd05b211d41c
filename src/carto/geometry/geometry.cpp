#include "carto/geometry/geometry.h"

#include "base/erreur.h"

#include <cmath>
#include <mutex>

using veldra::Erreur;
namespace err = veldra::err;

namespace carto {

namespace {

using GeomPtr = GeosPtr<GEOSGeometry, &GEOSGeom_destroy_r>;
using SeqPtr = GeosPtr<GEOSCoordSequence, &GEOSCoordSeq_destroy_r>;

// GEOS's WKT reader and writer switch the process's numeric locale with setlocale() for
// the length of each call; two threads doing so at once corrupt the locale's storage.
std::mutex& wktLocaleMutex() {
    static std::mutex mutex;
    return mutex;
}

[[noreturn]] void refuse(const QString& why) {
    throw Erreur(err::GeometrieInvalide, why);
}

GeomPtr checked(GEOSGeometry* g, const char* operation) {
    if (g == nullptr)
        throwGeosError(operation);
    return GeomPtr(g);
}

bool isFinite(Point p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

void checkFinite(const std::vector<Point>& points) {
    for (const Point& p : points) {
        if (!isFinite(p))
            refuse(QStringLiteral("Coordonnée non finie (NaN ou infinie) : (%1, %2).")
                       .arg(p.x)
                       .arg(p.y));
    }
}

SeqPtr makeSequence(const std::vector<Point>& points, bool close) {
    std::vector<double> xy;
    xy.reserve(2 * points.size() + 2);
    for (const Point& p : points) {
        xy.push_back(p.x);
        xy.push_back(p.y);
    }
    if (close && !points.empty() && points.front() != points.back()) {
        xy.push_back(points.front().x);
        xy.push_back(points.front().y);
    }
    SeqPtr seq(GEOSCoordSeq_copyFromBuffer_r(geos(), xy.data(), unsigned(xy.size() / 2), 0, 0));
    if (!seq)
        throwGeosError("GEOSCoordSeq_copyFromBuffer");
    return seq;
}

GeomPtr makeRing(const std::vector<Point>& ring) {
    checkFinite(ring);
    const bool open = !ring.empty() && ring.front() != ring.back();
    const size_t closedSize = ring.size() + (open ? 1 : 0);
    if (closedSize < 4)
        refuse(QStringLiteral("Un contour de polygone doit compter au moins 4 points une fois "
                              "fermé (%1 ici).")
                   .arg(closedSize));
    // GEOS takes the sequence even when it fails.
    return checked(GEOSGeom_createLinearRing_r(geos(), makeSequence(ring, true).release()),
                   "GEOSGeom_createLinearRing");
}

GeomPtr makeLine(const std::vector<Point>& line) {
    checkFinite(line);
    if (line.size() < 2)
        refuse(
            QStringLiteral("Une ligne doit compter au moins 2 points (%1 ici).").arg(line.size()));
    return checked(GEOSGeom_createLineString_r(geos(), makeSequence(line, false).release()),
                   "GEOSGeom_createLineString");
}

GeomPtr makePolygon(const std::vector<std::vector<Point>>& rings) {
    if (rings.empty())
        refuse(QStringLiteral("Un polygone demande au moins un contour."));
    GeomPtr shell = makeRing(rings.front());
    std::vector<GeomPtr> holes;
    holes.reserve(rings.size() - 1);
    for (size_t i = 1; i < rings.size(); ++i)
        holes.push_back(makeRing(rings[i]));

    std::vector<GEOSGeometry*> raw;
    raw.reserve(holes.size());
    for (GeomPtr& h : holes)
        raw.push_back(h.release());
    // GEOS takes the shell and the holes even when it fails.
    return checked(
        GEOSGeom_createPolygon_r(geos(), shell.release(), raw.data(), unsigned(raw.size())),
        "GEOSGeom_createPolygon");
}

GeomPtr makeCollection(int type, std::vector<GeomPtr> members) {
    std::vector<GEOSGeometry*> raw;
    raw.reserve(members.size());
    for (GeomPtr& m : members)
        raw.push_back(m.release());
    return checked(GEOSGeom_createCollection_r(geos(), type, raw.data(), unsigned(raw.size())),
                   "GEOSGeom_createCollection");
}

GeomPtr cloneOf(const GEOSGeometry* g) {
    return checked(GEOSGeom_clone_r(geos(), g), "GEOSGeom_clone");
}

GeomPtr madeValid(const GEOSGeometry* g) {
    using ParamsPtr = GeosPtr<GEOSMakeValidParams, &GEOSMakeValidParams_destroy_r>;
    const GEOSContextHandle_t h = geos();
    const ParamsPtr params(GEOSMakeValidParams_create_r(h));
    if (!params || !GEOSMakeValidParams_setMethod_r(h, params.get(), GEOS_MAKE_VALID_STRUCTURE) ||
        !GEOSMakeValidParams_setKeepCollapsed_r(h, params.get(), 0))
        throwGeosError("GEOSMakeValidParams");
    return checked(GEOSMakeValidWithParams_r(h, g, params.get()), "GEOSMakeValid");
}

bool isValidGeometry(const GEOSGeometry* g) {
    const char valid = GEOSisValid_r(geos(), g);
    if (valid == 2)
        throwGeosError("GEOSisValid");
    return valid == 1;
}

// An operand an overlay can take: g itself when valid, else a repaired copy kept in
// `repaired` for as long as the caller needs it.
const GEOSGeometry* validOperand(const Geometry& g, GeomPtr& repaired) {
    if (isValidGeometry(g.get()))
        return g.get();
    repaired = madeValid(g.get());
    return repaired.get();
}

GeomPtr validCopy(const GEOSGeometry* g) {
    return isValidGeometry(g) ? cloneOf(g) : madeValid(g);
}

std::vector<Point> readSequence(const GEOSCoordSequence* seq) {
    const GEOSContextHandle_t h = geos();
    unsigned int size = 0;
    if (seq == nullptr || !GEOSCoordSeq_getSize_r(h, seq, &size))
        throwGeosError("GEOSCoordSeq_getSize");
    std::vector<Point> points;
    if (size == 0)
        return points;
    std::vector<double> xy(2 * size_t(size));
    if (!GEOSCoordSeq_copyToBuffer_r(h, seq, xy.data(), 0, 0))
        throwGeosError("GEOSCoordSeq_copyToBuffer");
    points.reserve(size);
    for (size_t i = 0; i < xy.size(); i += 2)
        points.push_back({xy[i], xy[i + 1]});
    return points;
}

// The coordinates of every simple component, in order: for a polygon its shell then its
// holes. Empty components are skipped.
void collectParts(const GEOSGeometry* g, std::vector<std::vector<Point>>& out) {
    const GEOSContextHandle_t h = geos();
    const char empty = GEOSisEmpty_r(h, g);
    if (empty == 2)
        throwGeosError("GEOSisEmpty");
    if (empty == 1)
        return;
    const auto ringOf = [&](const GEOSGeometry* ring) {
        if (ring == nullptr)
            throwGeosError("GEOSGetRing");
        out.push_back(readSequence(GEOSGeom_getCoordSeq_r(h, ring)));
    };
    switch (GEOSGeomTypeId_r(h, g)) {
    case GEOS_POINT:
    case GEOS_LINESTRING:
    case GEOS_LINEARRING:
        out.push_back(readSequence(GEOSGeom_getCoordSeq_r(h, g)));
        return;
    case GEOS_POLYGON: {
        ringOf(GEOSGetExteriorRing_r(h, g));
        const int holes = GEOSGetNumInteriorRings_r(h, g);
        if (holes < 0)
            throwGeosError("GEOSGetNumInteriorRings");
        for (int i = 0; i < holes; ++i)
            ringOf(GEOSGetInteriorRingN_r(h, g, i));
        return;
    }
    case GEOS_MULTIPOINT:
    case GEOS_MULTILINESTRING:
    case GEOS_MULTIPOLYGON:
    case GEOS_GEOMETRYCOLLECTION: {
        const int n = GEOSGetNumGeometries_r(h, g);
        if (n < 0)
            throwGeosError("GEOSGetNumGeometries");
        for (int i = 0; i < n; ++i)
            collectParts(GEOSGetGeometryN_r(h, g, i), out);
        return;
    }
    default:
        throwGeosError("GEOSGeomTypeId");
    }
}

using Predicate = char (*)(GEOSContextHandle_t, const GEOSGeometry*, const GEOSGeometry*);

bool evaluate(Predicate predicate, const Geometry& a, const Geometry& b, const char* name) {
    const GEOSContextHandle_t h = geos();
    char result = predicate(h, a.get(), b.get());
    if (result == 2) {
        // GEOS can fail on invalid input; the answer on repaired copies is the meaningful one.
        geosContext().takeError();
        GeomPtr ra;
        GeomPtr rb;
        result = predicate(h, validOperand(a, ra), validOperand(b, rb));
        if (result == 2)
            throwGeosError(name);
    }
    return result == 1;
}

void checkMembers(std::span<const Geometry* const> geometries, const QString& nothing) {
    if (geometries.empty())
        refuse(nothing);
    for (const Geometry* g : geometries) {
        if (g == nullptr)
            throw Erreur(err::AppelIncorrect, QStringLiteral("Géométrie absente (pointeur nul)."));
    }
}

} // namespace

// Factories

Geometry Geometry::fromWkt(QStringView wkt) {
    using ReaderPtr = GeosPtr<GEOSWKTReader, &GEOSWKTReader_destroy_r>;
    const GEOSContextHandle_t h = geos();
    const ReaderPtr reader(GEOSWKTReader_create_r(h));
    if (!reader)
        throwGeosError("GEOSWKTReader_create");
    // Closes open rings, as polygon() does.
    GEOSWKTReader_setFixStructure_r(h, reader.get(), 1);
    const QByteArray text = wkt.toUtf8();
    GEOSGeometry* read = nullptr;
    {
        const std::lock_guard lock(wktLocaleMutex());
        read = GEOSWKTReader_read_r(h, reader.get(), text.constData());
    }
    Geometry g(checked(read, "lecture WKT"));
    std::vector<std::vector<Point>> parts;
    collectParts(g.get(), parts);
    for (const auto& part : parts)
        checkFinite(part);
    return g;
}

Geometry Geometry::polygon(const std::vector<std::vector<Point>>& rings) {
    return Geometry(makePolygon(rings));
}

Geometry Geometry::fromRings(const std::vector<std::vector<Point>>& rings) {
    if (rings.size() == 1)
        return polygon(rings);
    if (rings.empty())
        refuse(QStringLiteral("Un polygone demande au moins un contour."));
    std::vector<GeomPtr> lines;
    lines.reserve(rings.size());
    for (const auto& ring : rings) {
        makeRing(ring); // the checks of a ring: finite, at least 4 points once closed
        std::vector<Point> closed = ring;
        if (closed.front() != closed.back())
            closed.push_back(closed.front());
        lines.push_back(makeLine(closed));
    }
    // Noded first, so that crossing rings make faces rather than an invalid result.
    const GeomPtr linework = makeCollection(GEOS_MULTILINESTRING, std::move(lines));
    const GeomPtr noded = checked(GEOSNode_r(geos(), linework.get()), "GEOSNode");
    return Geometry(checked(GEOSBuildArea_r(geos(), noded.get()), "GEOSBuildArea"));
}

Geometry Geometry::multiPolygon(const std::vector<std::vector<std::vector<Point>>>& polygons) {
    if (polygons.empty())
        refuse(QStringLiteral("Un multipolygone demande au moins un polygone."));
    std::vector<GeomPtr> members;
    members.reserve(polygons.size());
    for (const auto& rings : polygons)
        members.push_back(makePolygon(rings));
    return Geometry(makeCollection(GEOS_MULTIPOLYGON, std::move(members)));
}

Geometry Geometry::lineString(const std::vector<Point>& points) {
    return Geometry(makeLine(points));
}

Geometry Geometry::multiLineString(const std::vector<std::vector<Point>>& lines) {
    if (lines.empty())
        refuse(QStringLiteral("Une multiligne demande au moins une ligne."));
    std::vector<GeomPtr> members;
    members.reserve(lines.size());
    for (const auto& line : lines)
        members.push_back(makeLine(line));
    return Geometry(makeCollection(GEOS_MULTILINESTRING, std::move(members)));
}

Geometry Geometry::point(Point p) {
    checkFinite({p});
    return Geometry(
        checked(GEOSGeom_createPointFromXY_r(geos(), p.x, p.y), "GEOSGeom_createPoint"));
}

Geometry Geometry::rectangle(const Rect& r) {
    if (r.isNull())
        refuse(QStringLiteral("Rectangle vide."));
    checkFinite({{r.xmin, r.ymin}, {r.xmax, r.ymax}});
    if (r.width() == 0 && r.height() == 0)
        return point({r.xmin, r.ymin});
    if (r.width() == 0 || r.height() == 0)
        return lineString({{r.xmin, r.ymin}, {r.xmax, r.ymax}});
    return polygon({{{r.xmin, r.ymin}, {r.xmax, r.ymin}, {r.xmax, r.ymax}, {r.xmin, r.ymax}}});
}

Geometry Geometry::circle(Point centre, double radius, int segments) {
    checkFinite({centre});
    if (!(std::isfinite(radius) && radius > 0))
        refuse(QStringLiteral("Le rayon d'un cercle doit être un nombre strictement positif (%1).")
                   .arg(radius));
    if (segments < 4)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Un cercle demande au moins 4 côtés (%1).").arg(segments));
    const GeomPtr at =
        checked(GEOSGeom_createPointFromXY_r(geos(), centre.x, centre.y), "GEOSGeom_createPoint");
    // GEOS counts segments per quarter circle.
    const int quadrantSegments = (segments + 3) / 4;
    return Geometry(
        checked(GEOSBuffer_r(geos(), at.get(), radius, quadrantSegments), "GEOSBuffer"));
}

Geometry Geometry::empty() {
    return Geometry(checked(GEOSGeom_createEmptyCollection_r(geos(), GEOS_GEOMETRYCOLLECTION),
                            "GEOSGeom_createEmptyCollection"));
}

Geometry Geometry::adopt(GEOSGeometry* g, const char* operation) {
    return Geometry(checked(g, operation));
}

Geometry Geometry::clone() const {
    return Geometry(cloneOf(get()));
}

// Accessors

GeometryType Geometry::type() const {
    if (isEmpty())
        return GeometryType::Empty;
    switch (GEOSGeomTypeId_r(geos(), get())) {
    case GEOS_POINT:
    case GEOS_MULTIPOINT:
        return GeometryType::Point;
    case GEOS_LINESTRING:
    case GEOS_LINEARRING:
    case GEOS_MULTILINESTRING:
        return GeometryType::Line;
    case GEOS_POLYGON:
    case GEOS_MULTIPOLYGON:
        return GeometryType::Polygon;
    case GEOS_GEOMETRYCOLLECTION:
        return GeometryType::Collection;
    default:
        throwGeosError("GEOSGeomTypeId");
    }
}

bool Geometry::isEmpty() const {
    const char empty = GEOSisEmpty_r(geos(), get());
    if (empty == 2)
        throwGeosError("GEOSisEmpty");
    return empty == 1;
}

bool Geometry::isValid() const {
    return isValidGeometry(get());
}

double Geometry::area() const {
    double a = 0;
    if (!GEOSArea_r(geos(), get(), &a))
        throwGeosError("GEOSArea");
    return a;
}

double Geometry::length() const {
    double l = 0;
    if (!GEOSLength_r(geos(), get(), &l))
        throwGeosError("GEOSLength");
    return l;
}

Rect Geometry::bounds() const {
    if (isEmpty())
        return {};
    Rect r;
    if (!GEOSGeom_getExtent_r(geos(), get(), &r.xmin, &r.ymin, &r.xmax, &r.ymax))
        throwGeosError("GEOSGeom_getExtent");
    return r;
}

Point Geometry::centroid() const {
    if (isEmpty())
        refuse(QStringLiteral("Une géométrie vide n'a pas de centre."));
    const GEOSContextHandle_t h = geos();
    const GeomPtr c = checked(GEOSGetCentroid_r(h, get()), "GEOSGetCentroid");
    Point p;
    if (!GEOSGeomGetX_r(h, c.get(), &p.x) || !GEOSGeomGetY_r(h, c.get(), &p.y))
        throwGeosError("GEOSGetCentroid");
    return p;
}

Point Geometry::interiorPoint() const {
    if (isEmpty())
        refuse(QStringLiteral("Une géométrie vide n'a pas de point intérieur."));
    const GeomPtr p = checked(GEOSPointOnSurface_r(geos(), g_.get()), "GEOSPointOnSurface");
    double x = 0, y = 0;
    if (!GEOSGeomGetX_r(geos(), p.get(), &x) || !GEOSGeomGetY_r(geos(), p.get(), &y))
        throwGeosError("GEOSGeomGetX");
    return {x, y};
}

int Geometry::numParts() const {
    if (isEmpty())
        return 0;
    const GEOSContextHandle_t h = geos();
    switch (GEOSGeomTypeId_r(h, get())) {
    case GEOS_POINT:
    case GEOS_LINESTRING:
    case GEOS_LINEARRING:
    case GEOS_POLYGON:
        return 1;
    default: {
        const int n = GEOSGetNumGeometries_r(h, get());
        if (n < 0)
            throwGeosError("GEOSGetNumGeometries");
        return n;
    }
    }
}

std::vector<std::vector<Point>> Geometry::parts() const {
    std::vector<std::vector<Point>> out;
    collectParts(get(), out);
    return out;
}

QString Geometry::toWkt(int decimals) const {
    using WriterPtr = GeosPtr<GEOSWKTWriter, &GEOSWKTWriter_destroy_r>;
    const GEOSContextHandle_t h = geos();
    const WriterPtr writer(GEOSWKTWriter_create_r(h));
    if (!writer)
        throwGeosError("GEOSWKTWriter_create");
    GEOSWKTWriter_setTrim_r(h, writer.get(), 1);
    GEOSWKTWriter_setRoundingPrecision_r(h, writer.get(), decimals);
    GEOSWKTWriter_setOutputDimension_r(h, writer.get(), 2);
    GeosString text;
    {
        const std::lock_guard lock(wktLocaleMutex());
        text.reset(GEOSWKTWriter_write_r(h, writer.get(), get()));
    }
    if (!text)
        throwGeosError("écriture WKT");
    return QString::fromUtf8(text.get());
}

Geometry Geometry::makeValid() const {
    return Geometry(madeValid(get()));
}

// Overlays

Geometry Geometry::polygonalPart() const {
    switch (type()) {
    case GeometryType::Polygon:
        return clone();
    case GeometryType::Collection: {
        std::vector<GeomPtr> surfaces;
        const int n = GEOSGetNumGeometries_r(geos(), get());
        for (int i = 0; i < n; ++i) {
            const GEOSGeometry* member = GEOSGetGeometryN_r(geos(), get(), i);
            const int id = member ? GEOSGeomTypeId_r(geos(), member) : -1;
            if ((id == GEOS_POLYGON || id == GEOS_MULTIPOLYGON) && !GEOSisEmpty_r(geos(), member))
                surfaces.push_back(validCopy(member));
        }
        if (surfaces.empty())
            return empty();
        const GeomPtr all = makeCollection(GEOS_GEOMETRYCOLLECTION, std::move(surfaces));
        return adopt(GEOSUnaryUnion_r(geos(), all.get()), "GEOSUnaryUnion");
    }
    default:
        return empty();
    }
}

Geometry unionOf(std::span<const Geometry* const> geometries) {
    checkMembers(geometries, QStringLiteral("Aucune géométrie à unir."));
    std::vector<GeomPtr> members;
    members.reserve(geometries.size());
    for (const Geometry* g : geometries)
        members.push_back(validCopy(g->get()));
    const GeomPtr all = makeCollection(GEOS_GEOMETRYCOLLECTION, std::move(members));
    return Geometry::adopt(GEOSUnaryUnion_r(geos(), all.get()), "GEOSUnaryUnion");
}

Geometry intersection(const Geometry& a, const Geometry& b) {
    GeomPtr ra;
    GeomPtr rb;
    const GEOSGeometry* va = validOperand(a, ra);
    const GEOSGeometry* vb = validOperand(b, rb);
    return Geometry::adopt(GEOSIntersection_r(geos(), va, vb), "GEOSIntersection");
}

Geometry intersectionOf(std::span<const Geometry* const> geometries) {
    checkMembers(geometries, QStringLiteral("Aucune géométrie à intersecter."));
    Geometry result = geometries.front()->isValid() ? geometries.front()->clone()
                                                    : geometries.front()->makeValid();
    for (const Geometry* g : geometries.subspan(1)) {
        if (result.isEmpty())
            break;
        result = intersection(result, *g);
    }
    return result;
}

Geometry difference(const Geometry& a, const Geometry& b) {
    GeomPtr ra;
    GeomPtr rb;
    const GEOSGeometry* va = validOperand(a, ra);
    const GEOSGeometry* vb = validOperand(b, rb);
    return Geometry::adopt(GEOSDifference_r(geos(), va, vb), "GEOSDifference");
}

// Predicates

bool intersects(const Geometry& a, const Geometry& b) {
    return evaluate(&GEOSIntersects_r, a, b, "GEOSIntersects");
}

bool within(const Geometry& a, const Geometry& b) {
    return evaluate(&GEOSWithin_r, a, b, "GEOSWithin");
}

bool contains(const Geometry& a, const Geometry& b) {
    return evaluate(&GEOSContains_r, a, b, "GEOSContains");
}

bool covers(const Geometry& a, const Geometry& b) {
    return evaluate(&GEOSCovers_r, a, b, "GEOSCovers");
}

bool intersectionTest(const Geometry& a, const Geometry& b, int mode) {
    switch (mode) {
    case 1:
        return intersects(a, b);
    case 2:
        return within(a, b);
    default:
        throw Erreur(
            err::AppelIncorrect,
            QStringLiteral("Mode de test d'intersection inconnu : %1 (1 ou 2 attendu).").arg(mode));
    }
}

double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

} // namespace carto
