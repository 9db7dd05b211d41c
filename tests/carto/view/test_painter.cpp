// Regions of a few pixels are drawn as blocks of their pixels, gathered and drawn together:
// each block covers exactly the pixels of its bounds, in the blend of its fill and border,
// and what is drawn before or after it stays under or over it.
#include "carto/render/feature_painter.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

using namespace carto;

namespace {

// One pixel per map unit; map (0, 100) is the top left corner of a 100x100 picture.
Viewport unitViewport() {
    Viewport v;
    v.centre = {50, 50};
    v.zoom = 100;
    v.size = QSize(100, 100);
    return v;
}

Shape square(double x, double y, double side) {
    return Shape(Parts{{{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}}});
}

Rect boundsOf(double x, double y, double side) {
    return {x, y, x + side, y + side};
}

RegionPaint paintOf(QColor fill, QColor border) {
    return {QBrush(fill), QBrush(Qt::NoBrush), QPen(border, 1)};
}

struct Canvas {
    QImage image{100, 100, QImage::Format_ARGB32_Premultiplied};
    Canvas() { image.fill(Qt::white); }
    // Pixels of the picture's row and column, as screen coordinates.
    QRgb at(int x, int y) const { return image.pixel(x, y) | 0xFF000000; }
};

} // namespace

TEST(FeaturePainter, SmallRegionsFillExactlyThePixelsOfTheirBoundsInTheBlend) {
    Canvas c;
    {
        QPainter p(&c.image);
        p.setRenderHint(QPainter::Antialiasing);
        FeaturePainter fp(p, unitViewport());
        // Map x 10..12, y 10..12: screen columns 10 and 11, rows 88 and 89.
        fp.drawRegion(square(10, 10, 2), paintOf(QColor(200, 0, 0), QColor(0, 0, 100)),
                      boundsOf(10, 10, 2));
        // Under half a pixel: the one pixel it falls in, in its fill alone (no border).
        RegionPaint fillOnly = paintOf(QColor(0, 150, 0), Qt::black);
        fillOnly.border = QPen(Qt::NoPen);
        fp.drawRegion(square(30.1, 30.1, 0.3), fillOnly, boundsOf(30.1, 30.1, 0.3));
    } // the painter's end draws what waits
    const QRgb blend = qRgb(100, 0, 50);
    for (int x = 9; x <= 12; ++x)
        for (int y = 87; y <= 90; ++y) {
            const bool inside = x >= 10 && x <= 11 && y >= 88 && y <= 89;
            EXPECT_EQ(c.at(x, y), inside ? blend : qRgb(255, 255, 255)) << x << "," << y;
        }
    EXPECT_EQ(c.at(30, 69), qRgb(0, 150, 0));
    EXPECT_EQ(c.at(31, 69), qRgb(255, 255, 255));
    EXPECT_EQ(c.at(30, 70), qRgb(255, 255, 255));
}

TEST(FeaturePainter, BlocksKeepTheirPlaceInTheDrawingOrder) {
    Canvas c;
    {
        QPainter p(&c.image);
        FeaturePainter fp(p, unitViewport());
        const RegionPaint tiny = paintOf(Qt::red, Qt::red);
        fp.drawRegion(square(20, 20, 1), tiny, boundsOf(20, 20, 1)); // under the big one
        fp.drawRegion(square(10, 10, 40), paintOf(Qt::blue, Qt::blue), boundsOf(10, 10, 40));
        fp.drawRegion(square(30, 30, 1), tiny, boundsOf(30, 30, 1)); // over it
        fp.flush();
        p.fillRect(QRect(40, 40, 100, 100), Qt::green); // straight on the painter, after
        fp.drawRegion(square(45, 45, 1), tiny, boundsOf(45, 45, 1)); // over the green
    }
    EXPECT_EQ(c.at(20, 79), qRgb(0, 0, 255));
    EXPECT_EQ(c.at(30, 69), qRgb(255, 0, 0));
    EXPECT_EQ(c.at(41, 41), qRgb(0, 255, 0));
    EXPECT_EQ(c.at(45, 54), qRgb(255, 0, 0));
}

TEST(FeaturePainter, RegionsOfThreePixelsOrMoreAreStillPolygons) {
    Canvas c;
    {
        QPainter p(&c.image);
        FeaturePainter fp(p, unitViewport());
        // A triangle 10 pixels wide: its bounds' far corner stays white.
        const Shape triangle(Parts{{{10, 10}, {20, 10}, {10, 20}, {10, 10}}});
        fp.drawRegion(triangle, paintOf(Qt::red, Qt::red), Rect{10, 10, 20, 20});
    }
    EXPECT_EQ(c.at(12, 88), qRgb(255, 0, 0));
    EXPECT_EQ(c.at(19, 81), qRgb(255, 255, 255));
}
