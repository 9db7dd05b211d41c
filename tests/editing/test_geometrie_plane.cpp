// Squaring and orienting quadrilaterals on their corners alone: right angles, kept left
// edges and sides, written back in ring order, exact far from the origin.
#include "editing/geometrie_plane.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace veldra;
using plane::Coins;

namespace {

// The angle at corner i of the ring, in radians.
double angle(const Coins& c, int i) {
    const carto::Point p = c[size_t(i)], a = c[size_t((i + 3) % 4)], b = c[size_t((i + 1) % 4)];
    const double ux = a.x - p.x, uy = a.y - p.y, vx = b.x - p.x, vy = b.y - p.y;
    return std::atan2(std::fabs(ux * vy - uy * vx), ux * vx + uy * vy);
}

carto::Point turned(carto::Point p, carto::Point about, double degrees) {
    const double t = degrees * M_PI / 180, dx = p.x - about.x, dy = p.y - about.y;
    return {about.x + dx * std::cos(t) - dy * std::sin(t),
            about.y + dx * std::sin(t) + dy * std::cos(t)};
}

Coins turned(const Coins& c, carto::Point about, double degrees) {
    return {turned(c[0], about, degrees), turned(c[1], about, degrees),
            turned(c[2], about, degrees), turned(c[3], about, degrees)};
}

Coins moved(const Coins& c, double dx, double dy) {
    Coins r = c;
    for (carto::Point& p : r)
        p = {p.x + dx, p.y + dy};
    return r;
}

} // namespace

TEST(GeometriePlane, SquaringAVerticalLeftEdgeUsesTheLowerRightCornersX) {
    const Coins c{{{0, 0}, {0, 10}, {5, 11}, {6, -1}}};
    const Coins r = plane::angleDroit(c);
    // Same slots: the left corners stay, the right ones become (6,10) and (6,0).
    EXPECT_EQ(r[0], (carto::Point{0, 0}));
    EXPECT_EQ(r[1], (carto::Point{0, 10}));
    EXPECT_EQ(r[2], (carto::Point{6, 10}));
    EXPECT_EQ(r[3], (carto::Point{6, 0}));
}

TEST(GeometriePlane, SquaringLeavesAHorizontalLeftEdgeAlone) {
    const Coins c{{{0, 0}, {1, 0}, {4, 5}, {3, 2}}};
    EXPECT_EQ(plane::angleDroit(c), c);
}

TEST(GeometriePlane, SquaredObliquePlotsHaveRightAnglesAndKeepTheirLeftEdge) {
    // A skewed 2 x 1 plot, turned by several angles, near the origin and on a real grid.
    const Coins base{{{0, 0}, {0.05, 1}, {2.1, 1.08}, {1.95, -0.04}}};
    for (const double degres : {-40.0, -30.0, -5.0, 10.0, 30.0, 44.0})
        for (const carto::Point origine : {carto::Point{0, 0}, carto::Point{652341.7, 6862810.3}}) {
            const Coins c = moved(turned(base, {0, 0}, degres), origine.x, origine.y);
            const Coins r = plane::angleDroit(c);
            for (int i = 0; i < 4; ++i)
                EXPECT_NEAR(angle(r, i), M_PI / 2, 1e-9) << degres << " corner " << i;
            // The two leftmost corners stay where they were.
            int kept = 0;
            for (int i = 0; i < 4; ++i)
                kept += r[size_t(i)] == c[size_t(i)] ? 1 : 0;
            EXPECT_EQ(kept, 2) << degres;
            // The ring stays simple: opposite sides are parallel and equal.
            EXPECT_NEAR(std::hypot(r[1].x - r[0].x, r[1].y - r[0].y),
                        std::hypot(r[2].x - r[3].x, r[2].y - r[3].y), 1e-8);
        }
}

TEST(GeometriePlane, ASquaredRingNeverCrossesItself) {
    // A left edge leaning right: the lower right-hand corner is the nearer to the top line,
    // yet the upper position goes to the corner next to the upper-left one in the ring.
    for (const Coins& c :
         {Coins{{{0, 0}, {2.3, 0}, {2, 1}, {0.3, 1}}}, Coins{{{0.3, 1}, {2, 1}, {2.3, 0}, {0, 0}}},
          Coins{{{0, 0}, {0.3, 1}, {2, 1.2}, {2.3, -0.2}}}}) {
        const Coins r = plane::angleDroit(c);
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(angle(r, i), M_PI / 2, 1e-9) << i;
    }
}

TEST(GeometriePlane, TheNamedSideIsFoundWhateverTheRingOrder) {
    const Coins c{{{3, 2}, {0, 0}, {0, 2}, {3, 0}}};
    EXPECT_EQ(plane::coinsDuCote(c, Cote::Bas), (std::array<int, 2>{1, 3}));
    EXPECT_EQ(plane::coinsDuCote(c, Cote::Haut), (std::array<int, 2>{2, 0}));
    EXPECT_EQ(plane::coinsDuCote(c, Cote::Gauche), (std::array<int, 2>{1, 2}));
    EXPECT_EQ(plane::coinsDuCote(c, Cote::Droite), (std::array<int, 2>{3, 0}));
}

TEST(GeometriePlane, OrientingTurnsOnlyTheSecondCornerOfTheSide) {
    const Coins reference = turned(Coins{{{0, 0}, {3, 0}, {3, 2}, {0, 2}}}, {0, 0}, 30);
    const auto d = plane::directionDuCote(reference, Cote::Bas);
    ASSERT_TRUE(d.has_value());
    EXPECT_FALSE(d->verticale);
    EXPECT_NEAR(d->pente, std::tan(M_PI / 6), 1e-12);

    const Coins plot =
        moved(turned(Coins{{{0, 0}, {2, 0}, {2, 1}, {0, 1}}}, {0, 0}, 12), 400000, 5000000);
    const Coins r = plane::orienteCote(plot, Cote::Bas, *d);
    const auto [i, j] = plane::coinsDuCote(plot, Cote::Bas);
    for (int k = 0; k < 4; ++k) {
        if (k != j) {
            EXPECT_EQ(r[size_t(k)], plot[size_t(k)]) << k;
        }
    }
    const carto::Point p1 = r[size_t(i)], p2 = r[size_t(j)];
    EXPECT_NEAR((p2.y - p1.y) / (p2.x - p1.x), d->pente, 1e-9);
    EXPECT_NEAR(std::hypot(p2.x - p1.x, p2.y - p1.y), 2, 1e-9);
    EXPECT_GT(p2.x, p1.x); // the side keeps its sense
}

TEST(GeometriePlane, AVerticalReferenceMovesTheSecondCornerToTheFirstCornersX) {
    const Coins reference{{{0, 0}, {2, 0}, {2, 3}, {0, 3}}};
    const auto d = plane::directionDuCote(reference, Cote::Gauche);
    ASSERT_TRUE(d.has_value());
    EXPECT_TRUE(d->verticale);
    const Coins plot{{{10, 0}, {12, 0}, {12.5, 3}, {10.4, 3}}};
    const Coins r = plane::orienteCote(plot, Cote::Gauche, *d);
    EXPECT_EQ(r[3], (carto::Point{10, 3}));
    EXPECT_EQ(r[0], plot[0]);
    EXPECT_EQ(r[2], plot[2]);
}
