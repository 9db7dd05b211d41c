#include "carto/render/feature_painter.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <cmath>

namespace carto {

namespace {

// The line height of a font per pixel of its size, so texts fill the height that their
// bounds were measured with.
double heightPerPixel(const QString& family, bool bold) {
    thread_local QHash<QString, double> memo;
    const QString key = family + (bold ? u'b' : u'-');
    auto it = memo.constFind(key);
    if (it == memo.constEnd()) {
        QFont f(family);
        f.setPixelSize(100);
        f.setBold(bold);
        it = memo.insert(key, QFontMetricsF(f).height() / 100.0);
    }
    return *it;
}

} // namespace

FeaturePainter::FeaturePainter(QPainter& painter, const Viewport& viewport)
    : painter_(painter), viewport_(viewport), k_(viewport.pixelsPerUnit()),
      pixelsPerPoint_(painter.device() ? painter.device()->logicalDpiY() / 72.0 : 96 / 72.0) {}

const RegionPaint& FeaturePainter::regionPaintFor(const Style& style) {
    auto it = regionPaints_.find(&style);
    if (it == regionPaints_.end())
        it = regionPaints_.emplace(&style, regionPaint(style)).first;
    return it->second;
}

const QPolygonF& FeaturePainter::screenRing(const Part& ring) {
    ring_.resize(qsizetype(ring.size()));
    const double cx = viewport_.size.width() / 2.0 - viewport_.centre.x * k_;
    const double cy = viewport_.size.height() / 2.0 + viewport_.centre.y * k_;
    for (size_t i = 0; i < ring.size(); ++i)
        ring_[qsizetype(i)] = QPointF(cx + ring[i].x * k_, cy - ring[i].y * k_);
    return ring_;
}

void FeaturePainter::draw(const FeatureData& d, const Style& style) {
    switch (d.kind) {
    case FeatureKind::Region:
        drawRegion(d.parts, regionPaintFor(style), d.bounds);
        break;
    case FeatureKind::Line:
        drawLine(d.parts, linePen(style));
        break;
    case FeatureKind::Symbol:
        if (!d.parts.empty() && !d.parts.front().empty())
            drawSymbol(d.parts.front().front(), style);
        break;
    case FeatureKind::Text:
        if (!d.parts.empty() && !d.parts.front().empty())
            drawText(d.parts.front().front(), d.text, style);
        break;
    }
}

void FeaturePainter::drawRegion(const Parts& rings, const RegionPaint& paint, const Rect& bounds) {
    if (rings.empty())
        return;
    // A region smaller than a pixel is a dot of its fill (or border) colour: cheap, and a
    // whole plan seen from afar still shows where its plots are.
    if (bounds.width() * k_ < 1.5 && bounds.height() * k_ < 1.5) {
        const QPointF c = viewport_.toScreen(bounds.center());
        const QBrush& b =
            paint.fill.style() != Qt::NoBrush ? paint.fill : QBrush(paint.border.color());
        painter_.fillRect(QRectF(std::floor(c.x()), std::floor(c.y()), 1, 1), b.color());
        return;
    }
    painter_.setPen(paint.border);
    if (rings.size() == 1) {
        const QPolygonF& poly = screenRing(rings.front());
        if (paint.background.style() != Qt::NoBrush) {
            painter_.setBrush(paint.background);
            painter_.setPen(Qt::NoPen);
            painter_.drawPolygon(poly);
            painter_.setPen(paint.border);
        }
        painter_.setBrush(paint.fill);
        painter_.drawPolygon(poly);
        return;
    }
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const Part& ring : rings)
        path.addPolygon(screenRing(ring));
    if (paint.background.style() != Qt::NoBrush)
        painter_.fillPath(path, paint.background);
    painter_.setBrush(paint.fill);
    painter_.drawPath(path);
}

void FeaturePainter::drawLine(const Parts& lines, const QPen& pen) {
    painter_.setPen(pen);
    painter_.setBrush(Qt::NoBrush);
    for (const Part& line : lines)
        painter_.drawPolyline(screenRing(line));
}

void FeaturePainter::drawSymbol(Point at, const Style& style) {
    // Symbols scale with the map, like texts: s points are s / 100 map units.
    const double sizePx = style.symbolSize / 100.0 * k_;
    const QPointF p = viewport_.toScreen(at);
    if (sizePx < kMinTextPixels) {
        painter_.fillRect(QRectF(std::floor(p.x()), std::floor(p.y()), 1, 1),
                          toQColor(style.symbolColor));
        return;
    }
    QFont font(style.symbolFont);
    font.setPixelSize(std::max(1, int(sizePx + 0.5)));
    painter_.setFont(font);
    painter_.setPen(toQColor(style.symbolColor));
    const char32_t code = char32_t(style.symbolCharacter);
    const QString glyph = QString::fromUcs4(&code, 1);
    const QRectF box(p.x() - sizePx, p.y() - sizePx, 2 * sizePx, 2 * sizePx);
    painter_.drawText(box, Qt::AlignCenter, glyph);
}

void FeaturePainter::drawText(Point anchor, const QString& text, const Style& style) {
    const double heightPx = style.textSize / 100.0 * k_;
    if (text.isEmpty() || heightPx < kMinTextPixels)
        return;
    const QFont font = textFont(style, heightPx / heightPerPixel(style.textFont, style.textBold));
    const QFontMetricsF metrics(font);
    const double w = metrics.horizontalAdvance(text);
    const QRectF box(-w / 2, -metrics.height() / 2, w, metrics.height());

    QTransform place;
    place.translate(viewport_.toScreen(anchor).x(), viewport_.toScreen(anchor).y());
    if (style.textRotation != 0)
        place.rotate(-style.textRotation);
    if (placer_)
        placer_->occupy(place.mapRect(box));
    painter_.save();
    painter_.setTransform(place, true);
    if (style.textBox) {
        painter_.setPen(toQColor(style.textColor));
        painter_.setBrush(toQColor(style.textBackColor));
        painter_.drawRect(box.adjusted(-2, -1, 2, 1));
    }
    if (style.textShadow) {
        const double d = std::max(1.0, heightPx / 12);
        painter_.setFont(font);
        painter_.setPen(QColor(128, 128, 128));
        painter_.drawText(box.translated(d, d), Qt::AlignCenter, text);
    }
    const QPointF baseline(box.left(), box.top() + metrics.ascent());
    if (style.textHalo)
        drawHalo(baseline, font, text, std::max(2.0, heightPx / 6), style.textBackColor);
    painter_.setFont(font);
    painter_.setPen(toQColor(style.textColor));
    painter_.drawText(baseline, text);
    painter_.restore();
}

// The halo alone, an outline of the glyphs widened; the glyphs go on top as text, so a
// PDF keeps them as text.
void FeaturePainter::drawHalo(QPointF baseline, const QFont& font, const QString& text,
                              double width, Colour colour) {
    QPainterPath path;
    path.addText(baseline, font, text);
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setJoinStyle(Qt::RoundJoin);
    painter_.fillPath(stroker.createStroke(path), toQColor(colour));
}

bool FeaturePainter::drawLabel(Point at, const QString& text, const Style& style) {
    const QFont font = textFont(style, std::max(1.0, style.textSize) * pixelsPerPoint_);
    const QPointF p = viewport_.toScreen(at);
    const QFontMetricsF metrics(font);
    const double w = metrics.horizontalAdvance(text);
    // The halo or the box is part of what must stay clear.
    const double margin = style.textHalo || style.textBox ? 1.5 : 0.5;
    const QRectF box(p.x() - w / 2 - margin, p.y() - metrics.height() / 2 - margin, w + 2 * margin,
                     metrics.height() + 2 * margin);
    if (placer_ && !placer_->place(box))
        return false;
    const QPointF baseline(p.x() - w / 2, p.y() + metrics.ascent() - metrics.height() / 2);
    if (style.textBox) {
        painter_.setPen(toQColor(style.textColor));
        painter_.setBrush(toQColor(style.textBackColor));
        painter_.drawRect(box);
    } else if (style.textHalo) {
        drawHalo(baseline, font, text, 3, style.textBackColor);
    }
    painter_.setFont(font);
    if (style.textShadow) {
        const double d = std::max(1.0, metrics.height() / 12);
        painter_.setPen(QColor(128, 128, 128));
        painter_.drawText(baseline + QPointF(d, d), text);
    }
    painter_.setPen(toQColor(style.textColor));
    painter_.drawText(baseline, text);
    return true;
}

} // namespace carto
