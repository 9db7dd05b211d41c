#include "carto/render/style_paint.h"

#include <algorithm>

namespace carto {

namespace {

Qt::BrushStyle brushStyle(int pattern) {
    switch (pattern) {
    case pattern::None:
        return Qt::NoBrush;
    case pattern::Solid:
        return Qt::SolidPattern;
    case pattern::Horizontal:
        return Qt::HorPattern;
    case pattern::Vertical:
        return Qt::VerPattern;
    case pattern::ForwardDiagonal:
        return Qt::FDiagPattern;
    case pattern::BackwardDiagonal:
        return Qt::BDiagPattern;
    case pattern::Cross:
        return Qt::CrossPattern;
    case pattern::DiagonalCross:
        return Qt::DiagCrossPattern;
    default:
        // Codes beyond the named hatches: a dense dotted fill keeps them visible.
        return pattern > pattern::DiagonalCross ? Qt::Dense5Pattern : Qt::SolidPattern;
    }
}

Qt::PenStyle penStyle(int style) {
    switch (style) {
    case linestyle::None:
        return Qt::NoPen;
    case linestyle::Dash:
        return Qt::DashLine;
    case linestyle::Dot:
        return Qt::DotLine;
    case linestyle::DashDot:
        return Qt::DashDotLine;
    case linestyle::DashDotDot:
        return Qt::DashDotDotLine;
    case linestyle::LongDash:
        return Qt::DashLine;
    default:
        return Qt::SolidLine;
    }
}

QPen pen(Colour c, int style, int width) {
    QPen p(toQColor(c), std::max(0, width), penStyle(style));
    if (width <= 1)
        p.setCosmetic(true);
    p.setJoinStyle(Qt::MiterJoin);
    return p;
}

} // namespace

RegionPaint regionPaint(const Style& s) {
    RegionPaint r;
    const Qt::BrushStyle fill = brushStyle(s.regionPattern);
    r.fill = fill == Qt::NoBrush ? QBrush() : QBrush(toQColor(s.regionColor), fill);
    if (fill != Qt::NoBrush && fill != Qt::SolidPattern && !s.regionTransparent)
        r.background = QBrush(toQColor(s.regionBackColor));
    r.border = pen(s.regionBorderColor, s.regionBorderStyle, s.regionBorderWidth);
    return r;
}

QPen linePen(const Style& s) {
    return pen(s.lineColor, s.lineStyle, s.lineWidth);
}

QFont textFont(const Style& s, double pixelSize) {
    QFont f(s.textFont);
    f.setPixelSize(std::max(1, int(pixelSize + 0.5)));
    f.setBold(s.textBold);
    f.setUnderline(s.textUnderline);
    return f;
}

} // namespace carto
