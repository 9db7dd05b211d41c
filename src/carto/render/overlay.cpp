#include "carto/render/overlay.h"

#include "carto/render/feature_painter.h"

#include <QFontMetrics>

namespace carto {

void paintSelection(QPainter& painter, const Map& map, const Viewport& viewport) {
    FeaturePainter fp(painter, viewport);
    const Rect visible = viewport.visible();
    const Style& sel = map.selectionStyle;
    RegionPaint highlight = regionPaint(sel);
    highlight.border = QPen(toQColor(sel.regionColor), 2);
    QPen outline(toQColor(sel.regionColor), 2, Qt::DashLine);

    for (const Layer* layer : map.layers()) {
        if (!layer->visible() || layer->selection().isEmpty())
            continue;
        for (const qint64 fid : layer->selection().fids()) {
            if (!layer->hasFeature(fid))
                continue;
            const Feature f = layer->feature(fid);
            const FeatureData& d = f.data();
            const Rect bounds = d.bounds();
            if (!visible.intersects(bounds))
                continue;
            switch (d.kind) {
            case FeatureKind::Region:
                fp.drawRegion(d.parts, highlight, bounds);
                break;
            case FeatureKind::Line:
                fp.drawLine(d.parts, QPen(toQColor(sel.regionColor), 3));
                break;
            case FeatureKind::Symbol:
            case FeatureKind::Text: {
                const QRectF box(viewport.toScreen({bounds.xmin, bounds.ymax}),
                                 viewport.toScreen({bounds.xmax, bounds.ymin}));
                fp.flush();
                painter.setPen(outline);
                painter.setBrush(Qt::NoBrush);
                painter.drawRect(box.adjusted(-3, -3, 3, 3));
                break;
            }
            }
        }
    }
}

namespace {

// A legend box in the top right corner, below the legends already drawn. A legend taller
// than the picture ends with a line counting the categories left out, so a theme of
// thousands of values costs no more to draw than the picture can show.
void paintLegend(QPainter& painter, const Theme& theme, QPointF& topRight, double bottom) {
    const Legend& legend = theme.legend;
    if (!legend.visible)
        return;
    QFont body(QStringLiteral("DejaVu Sans"));
    body.setPixelSize(11);
    QFont title = body;
    title.setBold(true);
    title.setPixelSize(12);
    const QFontMetrics bm(body), tm(title);
    const int swatch = 14, pad = 6, line = std::max(swatch, bm.height()) + 3;

    int width = 0, height = pad;
    const bool showTitle = legend.showTitle && !legend.title.isEmpty();
    if (showTitle) {
        width = tm.horizontalAdvance(legend.title);
        height += tm.height() + 2;
    }
    if (showTitle && !legend.subtitle.isEmpty()) {
        width = std::max(width, bm.horizontalAdvance(legend.subtitle));
        height += bm.height() + 2;
    }
    const auto& cats = theme.categories();
    const auto textOf = [&](size_t i) {
        return i < legend.texts.size() ? legend.texts[i] : QString();
    };
    const int room = std::max(1, int((bottom - topRight.y() - height - pad) / line));
    size_t shown = cats.size();
    QString more;
    if (int(shown) > room) {
        shown = size_t(room - 1);
        more = QStringLiteral("… +%1").arg(cats.size() - shown);
    }
    for (size_t i = 0; i < shown; ++i) {
        width = std::max(width, swatch + pad + bm.horizontalAdvance(textOf(i)));
        height += line;
    }
    if (!more.isEmpty()) {
        width = std::max(width, swatch + pad + bm.horizontalAdvance(more));
        height += line;
    }
    width += 2 * pad;
    height += pad;

    const QRectF box(topRight.x() - width, topRight.y(), width, height);
    painter.setPen(QColor(90, 90, 90));
    painter.setBrush(QColor(255, 255, 255, 235));
    painter.drawRect(box);
    double y = box.top() + pad;
    painter.setPen(Qt::black);
    if (showTitle) {
        painter.setFont(title);
        painter.drawText(QPointF(box.left() + pad, y + tm.ascent()), legend.title);
        y += tm.height() + 2;
        if (!legend.subtitle.isEmpty()) {
            painter.setFont(body);
            painter.drawText(QPointF(box.left() + pad, y + bm.ascent()), legend.subtitle);
            y += bm.height() + 2;
        }
    }
    painter.setFont(body);
    const double baseline = (line + bm.ascent() - bm.descent()) / 2.0;
    for (size_t i = 0; i < shown; ++i) {
        const QRectF sw(box.left() + pad, y + (line - swatch) / 2.0, swatch, swatch);
        painter.setPen(Qt::black);
        painter.setBrush(QBrush(toQColor(cats[i].style.regionColor)));
        painter.drawRect(sw);
        painter.drawText(QPointF(sw.right() + pad, y + baseline), textOf(i));
        y += line;
    }
    if (!more.isEmpty())
        painter.drawText(QPointF(box.left() + pad + swatch + pad, y + baseline), more);
    topRight.ry() += height + pad;
}

} // namespace

void paintLegends(QPainter& painter, const Map& map, QSize size) {
    QPointF topRight(size.width() - 8, 8);
    for (const Dataset* d : map.datasets())
        for (const auto& theme : d->themes())
            paintLegend(painter, *theme, topRight, size.height() - 8);
}

} // namespace carto
