// Flat shapes: every arrangement of parts comes back exactly as it was given, copies are
// independent, and parts that do not end with the points are refused.
#include "carto/geometry/shape.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace carto;

namespace {

const Part kSquare{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}};
const Part kHole{{0.5, 0.5}, {1, 0.5}, {1, 1}, {0.5, 0.5}};

} // namespace

TEST(Shape, GivesBackEveryArrangementOfParts) {
    const std::vector<Parts> cases{
        {},                         // nothing
        {{}},                       // one empty part
        {{{3, 4}}},                 // a symbol's point, held without a block
        {kSquare},                  // a plot
        {kSquare, kHole},           // a shell and its hole
        {{}, {{1, 1}}, {}},         // empty parts around a point
        {{{1, 1}}, {{2, 2}}},       // two points: more than one part needs a block
        {{{-0.0, 1e300}}, kSquare}, // extreme values kept bit for bit
    };
    for (const Parts& parts : cases) {
        const Shape s(parts);
        SCOPED_TRACE(parts.size());
        EXPECT_EQ(s.size(), parts.size());
        EXPECT_EQ(s.empty(), parts.empty());
        EXPECT_EQ(s.toParts(), parts);
        size_t points = 0, i = 0;
        for (const PartView part : s) {
            EXPECT_EQ(part, parts[i]);
            EXPECT_EQ(Part(part), parts[i]);
            points += parts[i++].size();
        }
        EXPECT_EQ(i, parts.size());
        EXPECT_EQ(s.points().size(), points);
    }
    EXPECT_EQ(Shape({kSquare, kHole})[1].back(), kHole.back());
    EXPECT_THROW(Shape({kSquare}).at(1), std::out_of_range);
    EXPECT_THROW(Shape({kSquare})[0].at(5), std::out_of_range);
}

TEST(Shape, ComparesPartsAndNotJustPoints) {
    const Shape whole({kSquare});
    EXPECT_EQ(whole, Shape({kSquare}));
    // The same points cut into other parts are another shape.
    const Part first(kSquare.begin(), kSquare.begin() + 2),
        rest(kSquare.begin() + 2, kSquare.end());
    EXPECT_NE(whole, Shape({first, rest}));
    EXPECT_NE(Shape({first, rest}), Shape({rest, first}));
    EXPECT_NE(Shape(Parts{{{1, 1}}}), Shape(Parts{{{1, 2}}}));
    EXPECT_NE(Shape(Parts{}), Shape(Parts{{}}));
}

TEST(Shape, CopiesAndMovesAreIndependent) {
    for (const Parts& parts : {Parts{{{5, 6}}}, Parts{kSquare, kHole}}) {
        Shape a(parts);
        Shape b = a;
        for (Point& p : b.points())
            p.x += 10;
        EXPECT_EQ(a.toParts(), parts);
        EXPECT_NE(a, b);
        EXPECT_EQ(b.front()[0].x, parts.front().front().x + 10);

        Shape c = std::move(b);
        EXPECT_TRUE(b.empty()); // NOLINT: a moved-from shape is empty and usable
        EXPECT_EQ(c.front()[0].x, parts.front().front().x + 10);
        b = c;
        c = a;
        EXPECT_EQ(c, a);
        EXPECT_NE(b, a);
    }
}

TEST(Shape, RefusesPartsThatDoNotEndWithThePoints) {
    const std::vector<Point> points{{0, 0}, {1, 1}, {2, 2}};
    const std::vector<std::uint32_t> tooShort{2}, tooLong{1, 4}, backwards{2, 1, 3}, none{};
    EXPECT_THROW(Shape(points, tooShort), std::invalid_argument);
    EXPECT_THROW(Shape(points, tooLong), std::invalid_argument);
    EXPECT_THROW(Shape(points, backwards), std::invalid_argument);
    EXPECT_THROW(Shape(points, none), std::invalid_argument);
    const std::vector<std::uint32_t> split{1, 3};
    EXPECT_EQ(Shape(points, split).toParts(), (Parts{{{0, 0}}, {{1, 1}, {2, 2}}}));
}

TEST(ShapeBuilder, BuildsOneFeatureAfterAnotherFromTheSameBuffers) {
    ShapeBuilder b;
    for (const Parts& parts : {Parts{kSquare, kHole}, Parts{{{7, 8}}}, Parts{}, Parts{kHole}}) {
        b.clear();
        for (const Part& part : parts) {
            for (const Point& p : part)
                b.addPoint(p);
            b.endPart();
        }
        EXPECT_EQ(b.empty(), parts.empty());
        EXPECT_EQ(b.build().toParts(), parts);
    }
}
