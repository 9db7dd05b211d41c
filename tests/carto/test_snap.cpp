// Snapping: a vertex in reach wins over any edge, the nearest wins among them, and nothing
// out of reach is ever taken.
#include "carto/model/map.h"
#include "carto/model/snap.h"

#include <array>
#include <gtest/gtest.h>

using namespace carto;

namespace {

struct Couches {
    Map map;
    Layer* a;
    Layer* b;
    Couches() {
        LayerInfo info;
        info.addParameter(QStringLiteral("Name"), QStringLiteral("A"));
        a = &map.addLayer(info);
        info.addParameter(QStringLiteral("Name"), QStringLiteral("B"));
        b = &map.addLayer(info);
        a->addFeature(Feature::region({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}}));
        b->addFeature(Feature::region({{{20, 0}, {30, 0}, {30, 10}, {20, 10}}}));
    }
};

} // namespace

TEST(Snap, VertexBeforeEdgeThenTheNearest) {
    Couches c;
    const std::array<const Layer*, 2> les2{c.a, c.b};
    // Near the edge (0.1 away) but within reach of a vertex (0.9 away): the vertex.
    auto h = snapPoint(les2, {9.5, 0.1}, 1.0);
    ASSERT_TRUE(h.has_value());
    EXPECT_TRUE(h->vertex);
    EXPECT_EQ(h->point, (Point{10, 0}));
    // No vertex in reach: the nearest point of the nearest edge.
    h = snapPoint(les2, {5, 0.3}, 1.0);
    ASSERT_TRUE(h.has_value());
    EXPECT_FALSE(h->vertex);
    EXPECT_EQ(h->point, (Point{5, 0}));
    // Between the two layers: each one's vertex, the nearer wins.
    h = snapPoint(les2, {19.4, 10.2}, 2.0);
    ASSERT_TRUE(h.has_value());
    EXPECT_EQ(h->point, (Point{20, 10}));
    // Out of reach, or no tolerance, or no layer: nothing.
    EXPECT_FALSE(snapPoint(les2, {15, 5}, 2.0).has_value());
    EXPECT_FALSE(snapPoint(les2, {10, 0}, 0).has_value());
    const std::array<const Layer*, 1> aucun{nullptr};
    EXPECT_FALSE(snapPoint(aucun, {10, 0}, 1).has_value());
    // Only the layers asked: B's corner is not A's.
    const std::array<const Layer*, 1> seulA{c.a};
    EXPECT_FALSE(snapPoint(seulA, {20.2, 0.2}, 1.0).has_value());
}
