// Rectangles of the plan: the null state, and boundaries counted as inside.
#include "carto/geometry/rect.h"

#include <cmath>
#include <gtest/gtest.h>

using carto::Point;
using carto::Rect;

TEST(Rect, NullIsEmptyAndNeutral) {
    const Rect null;
    const Rect r{1, 2, 3, 5};
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.width(), 0);
    EXPECT_FALSE(null.contains(Point{0, 0}));
    EXPECT_FALSE(null.intersects(r));
    EXPECT_FALSE(r.contains(null));
    EXPECT_EQ(null.united(r), r);
    EXPECT_EQ(r.united(null), r);
    EXPECT_TRUE(null.expanded(10).isNull());
    EXPECT_TRUE((Rect{0, NAN, 1, 1}).isNull());
    EXPECT_TRUE((Rect{0, 0, 4, 2}).expanded(-3).isNull());
}

TEST(Rect, DegenerateRectanglesAreNotNull) {
    const Rect at = Rect{}.united(Point{4, 7});
    EXPECT_EQ(at, (Rect{4, 7, 4, 7}));
    EXPECT_TRUE(at.contains(Point{4, 7}));
    EXPECT_TRUE(at.intersects(Rect{0, 0, 4, 7}));
    EXPECT_EQ(at.united(Point{1, 9}), (Rect{1, 7, 4, 9}));
    EXPECT_FALSE((Rect{0, 0, 4, 2}).expanded(-1).isNull()); // a segment remains
}

TEST(Rect, FromCornersNormalises) {
    const Rect r = Rect::fromCorners({5, -1}, {2, 3});
    EXPECT_EQ(r, (Rect{2, -1, 5, 3}));
    EXPECT_EQ(r.center(), (Point{3.5, 1}));
    EXPECT_EQ(r.expanded(1), (Rect{1, -2, 6, 4}));
}

TEST(Rect, BoundariesCount) {
    const Rect r{0, 0, 10, 10};
    struct Case {
        Point p;
        bool inside;
    };
    for (const Case& c : {Case{{5, 5}, true}, Case{{0, 0}, true}, Case{{10, 3}, true},
                          Case{{10.001, 3}, false}, Case{{-1, 5}, false}, Case{{NAN, 5}, false}})
        EXPECT_EQ(r.contains(c.p), c.inside) << c.p.x << ' ' << c.p.y;

    EXPECT_TRUE(r.contains(Rect{0, 0, 10, 10}));
    EXPECT_FALSE(r.contains(Rect{2, 2, 11, 3}));
    EXPECT_TRUE(r.intersects(Rect{10, 10, 12, 12})); // a shared corner
    EXPECT_FALSE(r.intersects(Rect{10.5, 0, 12, 12}));
    EXPECT_FALSE(r.intersects(Rect{0, -3, 10, -0.5}));
}
