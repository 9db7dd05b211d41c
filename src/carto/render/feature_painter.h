#pragma once
// Draws features of any kind with a QPainter for a viewport: the one place that turns
// map geometry and styles into pixels, used by the cached render, the selection overlay
// and exports alike. Usable on any thread (it paints into whatever device it is given).

#include "carto/model/feature_data.h"
#include "carto/render/label_placer.h"
#include "carto/render/style_paint.h"
#include "carto/render/viewport.h"

#include <QPainter>
#include <QPolygonF>
#include <unordered_map>
#include <vector>

namespace carto {

class FeaturePainter {
public:
    FeaturePainter(QPainter& painter, const Viewport& viewport);
    ~FeaturePainter();
    FeaturePainter(const FeaturePainter&) = delete;
    FeaturePainter& operator=(const FeaturePainter&) = delete;

    void draw(const FeatureView& data, const Style& style);
    void draw(const FeatureData& data, const Style& style) { draw(data.view(), style); }
    void drawRegion(ShapeView rings, const RegionPaint& paint, const Rect& bounds);
    void drawLine(ShapeView lines, const QPen& pen);
    void drawSymbol(Point at, const Style& style);
    void drawText(Point anchor, const QString& text, const Style& style);
    // An automatic label centred on the point, lettered as `style` says at a fixed size on
    // the page (its textSize in points of the device painted on). With a placer, a label
    // that would overlap a text or another label is not drawn (false).
    bool drawLabel(Point at, const QString& text, const Style& style = defaultLabelStyle());

    // Draws the dots still waiting: call before painting with the painter directly, so
    // what it paints goes over them.
    void flush();

    // Whether a text in that style is big enough to be drawn at k pixels per map unit.
    static bool textShows(const Style& style, double k) {
        return style.textSize / 100.0 * k >= kMinTextPixels;
    }

    // Texts drawn from now on become obstacles of `placer`, whose labels it then places.
    void setPlacer(LabelPlacer* placer) { placer_ = placer; }

    // Texts smaller than this many pixels high are not drawn: they could not be read.
    static constexpr double kMinTextPixels = 4.0;
    // Regions narrower and lower than this many pixels are drawn as blocks of pixels.
    static constexpr double kSmallPixels = 3.0;

private:
    const RegionPaint& regionPaintFor(const Style& style);
    const QPolygonF& screenRing(PartView ring);
    // A feature of a few pixels, kept to be drawn with the others of its colour.
    void block(QRect pixels, const QColor& colour);
    void dot(QPointF at, const QColor& colour);
    void drawHalo(QPointF baseline, const QFont& font, const QString& text, double width,
                  Colour colour);

    QPainter& painter_;
    Viewport viewport_;
    double k_;
    double pixelsPerPoint_; // of the device painted on
    std::unordered_map<const Style*, RegionPaint> regionPaints_;
    QPolygonF ring_;
    LabelPlacer* placer_ = nullptr;
    // A whole plan seen from afar is hundreds of thousands of blocks: one call per colour
    // draws them, where a call each cost ten times as much.
    std::unordered_map<QRgb, std::vector<QRect>> blocks_;
};

} // namespace carto
