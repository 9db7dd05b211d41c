// Union, intersection and difference, including on invalid input.
#include "carto/geometry/geometry.h"
#include "geometry_assert.h"

#include <array>
#include <gtest/gtest.h>

using namespace carto;
using carto::test::errorOf;
using carto::test::sameGeometry;
using carto::test::wkt;
namespace err = veldra::err;

namespace {

enum class Op { Union, Intersection, Difference };

struct OverlayCase {
    Op op;
    const char* a;
    const char* b;
    const char* expected;
};

Geometry apply(Op op, const Geometry& a, const Geometry& b) {
    switch (op) {
    case Op::Union:
        return unionOf(std::array{&a, &b});
    case Op::Intersection:
        return intersection(a, b);
    case Op::Difference:
        return difference(a, b);
    }
    return Geometry::empty();
}

constexpr const char* unitSquare = "POLYGON((0 0,1 0,1 1,0 1,0 0))";
constexpr const char* bigSquare = "POLYGON((0 0,10 0,10 10,0 10,0 0))";
// Self-intersecting: two triangles of area 1 meeting at (1 1).
constexpr const char* bowTie = "POLYGON((0 0,2 2,2 0,0 2,0 0))";

const OverlayCase overlays[] = {
    // Adjacent squares merge into one polygon.
    {Op::Union, unitSquare, "POLYGON((1 0,2 0,2 1,1 1,1 0))", "POLYGON((0 0,2 0,2 1,0 1,0 0))"},
    {Op::Union, unitSquare, "POLYGON((5 5,6 5,6 6,5 6,5 5))",
     "MULTIPOLYGON(((0 0,1 0,1 1,0 1,0 0)),((5 5,6 5,6 6,5 6,5 5)))"},
    {Op::Union, "POLYGON((0 0,2 0,2 2,0 2,0 0))", "POLYGON((1 1,3 1,3 3,1 3,1 1))",
     "POLYGON((0 0,2 0,2 1,3 1,3 3,1 3,1 2,0 2,0 0))"},
    {Op::Intersection, "POLYGON((0 0,2 0,2 2,0 2,0 0))", "POLYGON((1 1,3 1,3 3,1 3,1 1))",
     "POLYGON((1 1,2 1,2 2,1 2,1 1))"},
    // Squares sharing an edge meet along it.
    {Op::Intersection, unitSquare, "POLYGON((1 0,2 0,2 1,1 1,1 0))", "LINESTRING(1 0,1 1)"},
    {Op::Intersection, unitSquare, "POLYGON((5 5,6 5,6 6,5 6,5 5))", "POLYGON EMPTY"},
    {Op::Intersection, bigSquare, "LINESTRING(-5 5,15 5)", "LINESTRING(0 5,10 5)"},
    {Op::Difference, bigSquare, "POLYGON((2 2,4 2,4 4,2 4,2 2))",
     "POLYGON((0 0,10 0,10 10,0 10,0 0),(2 2,4 2,4 4,2 4,2 2))"},
    {Op::Difference, "POLYGON((0 0,2 0,2 2,0 2,0 0))", "POLYGON((1 1,3 1,3 3,1 3,1 1))",
     "POLYGON((0 0,2 0,2 1,1 1,1 2,0 2,0 0))"},
    {Op::Difference, unitSquare, bigSquare, "POLYGON EMPTY"},
    // Invalid operands are repaired first.
    {Op::Union, bowTie, "POLYGON((2 0,3 0,3 2,2 2,2 0))",
     "MULTIPOLYGON(((0 0,1 1,0 2,0 0)),((2 0,3 0,3 2,2 2,1 1,2 0)))"},
    {Op::Intersection, bowTie, "POLYGON((0 0,2 0,2 1,0 1,0 0))",
     "MULTIPOLYGON(((0 0,1 1,0 1,0 0)),((2 0,2 1,1 1,2 0)))"},
    {Op::Difference, bigSquare, bowTie,
     "POLYGON((0 0,10 0,10 10,0 10,0 2,1 1,0 0),(2 0,2 2,1 1,2 0))"},
};

} // namespace

TEST(Overlay, ResultsMatchTheirFigures) {
    for (const OverlayCase& c : overlays) {
        SCOPED_TRACE(std::string(c.a) + " / " + c.b);
        EXPECT_TRUE(sameGeometry(apply(c.op, wkt(c.a), wkt(c.b)), c.expected));
    }
}

TEST(Overlay, UnionOfAdjacentSquaresIsOnePolygonWithTheSummedArea) {
    std::vector<Geometry> squares;
    for (int i = 0; i < 10; ++i)
        for (int j = 0; j < 10; ++j)
            squares.push_back(Geometry::rectangle({double(i), double(j), i + 1.0, j + 1.0}));
    std::vector<const Geometry*> all;
    for (const Geometry& g : squares)
        all.push_back(&g);

    const Geometry u = unionOf(all);
    EXPECT_EQ(u.type(), GeometryType::Polygon);
    EXPECT_EQ(u.numParts(), 1);
    EXPECT_NEAR(u.area(), 100, 1e-9);
    EXPECT_TRUE(sameGeometry(u, bigSquare));
}

TEST(Overlay, InvalidInputIsRepairedNotThrown) {
    const Geometry tie = wkt(bowTie);
    EXPECT_FALSE(tie.isValid());

    const Geometry repaired = tie.makeValid();
    EXPECT_TRUE(repaired.isValid());
    EXPECT_EQ(repaired.numParts(), 2);
    EXPECT_NEAR(repaired.area(), 2, 1e-9);

    // Left alone, the self-intersection would cancel the two triangles' areas.
    EXPECT_NEAR(unionOf(std::array{&tie}).area(), 2, 1e-9);
    const Geometry other = wkt("POLYGON((1 -1,3 -1,3 3,1 3,1 -1))");
    EXPECT_NEAR(unionOf(std::array{&tie, &other}).area(), 1 + 8, 1e-9);
}

TEST(Overlay, IntersectionOfSeveral) {
    const Geometry a = wkt("POLYGON((0 0,4 0,4 4,0 4,0 0))");
    const Geometry b = wkt("POLYGON((1 1,5 1,5 5,1 5,1 1))");
    const Geometry c = wkt("POLYGON((2 -1,6 -1,6 3,2 3,2 -1))");
    const Geometry far = wkt("POINT(50 50)");
    EXPECT_TRUE(
        sameGeometry(intersectionOf(std::array{&a, &b, &c}), "POLYGON((2 1,4 1,4 3,2 3,2 1))"));
    EXPECT_TRUE(intersectionOf(std::array{&a, &far, &b}).isEmpty());
    EXPECT_TRUE(sameGeometry(intersectionOf(std::array{&a}), a));
}

TEST(Overlay, RefusesNoInputAndNullInput) {
    const Geometry a = wkt(unitSquare);
    const std::vector<const Geometry*> none;
    const std::vector<const Geometry*> withNull = {&a, nullptr};
    EXPECT_EQ(errorOf([&] { unionOf(none); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { intersectionOf(none); }), err::GeometrieInvalide);
    EXPECT_EQ(errorOf([&] { unionOf(withNull); }), err::AppelIncorrect);
    EXPECT_EQ(errorOf([&] { intersectionOf(withNull); }), err::AppelIncorrect);
}

TEST(Overlay, ThePolygonalPartKeepsOnlySurfaces) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {
        {"POLYGON((0 0,1 0,1 1,0 1,0 0))", "POLYGON((0 0,1 0,1 1,0 1,0 0))"},
        {"GEOMETRYCOLLECTION(POLYGON((0 0,1 0,1 1,0 1,0 0)),LINESTRING(1 1,3 3),POINT(5 5))",
         "POLYGON((0 0,1 0,1 1,0 1,0 0))"},
        {"GEOMETRYCOLLECTION(POLYGON((0 0,1 0,1 1,0 1,0 0)),POLYGON((1 0,2 0,2 1,1 1,1 0)))",
         "POLYGON((0 0,2 0,2 1,0 1,0 0))"},
        {"LINESTRING(0 0,1 1)", "POLYGON EMPTY"},
        {"GEOMETRYCOLLECTION(LINESTRING(0 0,1 1),POINT(2 2))", "POLYGON EMPTY"},
    };
    for (const auto& c : cases) {
        const Geometry g = wkt(c.in).polygonalPart();
        if (QString::fromLatin1(c.out).endsWith(QLatin1String("EMPTY")))
            EXPECT_TRUE(g.isEmpty()) << c.in;
        else
            EXPECT_TRUE(sameGeometry(g, c.out)) << c.in;
    }
}
