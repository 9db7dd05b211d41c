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
            if (!visible.intersects(d.bounds))
                continue;
            switch (d.kind) {
            case FeatureKind::Region:
                fp.drawRegion(d.parts, highlight, d.bounds);
                break;
            case FeatureKind::Line:
                fp.drawLine(d.parts, QPen(toQColor(sel.regionColor), 3));
                break;
            case FeatureKind::Symbol:
            case FeatureKind::Text: {
                const QRectF box(viewport.toScreen({d.bounds.xmin, d.bounds.ymax}),
                                 viewport.toScreen({d.bounds.xmax, d.bounds.ymin}));
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

void paintLegend(QPainter& painter, const Theme& theme, QPointF& topRight) {
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
    for (size_t i = 0; i < cats.size(); ++i) {
        const QString text = i < legend.texts.size() ? legend.texts[i] : QString();
        width = std::max(width, swatch + pad + bm.horizontalAdvance(text));
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
    for (size_t i = 0; i < cats.size(); ++i) {
        const QRectF sw(box.left() + pad, y + (line - swatch) / 2.0, swatch, swatch);
        painter.setPen(Qt::black);
        painter.setBrush(QBrush(toQColor(cats[i].style.regionColor)));
        painter.drawRect(sw);
        const QString text = i < legend.texts.size() ? legend.texts[i] : QString();
        painter.drawText(QPointF(sw.right() + pad, y + (line + bm.ascent() - bm.descent()) / 2.0),
                         text);
        y += line;
    }
    topRight.ry() += height + pad;
}

} // namespace

void paintLegends(QPainter& painter, const Map& map, QSize size) {
    QPointF topRight(size.width() - 8, 8);
    for (const Dataset* d : map.datasets())
        for (const auto& theme : d->themes())
            paintLegend(painter, *theme, topRight);
}

} // namespace carto
