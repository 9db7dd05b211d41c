#include "carto/render/feature_painter.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <algorithm>
#include <cmath>
#include <utility>

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

// Far past any picture, so that a pixel index always fits an int.
double onScreen(double v) {
    return std::clamp(v, -1e7, 1e7);
}

// The pixels, first and last, whose centres a screen span holds; the pixel of its middle
// when it holds none.
std::pair<int, int> pixelSpan(double from, double to) {
    const int first = int(std::lround(onScreen(from))), end = int(std::lround(onScreen(to)));
    if (end > first)
        return {first, end - 1};
    const int middle = int(std::floor(onScreen((from + to) / 2)));
    return {middle, middle};
}

// The colour a region of a few pixels shows: its fill and its border half and half, or
// whichever of them it has.
QColor blendOf(const RegionPaint& paint) {
    const bool filled = paint.fill.style() != Qt::NoBrush;
    const bool bordered = paint.border.style() != Qt::NoPen;
    if (!filled || !bordered)
        return filled ? paint.fill.color() : paint.border.color();
    const QColor a = paint.fill.color(), b = paint.border.color();
    return QColor((a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2,
                  (a.alpha() + b.alpha()) / 2);
}

} // namespace

FeaturePainter::FeaturePainter(QPainter& painter, const Viewport& viewport)
    : painter_(painter), viewport_(viewport), k_(viewport.pixelsPerUnit()),
      pixelsPerPoint_(painter.device() ? painter.device()->logicalDpiY() / 72.0 : 96 / 72.0) {}

FeaturePainter::~FeaturePainter() {
    flush();
}

void FeaturePainter::block(QRect pixels, const QColor& colour) {
    std::vector<QRect>& blocks = blocks_[colour.rgba()];
    if (blocks.empty() || blocks.back() != pixels)
        blocks.push_back(pixels);
}

void FeaturePainter::dot(QPointF at, const QColor& colour) {
    block(QRect(int(std::floor(onScreen(at.x()))), int(std::floor(onScreen(at.y()))), 1, 1),
          colour);
}

void FeaturePainter::flush() {
    if (blocks_.empty())
        return;
    painter_.save();
    // Aliased, a block fills exactly its pixels.
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setPen(Qt::NoPen);
    for (const auto& [rgba, blocks] : blocks_) {
        painter_.setBrush(QColor::fromRgba(rgba));
        painter_.drawRects(blocks.data(), int(blocks.size()));
    }
    painter_.restore();
    blocks_.clear();
}

const RegionPaint& FeaturePainter::regionPaintFor(const Style& style) {
    auto it = regionPaints_.find(&style);
    if (it == regionPaints_.end())
        it = regionPaints_.emplace(&style, regionPaint(style)).first;
    return it->second;
}

const QPolygonF& FeaturePainter::screenRing(PartView ring) {
    ring_.resize(qsizetype(ring.size()));
    const double cx = viewport_.size.width() / 2.0 - viewport_.centre.x * k_;
    const double cy = viewport_.size.height() / 2.0 + viewport_.centre.y * k_;
    for (size_t i = 0; i < ring.size(); ++i)
        ring_[qsizetype(i)] = QPointF(cx + ring[i].x * k_, cy - ring[i].y * k_);
    return ring_;
}

void FeaturePainter::draw(const FeatureView& d, const Style& style) {
    switch (d.kind) {
    case FeatureKind::Region:
        drawRegion(d.parts, regionPaintFor(style), d.bounds());
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
            drawText(d.parts.front().front(), d.text ? d.text->toString() : QString(), style);
        break;
    }
}

void FeaturePainter::drawRegion(ShapeView rings, const RegionPaint& paint, const Rect& bounds) {
    if (rings.empty())
        return;
    // A region of a few pixels is the block of pixels its bounds cover, in the colour its
    // fill and border blend into at that size: a whole plan seen from afar still shows
    // where its plots are and the colours of a theme, and it costs a tenth of a polygon.
    if (bounds.width() * k_ < kSmallPixels && bounds.height() * k_ < kSmallPixels) {
        const QPointF a = viewport_.toScreen({bounds.xmin, bounds.ymax});
        const QPointF b = viewport_.toScreen({bounds.xmax, bounds.ymin});
        const auto [left, right] = pixelSpan(a.x(), b.x());
        const auto [top, bottom] = pixelSpan(a.y(), b.y());
        block(QRect(QPoint(left, top), QPoint(right, bottom)), blendOf(paint));
        return;
    }
    flush();
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
    for (const PartView ring : rings)
        path.addPolygon(screenRing(ring));
    if (paint.background.style() != Qt::NoBrush)
        painter_.fillPath(path, paint.background);
    painter_.setBrush(paint.fill);
    painter_.drawPath(path);
}

void FeaturePainter::drawLine(ShapeView lines, const QPen& pen) {
    flush();
    painter_.setPen(pen);
    painter_.setBrush(Qt::NoBrush);
    for (const PartView line : lines)
        painter_.drawPolyline(screenRing(line));
}

void FeaturePainter::drawSymbol(Point at, const Style& style) {
    // Symbols scale with the map, like texts: s points are s / 100 map units.
    const double sizePx = style.symbolSize / 100.0 * k_;
    const QPointF p = viewport_.toScreen(at);
    if (sizePx < kMinTextPixels) {
        dot(p, toQColor(style.symbolColor));
        return;
    }
    flush();
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
    if (text.isEmpty() || !textShows(style, k_))
        return;
    flush();
    const double heightPx = style.textSize / 100.0 * k_;
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
    flush();
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
