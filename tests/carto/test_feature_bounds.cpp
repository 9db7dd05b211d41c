// A feature's bounds follow its points, its font or its symbol through every change.
#include "carto/model/feature.h"
#include "carto/model/text_metrics.h"

#include <gtest/gtest.h>

using namespace carto;

TEST(FeatureBounds, FollowPointsFontAndSymbolThroughChanges) {
    Feature region =
        Feature::region({{{0, 0}, {4, 0}, {4, 3}, {0, 0}}, {{-2, 1}, {-1, 5}, {-1, 1}, {-2, 1}}});
    EXPECT_EQ(region.bounds(), (Rect{-2, 0, 4, 5}));
    region.offset(1, -1);
    EXPECT_EQ(region.bounds(), (Rect{-1, -1, 5, 4}));
    region.setPoint(0, 1, {9, 0});
    EXPECT_EQ(region.bounds(), (Rect{-1, -1, 9, 4}));
    EXPECT_EQ(Feature::line({{{3, 1}, {2, 2}, {-1, 0}}}).bounds(), (Rect{-1, 0, 3, 2}));
    EXPECT_TRUE(Feature::line({}).bounds().isNull());

    Style turned;
    turned.textSize = 30;
    turned.textRotation = 30;
    Feature text = Feature::textAt({10, 20}, QStringLiteral("B-117"), turned);
    EXPECT_EQ(text.bounds(), textBounds({10, 20}, QStringLiteral("B-117"), turned));
    text.offset(5, 5);
    EXPECT_EQ(text.bounds(), textBounds({15, 25}, QStringLiteral("B-117"), turned));
    const Rect before = text.bounds();
    text.setText(QStringLiteral("B-117 bis, allée des Tilleuls"));
    EXPECT_GT(text.bounds().width(), before.width());
    turned.textRotation = 0;
    text.setStyle(turned);
    EXPECT_EQ(text.bounds(),
              textBounds({15, 25}, QStringLiteral("B-117 bis, allée des Tilleuls"), turned));

    Style tree;
    tree.symbolSize = 400; // four map units wide
    Feature symbol = Feature::symbol({1, 1}, tree);
    EXPECT_EQ(symbol.bounds(), (Rect{-1, -1, 3, 3}));
    symbol.setPoint(0, 0, {2, 2});
    EXPECT_EQ(symbol.bounds(), (Rect{0, 0, 4, 4}));
    tree.symbolSize = -5; // a point, never an inverted box
    symbol.setStyle(tree);
    EXPECT_EQ(symbol.bounds(), (Rect{2, 2, 2, 2}));
}
