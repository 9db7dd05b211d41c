#include "veldra-plan/paper_raster.h"

#include "veldra-plan/gdal_support.h"
#include "veldra-plan/sample_layout.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <cpl_string.h>

namespace veldra::plantool {

namespace {

constexpr double Margin = 2;        // metres of paper round the enclosure
constexpr double MaxPixels = 2500;  // along the longer side
constexpr double FinestPixel = 0.1; // metres

QPolygonF toPolygon(const std::vector<Point>& points) {
    QPolygonF out;
    out.reserve(static_cast<qsizetype>(points.size()));
    for (const Point& p : points)
        out.append(QPointF(p.x, p.y));
    return out;
}

QPen inkPen(const QColor& colour, double pixels) {
    QPen pen(colour, pixels);
    pen.setCosmetic(true);
    return pen;
}

struct Georef {
    double x0;  // west edge, metres
    double top; // north edge, metres
    double pixel;
    int width;
    int height;
};

Georef georefFor(const SampleLayout& layout) {
    const double w = layout.width + 2 * Margin;
    const double h = layout.height + 2 * Margin;
    const double pixel = std::max(FinestPixel, std::ceil(std::max(w, h) / MaxPixels * 100) / 100);
    return {-Margin, layout.height + Margin, pixel, static_cast<int>(std::ceil(w / pixel)),
            static_cast<int>(std::ceil(h / pixel))};
}

QImage draw(const SampleLayout& layout, const Georef& g) {
    QImage image(g.width, g.height, QImage::Format_RGB888);
    image.fill(QColor(244, 238, 220)); // old paper
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QTransform toImage;
    toImage.scale(1 / g.pixel, -1 / g.pixel);
    toImage.translate(-g.x0, -g.top);
    painter.setTransform(toImage);

    const QColor ink(70, 55, 40);
    painter.setBrush(Qt::NoBrush);
    QPen path(QColor(225, 210, 180), 4);
    // Square caps close the round path where its two ends meet at a corner.
    path.setCapStyle(Qt::SquareCap);
    path.setJoinStyle(Qt::MiterJoin);
    painter.setPen(path);
    for (const Polyline& p : layout.paths)
        painter.drawPolyline(toPolygon(p));

    painter.setPen(inkPen(ink, 3));
    painter.drawPolygon(toPolygon(layout.enclosure));
    painter.setPen(inkPen(ink, 1.5));
    for (const SectionLayout& s : layout.sections)
        painter.drawPolygon(toPolygon(s.outline));

    QPen walkway = inkPen(QColor(150, 135, 110), 1);
    walkway.setStyle(Qt::DashLine);
    const QPen plotPen = inkPen(QColor(90, 80, 70), 1);
    for (const SectionLayout& s : layout.sections) {
        for (const AlleyLayout& a : s.alleys) {
            painter.setPen(walkway);
            painter.drawPolyline(toPolygon(a.walkway));
            painter.setPen(plotPen);
            for (const PlotLayout& p : a.plots)
                painter.drawPolygon(toPolygon(p.corners));
        }
    }

    painter.setPen(inkPen(ink, 1.5));
    painter.setBrush(QBrush(ink, Qt::BDiagPattern));
    painter.drawPolygon(toPolygon(layout.chapel));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(inkPen(QColor(80, 110, 70), 1));
    for (const TreeLayout& t : layout.trees)
        painter.drawEllipse(QPointF(t.at.x, t.at.y), 1.5, 1.5);

    // Glyphs need the font database, which only a QGuiApplication provides.
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr) {
        painter.resetTransform();
        painter.setPen(ink);
        QFont font(QStringLiteral("DejaVu Sans"));
        for (const SectionLayout& s : layout.sections) {
            // Letters up to 6 m high, smaller in small sections.
            const double height = std::min(6.0, (s.outline[3].y - s.outline[0].y) / 4);
            font.setPixelSize(std::max(8, static_cast<int>(std::lround(height / g.pixel))));
            painter.setFont(font);
            const QPointF at = toImage.map(QPointF(s.outline[3].x + 1, s.outline[3].y - 1));
            painter.drawText(at + QPointF(0, font.pixelSize()), s.name);
        }
    }
    return image;
}

} // namespace

void writePaperRaster(const SampleLayout& layout, const QString& path) {
    const Georef g = georefFor(layout);
    QImage image = draw(layout, g);

    const QuietGdal quiet;
    CPLStringList options;
    options.SetNameValue("COMPRESS", "DEFLATE");
    options.SetNameValue("TILED", "YES");
    options.SetNameValue("PHOTOMETRIC", "RGB");
    GDALDatasetUniquePtr ds(gdalDriver("GTiff").Create(gdalPath(path).constData(), g.width,
                                                       g.height, 3, GDT_Byte, options.List()));
    if (!ds)
        fail(QStringLiteral("Impossible de créer l'image « %1 »").arg(path));
    double transform[6] = {g.x0, g.pixel, 0, g.top, 0, -g.pixel};
    if (ds->SetGeoTransform(transform) != CE_None ||
        ds->RasterIO(GF_Write, 0, 0, g.width, g.height, image.bits(), g.width, g.height, GDT_Byte,
                     3, nullptr, 3, image.bytesPerLine(), 1, nullptr) != CE_None)
        fail(QStringLiteral("Impossible d'écrire l'image « %1 »").arg(path));
    closeDataset(std::move(ds), path);
}

} // namespace veldra::plantool
