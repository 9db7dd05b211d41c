// Intersection tests (1: intersects, 2: first entirely within second) and the predicates
// under them, prepared and unprepared.
#include "carto/geometry/geometry.h"
#include "carto/geometry/prepared.h"
#include "carto/geometry/ring_cover.h"
#include "geometry_assert.h"

#include <gtest/gtest.h>

using namespace carto;
using carto::test::errorOf;
using carto::test::wkt;
namespace err = veldra::err;

namespace {

struct TestCase {
    const char* a;
    const char* b;
    bool intersects; // mode 1
    bool within;     // mode 2
};

constexpr const char* square = "POLYGON((0 0,2 0,2 2,0 2,0 0))";
// Invalid: the hole runs along the shell, and GEOS's predicates fail on it as it is.
constexpr const char* holeOnShell = "POLYGON((0 0,10 0,10 10,0 10,0 0),(0 0,5 5,10 0,0 0))";

const TestCase tests[] = {
    {"POLYGON((0.5 0.5,1 0.5,1 1,0.5 1,0.5 0.5))", square, true, true},
    {square, "POLYGON((0.5 0.5,1 0.5,1 1,0.5 1,0.5 0.5))", true, false},
    {square, square, true, true},
    // Inside, sharing part of the container's edge.
    {"POLYGON((0 0,1 0,1 1,0 1,0 0))", square, true, true},
    {"POLYGON((1 1,3 1,3 3,1 3,1 1))", square, true, false},
    {"POLYGON((5 5,6 5,6 6,5 6,5 5))", square, false, false},
    // Touching along an edge, at a corner.
    {"POLYGON((2 0,3 0,3 2,2 2,2 0))", square, true, false},
    {"POLYGON((2 2,3 2,3 3,2 3,2 2))", square, true, false},
    {"POINT(1 1)", square, true, true},
    // A point on the boundary touches but is not within.
    {"POINT(2 1)", square, true, false},
    {"POINT(0 0)", square, true, false},
    {"POINT(2.000001 1)", square, false, false},
    {"LINESTRING(0.5 0.5,1.5 1.5)", square, true, true},
    {"LINESTRING(1 1,3 1)", square, true, false},
    // Along the boundary only: no interior point in common.
    {"LINESTRING(0 0,2 0)", square, true, false},
    // Invalid input answers as its repaired form.
    {"POINT(0.25 1)", "POLYGON((0 0,2 2,2 0,0 2,0 0))", true, true},
    {"POINT(1 0.5)", "POLYGON((0 0,2 2,2 0,0 2,0 0))", false, false},
    {"POINT(1 5)", holeOnShell, true, true},
    {"POINT(5 1)", holeOnShell, false, false},
    {"POLYGON((1 4,2 4,2 5,1 5,1 4))", holeOnShell, true, true},
};

} // namespace

TEST(IntersectionTest, ModesOneAndTwo) {
    for (const TestCase& t : tests) {
        SCOPED_TRACE(std::string(t.a) + " / " + t.b);
        const Geometry a = wkt(t.a);
        const Geometry b = wkt(t.b);
        EXPECT_EQ(intersectionTest(a, b, 1), t.intersects);
        EXPECT_EQ(intersectionTest(a, b, 2), t.within);
        EXPECT_EQ(contains(b, a), t.within);
    }
}

TEST(IntersectionTest, UnknownModesAreRefused) {
    const Geometry a = wkt(square);
    for (int mode : {0, 3, -1, 12})
        EXPECT_EQ(errorOf([&] { intersectionTest(a, a, mode); }), err::AppelIncorrect) << mode;
}

TEST(PreparedGeometry, PointQueriesAgreeWithUnprepared) {
    // Concave, with a hole, boundaries on the grid below.
    const Geometry shape =
        wkt("POLYGON((0 0,10 0,10 10,6 10,6 4,4 4,4 10,0 10,0 0),(1 1,3 1,3 3,1 3,1 1))");
    const PreparedGeometry prepared(shape.clone());
    int inside = 0;
    for (double x = -1; x <= 11; x += 0.5) {
        for (double y = -1; y <= 11; y += 0.5) {
            const Geometry p = Geometry::point({x, y});
            ASSERT_EQ(prepared.contains(Point{x, y}), contains(shape, p)) << x << ' ' << y;
            ASSERT_EQ(prepared.covers(Point{x, y}), covers(shape, p)) << x << ' ' << y;
            inside += prepared.contains(Point{x, y});
        }
    }
    EXPECT_GT(inside, 100);
    EXPECT_FALSE(prepared.contains(Point{std::nan(""), 5}));
}

TEST(PreparedGeometry, GeometryQueriesAgreeWithUnprepared) {
    const Geometry container = wkt(square);
    const PreparedGeometry prepared(container.clone());
    for (const TestCase& t : tests) {
        if (std::string(t.b) != square)
            continue;
        SCOPED_TRACE(t.a);
        const Geometry g = wkt(t.a);
        EXPECT_EQ(prepared.intersects(g), t.intersects);
        EXPECT_EQ(prepared.contains(g), t.within);
        EXPECT_EQ(prepared.covers(g), covers(container, g));
    }
    // Properly: not even touching the boundary from inside.
    EXPECT_TRUE(prepared.containsProperly(wkt("POLYGON((0.5 0.5,1 0.5,1 1,0.5 1,0.5 0.5))")));
    EXPECT_FALSE(prepared.containsProperly(wkt("POLYGON((0 0,1 0,1 1,0 1,0 0))")));
    EXPECT_TRUE(prepared.contains(wkt("POLYGON((0 0,1 0,1 1,0 1,0 0))")));
}

TEST(PreparedGeometry, InvalidGeometryIsRepaired) {
    const PreparedGeometry tie(wkt("POLYGON((0 0,2 2,2 0,0 2,0 0))"));
    EXPECT_TRUE(tie.geometry().isValid());
    EXPECT_TRUE(tie.contains(Point{0.25, 1}));
    EXPECT_TRUE(tie.contains(Point{1.75, 1}));
    EXPECT_FALSE(tie.contains(Point{1, 0.5}));

    const PreparedGeometry holed(wkt(holeOnShell));
    EXPECT_NEAR(holed.geometry().area(), 75, 1e-9);
    EXPECT_TRUE(holed.contains(Point{1, 5}));
    EXPECT_FALSE(holed.contains(Point{5, 1}));
    EXPECT_TRUE(holed.intersects(wkt("LINESTRING(5 1,5 8)")));
    // An argument GEOS fails on is repaired too.
    const PreparedGeometry diagonal(wkt("LINESTRING(0 0,10 10)"));
    EXPECT_FALSE(diagonal.containsProperly(wkt(holeOnShell)));
}

TEST(PreparedGeometry, SurvivesMoves) {
    std::vector<PreparedGeometry> plots;
    for (int i = 0; i < 50; ++i) // reallocations move the earlier ones
        plots.emplace_back(Geometry::rectangle({double(i), 0, i + 1.0, 1}));
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(plots[size_t(i)].contains(Point{i + 0.5, 0.5}));
        EXPECT_FALSE(plots[size_t(i)].contains(Point{i + 1.5, 0.5}));
    }
    plots[0] = std::move(plots[49]);
    EXPECT_TRUE(plots[0].contains(Point{49.5, 0.5}));
    EXPECT_FALSE(plots[0].contains(Point{0.5, 0.5}));
}

// The cells' test must never say "covered" where GEOS would not: compared with prepared
// covers on every cell of a lattice, it may only be more cautious.
TEST(RingsHoldRect, NeverClaimsMoreThanGeosCovers) {
    const std::vector<std::vector<std::vector<Point>>> regions{
        {{{0, 0}, {4, 0}, {4, 4}, {0, 4}}},                                           // open square
        {{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}}, {{1, 1}, {3, 1}, {3, 3}, {1, 3}}}, // hole
        {{{2, -1}, {5, 2}, {2, 5}, {-1, 2}}},                                         // diamond
        {{{0, 0}, {4, 4}, {4, 0}, {0, 4}}},                                           // bowtie
    };
    for (const auto& rings : regions) {
        const PreparedGeometry region(Geometry::fromRings(rings));
        int held = 0;
        for (double x = -1.5; x < 5.5; x += 0.35)
            for (double y = -1.5; y < 5.5; y += 0.35) {
                const Rect cell{x, y, x + 0.3, y + 0.3};
                const bool cheap = ringsHoldRect(rings, cell);
                held += cheap;
                if (cheap) {
                    EXPECT_TRUE(region.covers(Geometry::rectangle(cell))) << x << ' ' << y;
                }
            }
        EXPECT_GT(held, 5); // and it does say so for cells well inside
    }
    const std::vector<std::vector<Point>> square{{{0, 0}, {4, 0}, {4, 4}, {0, 4}}};
    EXPECT_TRUE(ringsHoldRect(square, {1, 1, 2, 2}));
    EXPECT_FALSE(ringsHoldRect(square, {0, 1, 1, 2}));     // on the border
    EXPECT_FALSE(ringsHoldRect(square, {3, 3, 4.5, 3.5})); // across it
    EXPECT_FALSE(ringsHoldRect(square, Rect{}));
}
