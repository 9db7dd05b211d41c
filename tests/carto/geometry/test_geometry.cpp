// Building geometries, measuring them, and refusing what cannot be a geometry of the plan.
#include "carto/geometry/geometry.h"
#include "geometry_assert.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <thread>

using namespace carto;
using carto::test::errorOf;
using carto::test::sameGeometry;
using carto::test::wkt;
namespace err = veldra::err;

namespace {

struct Measures {
    const char* wkt;
    GeometryType type;
    int parts;
    double area;
    double length;
    Point centroid;
    Rect bounds;
};

const Measures measures[] = {
    {"POLYGON((0 0,4 0,4 2,0 2,0 0))", GeometryType::Polygon, 1, 8, 12, {2, 1}, {0, 0, 4, 2}},
    // An open ring is closed on reading.
    {"POLYGON((0 0,4 0,4 2,0 2))", GeometryType::Polygon, 1, 8, 12, {2, 1}, {0, 0, 4, 2}},
    {"POLYGON((0 0,10 0,10 10,0 10,0 0),(2 2,4 2,4 4,2 4,2 2))",
     GeometryType::Polygon,
     1,
     96,
     48,
     {488.0 / 96, 488.0 / 96},
     {0, 0, 10, 10}},
    {"MULTIPOLYGON(((0 0,1 0,1 1,0 1,0 0)),((3 0,5 0,5 2,3 2,3 0)))",
     GeometryType::Polygon,
     2,
     5,
     12,
     {3.3, 0.9},
     {0, 0, 5, 2}},
    {"LINESTRING(0 0,3 4)", GeometryType::Line, 1, 0, 5, {1.5, 2}, {0, 0, 3, 4}},
    {"MULTILINESTRING((0 0,2 0),(0 1,0 3))", GeometryType::Line, 2, 0, 4, {0.5, 1}, {0, 0, 2, 3}},
    {"POINT(3 -2)", GeometryType::Point, 1, 0, 0, {3, -2}, {3, -2, 3, -2}},
    {"GEOMETRYCOLLECTION(POINT(9 9),POLYGON((0 0,2 0,2 2,0 2,0 0)))",
     GeometryType::Collection,
     2,
     4,
     8,
     {1, 1},
     {0, 0, 9, 9}},
};

} // namespace

TEST(GeometryMeasures, AreaLengthCentroidPartsBounds) {
    for (const Measures& m : measures) {
        SCOPED_TRACE(m.wkt);
        const Geometry g = wkt(m.wkt);
        EXPECT_EQ(g.type(), m.type);
        EXPECT_EQ(g.numParts(), m.parts);
        EXPECT_NEAR(g.area(), m.area, 1e-9);
        EXPECT_NEAR(g.length(), m.length, 1e-9);
        EXPECT_NEAR(g.centroid().x, m.centroid.x, 1e-9);
        EXPECT_NEAR(g.centroid().y, m.centroid.y, 1e-9);
        EXPECT_EQ(g.bounds(), m.bounds);
        EXPECT_TRUE(g.isValid());
    }
}

TEST(GeometryMeasures, EmptyGeometries) {
    for (const char* text : {"POLYGON EMPTY", "GEOMETRYCOLLECTION EMPTY", "POINT EMPTY"}) {
        SCOPED_TRACE(text);
        const Geometry g = wkt(text);
        EXPECT_TRUE(g.isEmpty());
        EXPECT_EQ(g.type(), GeometryType::Empty);
        EXPECT_EQ(g.numParts(), 0);
        EXPECT_EQ(g.area(), 0);
        EXPECT_TRUE(g.bounds().isNull());
        EXPECT_TRUE(g.parts().empty());
        EXPECT_EQ(errorOf([&] { g.centroid(); }), err::GeometrieInvalide);
    }
    EXPECT_TRUE(Geometry::empty().isEmpty());
}

TEST(GeometryFactories, RingsAreClosedOnceAndListedShellThenHoles) {
    // Open rings, and one already closed.
    const Geometry g = Geometry::multiPolygon(
        {{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{2, 2}, {4, 2}, {4, 4}, {2, 4}}},
         {{{20, 0}, {21, 0}, {21, 1}, {20, 0}}}});
    EXPECT_EQ(g.numParts(), 2);
    EXPECT_EQ(g.area(), 96.5);
    const std::vector<std::vector<Point>> parts = g.parts();
    const std::vector<std::vector<Point>> expected = {
        {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}},
        {{2, 2}, {4, 2}, {4, 4}, {2, 4}, {2, 2}},
        {{20, 0}, {21, 0}, {21, 1}, {20, 0}},
    };
    EXPECT_EQ(parts, expected);
    // What parts() gives back builds the same geometry.
    EXPECT_TRUE(sameGeometry(Geometry::multiPolygon({{parts[0], parts[1]}, {parts[2]}}), g));
}

// Rings listed in any order: nesting decides shells and holes.
struct RingsCase {
    std::vector<std::vector<Point>> rings;
    const char* expected;
};

class GeometryFromRings : public ::testing::TestWithParam<RingsCase> {};

TEST_P(GeometryFromRings, NestingDecidesShellsAndHoles) {
    EXPECT_TRUE(sameGeometry(Geometry::fromRings(GetParam().rings), GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GeometryFromRings,
    ::testing::Values(
        // One ring: the polygon itself, open or closed.
        RingsCase{{{{0, 0}, {4, 0}, {4, 4}, {0, 4}}}, "POLYGON((0 0,4 0,4 4,0 4,0 0))"},
        // A hole listed before its shell.
        RingsCase{{{{2, 2}, {4, 2}, {4, 4}, {2, 4}}, {{0, 0}, {10, 0}, {10, 10}, {0, 10}}},
                  "POLYGON((0 0,10 0,10 10,0 10,0 0),(2 2,4 2,4 4,2 4,2 2))"},
        // Two shells apart.
        RingsCase{{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, {{5, 0}, {6, 0}, {6, 1}, {5, 1}}},
                  "MULTIPOLYGON(((0 0,1 0,1 1,0 1,0 0)),((5 0,6 0,6 1,5 1,5 0)))"},
        // An island in a hole: three deep.
        RingsCase{{{{0, 0}, {10, 0}, {10, 10}, {0, 10}},
                   {{2, 2}, {8, 2}, {8, 8}, {2, 8}},
                   {{4, 4}, {6, 4}, {6, 6}, {4, 6}}},
                  "MULTIPOLYGON(((0 0,10 0,10 10,0 10,0 0),(2 2,8 2,8 8,2 8,2 2)),"
                  "((4 4,6 4,6 6,4 6,4 4)))"}));

TEST(GeometryFactories, FromRingsRefusesWhatARingRefuses) {
    EXPECT_EQ(errorOf([] { Geometry::fromRings({}); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([] {
                  Geometry::fromRings({{{0, 0}, {4, 0}, {4, 4}}, {{1, 1}, {2, 1}}});
              }),
              err::GeometrieInvalide);
    EXPECT_EQ(
        errorOf([] {
            Geometry::fromRings({{{0, 0}, {4, 0}, {4, 4}}, {{1, 1}, {2, 1}, {2, std::nan("")}}});
        }),
        err::GeometrieInvalide);
}

TEST(GeometryFactories, LinesPointsRectanglesCircles) {
    EXPECT_TRUE(
        sameGeometry(Geometry::lineString({{0, 0}, {3, 4}, {3, 5}}), "LINESTRING(0 0,3 4,3 5)"));
    EXPECT_TRUE(sameGeometry(Geometry::multiLineString({{{0, 0}, {1, 0}}, {{5, 5}, {5, 6}}}),
                             "MULTILINESTRING((0 0,1 0),(5 5,5 6))"));
    EXPECT_TRUE(sameGeometry(Geometry::point({2.5, -1}), "POINT(2.5 -1)"));
    EXPECT_TRUE(sameGeometry(Geometry::rectangle(Rect::fromCorners({4, 6}, {1, 2})),
                             "POLYGON((1 2,4 2,4 6,1 6,1 2))"));
    // Degenerate rectangles keep what they are.
    EXPECT_TRUE(sameGeometry(Geometry::rectangle({1, 2, 5, 2}), "LINESTRING(1 2,5 2)"));
    EXPECT_TRUE(sameGeometry(Geometry::rectangle({1, 2, 1, 7}), "LINESTRING(1 2,1 7)"));
    EXPECT_TRUE(sameGeometry(Geometry::rectangle({3, 3, 3, 3}), "POINT(3 3)"));

    const Geometry c = Geometry::circle({100, 50}, 3);
    const double piR2 = std::numbers::pi * 9;
    EXPECT_NEAR(c.area(), piR2, piR2 * 0.002);
    EXPECT_LT(c.area(), piR2); // inscribed
    EXPECT_NEAR(c.centroid().x, 100, 1e-9);
    EXPECT_NEAR(c.centroid().y, 50, 1e-9);
    EXPECT_NEAR(c.bounds().width(), 6, 1e-9);
    EXPECT_EQ(c.parts().at(0).size(), 73u);
    EXPECT_EQ(Geometry::circle({0, 0}, 1, 10).parts().at(0).size(), 13u); // rounded up
}

namespace {
const double NaN = std::nan("");
const double Inf = std::numeric_limits<double>::infinity();
} // namespace

TEST(GeometryRefusals, RingsTooShortOrNotFinite) {
    const std::vector<std::vector<Point>> badRings = {
        {{0, 0}, {1, 0}, {0, 0}}, // 3 points
        {{0, 0}, {1, 0}},         // 3 once closed
        {},
        {{0, 0}, {1, NaN}, {1, 1}},
        {{0, 0}, {1, 0}, {Inf, 1}},
    };
    const std::vector<Point> shell = {{-10, -10}, {10, -10}, {10, 10}, {-10, 10}};
    for (const std::vector<Point>& ring : badRings) {
        SCOPED_TRACE(ring.size());
        EXPECT_EQ(errorOf([&] { Geometry::polygon({ring}); }), err::GeometrieInvalide);
        EXPECT_EQ(errorOf([&] { Geometry::polygon({shell, ring}); }), err::GeometrieInvalide);
        EXPECT_EQ(errorOf([&] {
                      Geometry::multiPolygon({{shell}, {ring}});
                  }),
                  err::GeometrieInvalide);
    }
    EXPECT_EQ(errorOf([&] { Geometry::polygon({}); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { Geometry::multiPolygon({}); }), err::GeometrieInvalide);
}

TEST(GeometryRefusals, LinesTooShortOrNotFinite) {
    const std::vector<std::vector<Point>> badLines = {
        {}, {{0, 0}}, {{0, 0}, {NaN, 1}}, {{0, 0}, {1, -Inf}}};
    for (const std::vector<Point>& line : badLines) {
        SCOPED_TRACE(line.size());
        EXPECT_EQ(errorOf([&] { Geometry::lineString(line); }), err::GeometrieInvalide);
        EXPECT_EQ(errorOf([&] {
                      Geometry::multiLineString({{{0, 0}, {1, 1}}, line});
                  }),
                  err::GeometrieInvalide);
    }
    EXPECT_EQ(errorOf([&] { Geometry::multiLineString({}); }), err::GeometrieInvalide);
}

TEST(GeometryRefusals, WktThatGeosReadsButThePlanCannotHold) {
    for (const char* text : {"POINT(NaN 1)", "LINESTRING(0 0,inf 1)",
                             "POLYGON((0 0,4 0,4 4,0 4,0 0),(1 1,2 1,2 -inf,1 1))"})
        EXPECT_EQ(errorOf([&] { wkt(text); }), err::GeometrieInvalide) << text;
    for (const char* text : {"POLYGON((0 0,1", "", "CIRCLE(0 0,1)"})
        EXPECT_EQ(errorOf([&] { wkt(text); }), err::Geos) << text;
}

TEST(GeometryRefusals, PointsRectanglesCircles) {
    EXPECT_EQ(errorOf([&] { Geometry::point({NaN, 0}); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { Geometry::rectangle(Rect{}); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { Geometry::rectangle(Rect{0, 0, Inf, 1}); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { Geometry::circle({0, Inf}, 1); }), err::GeometrieInvalide);
    for (double radius : {0.0, -2.0, NaN, Inf})
        EXPECT_EQ(errorOf([&] {
                      Geometry::circle({0, 0}, radius);
                  }),
                  err::GeometrieInvalide)
            << radius;
    EXPECT_EQ(errorOf([&] { Geometry::circle({0, 0}, 1, 3); }), err::AppelIncorrect);
}

TEST(GeometryErrors, GeosFailuresCarryGeosMessage) {
    try {
        wkt("LINESTRING(0 0,1 1");
        FAIL() << "no error";
    } catch (const veldra::Erreur& e) {
        EXPECT_EQ(e.numero(), err::Geos);
        EXPECT_TRUE(e.description().startsWith(QStringLiteral("GEOS : ")));
        EXPECT_GT(e.description().size(), 12) << e.description().toStdString();
    }
    // The message is not left behind for the next failure.
    EXPECT_TRUE(geosContext().takeError().isEmpty());
}

TEST(GeometryWkt, RoundsAndTrims) {
    EXPECT_EQ(wkt("POINT(1.23456789 2)").toWkt(3), QStringLiteral("POINT (1.235 2)"));
    EXPECT_EQ(Geometry::rectangle({0, 0, 2, 1}).toWkt(),
              QStringLiteral("POLYGON ((0 0, 2 0, 2 1, 0 1, 0 0))"));
}

TEST(GeometryThreads, EachThreadWorksOnItsOwn) {
    constexpr int rounds = 300;
    std::vector<double> areas(4);
    std::vector<int> roundTrips(areas.size());
    std::vector<std::thread> threads;
    for (size_t t = 0; t < areas.size(); ++t) {
        threads.emplace_back([&, t] {
            const QString text = Geometry::rectangle({0, 0, 1.5 + double(t), 2}).toWkt();
            for (int i = 0; i < rounds; ++i) {
                areas[t] += Geometry::circle({double(i), 0}, 1 + double(t)).area();
                // WKT goes through GEOS code that touches the process's locale.
                roundTrips[t] += Geometry::fromWkt(text).toWkt() == text;
                // A failure here must not leave its message to another thread.
                errorOf([] { wkt("POINT(1"); });
            }
        });
    }
    for (std::thread& th : threads)
        th.join();
    for (size_t t = 0; t < areas.size(); ++t) {
        EXPECT_NEAR(areas[t], rounds * Geometry::circle({0, 0}, 1 + double(t)).area(), 1e-6);
        EXPECT_EQ(roundTrips[t], rounds);
    }
    EXPECT_TRUE(geosContext().takeError().isEmpty());
}
