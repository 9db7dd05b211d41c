#pragma once
// Shared assertions of the geometry tests: geometries compared with a tolerance, so that an
// extra collinear vertex or another starting vertex does not fail a case.

#include "base/erreur.h"
#include "carto/geometry/geometry.h"

#include <gtest/gtest.h>

namespace carto::test {

inline Geometry wkt(const char* text) {
    return Geometry::fromWkt(QString::fromUtf8(text));
}

// Same type; Hausdorff distance (densified) within tol; for areas, a symmetric difference
// whose area is within tol as well.
inline ::testing::AssertionResult sameGeometry(const Geometry& actual, const Geometry& expected,
                                               double tol = 1e-9) {
    const auto failure = [&](const char* why) {
        return ::testing::AssertionFailure()
               << why << "\n  actual:   " << actual.toWkt().toStdString()
               << "\n  expected: " << expected.toWkt().toStdString();
    };
    if (actual.type() != expected.type())
        return failure("types differ");
    if (actual.isEmpty())
        return ::testing::AssertionSuccess();
    const GEOSContextHandle_t h = geos();
    double hausdorff = 0;
    if (!GEOSHausdorffDistanceDensify_r(h, actual.get(), expected.get(), 0.1, &hausdorff))
        return failure("GEOSHausdorffDistanceDensify failed");
    if (hausdorff > tol)
        return failure("too far apart");
    if (actual.type() == GeometryType::Polygon &&
        Geometry::adopt(GEOSSymDifference_r(h, actual.get(), expected.get())).area() > tol)
        return failure("areas differ");
    return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult sameGeometry(const Geometry& actual, const char* expected,
                                               double tol = 1e-9) {
    return sameGeometry(actual, wkt(expected), tol);
}

// The error number f throws, 0 when it throws nothing.
inline qint32 errorOf(auto&& f) {
    try {
        f();
    } catch (const veldra::Erreur& e) {
        return e.numero();
    }
    return 0;
}

} // namespace carto::test
