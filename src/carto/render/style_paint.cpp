#include "carto/render/style_paint.h"

#include <QTransform>
#include <algorithm>
#include <vector>

namespace carto {

namespace {

constexpr Qt::BrushStyle kDense[7] = {Qt::Dense1Pattern, Qt::Dense2Pattern, Qt::Dense3Pattern,
                                      Qt::Dense4Pattern, Qt::Dense5Pattern, Qt::Dense6Pattern,
                                      Qt::Dense7Pattern};
constexpr Qt::BrushStyle kHatches[6] = {Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                        Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};

// A brush style drawn larger (its spacing times `scale`) and turned by `angle` degrees.
struct Hatch {
    Qt::BrushStyle style = Qt::SolidPattern;
    double scale = 1;
    double angle = 0;
};

Hatch hatchOf(int code) {
    switch (code) {
    case pattern::None:
        return {Qt::NoBrush};
    case pattern::Horizontal:
    case pattern::Vertical:
    case pattern::ForwardDiagonal:
    case pattern::BackwardDiagonal:
    case pattern::Cross:
    case pattern::DiagonalCross:
        return {kHatches[code - pattern::Horizontal]};
    default:
        break;
    }
    const int k = code - pattern::FirstExtra;
    if (k < 0 || code > pattern::Last)
        return {code > pattern::DiagonalCross ? Qt::Dense5Pattern : Qt::SolidPattern};
    if (k < 7)
        return {kDense[k]};
    if (k < 25) // the hatches at twice, three and four times their spacing
        return {kHatches[(k - 7) % 6], double(2 + (k - 7) / 6)};
    if (k < 39) // the dots, coarser
        return {kDense[(k - 25) % 7], double(2 + (k - 25) / 7)};
    if (k < 45)
        return {kHatches[k - 39], 6};
    if (k < 53) { // lines turned 15, 30, 60 and 75 degrees, at two spacings
        constexpr double angles[4] = {15, 30, 60, 75};
        return {Qt::HorPattern, double(1 + (k - 45) / 4), angles[(k - 45) % 4]};
    }
    if (k < 59) { // grids turned 15 and 30 degrees, at three spacings
        return {Qt::CrossPattern, double(1 + (k - 53) / 2), (k - 53) % 2 ? 30.0 : 15.0};
    }
    return {Qt::HorPattern, 8};
}

// Dash patterns of the codes beyond the named ones, in pen widths: dashes and gaps, then
// dash-dot, dash-dot-dot and long-short mixes. Built once, never changed.
const std::vector<QList<qreal>>& extraDashes() {
    static const std::vector<QList<qreal>> dashes = [] {
        std::vector<QList<qreal>> t;
        for (const qreal d : {1, 2, 3, 4, 6, 8, 10, 12, 16, 20})
            for (const qreal g : {1, 2, 3, 4, 6, 8})
                t.push_back({d, g});
        for (const qreal d : {4, 6, 8, 10, 12, 16})
            for (const qreal g : {2, 3, 4})
                t.push_back({d, g, 1, g});
        for (const qreal d : {6, 8, 12, 16})
            for (const qreal g : {2, 3})
                t.push_back({d, g, 1, g, 1, g});
        for (const qreal d : {8, 12, 16, 20})
            for (const qreal d2 : {2, 4})
                for (const qreal g : {2, 3, 4})
                    t.push_back({d, g, d2, g});
        t.push_back({20, 2, 2, 2, 2, 2});
        return t;
    }();
    return dashes;
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
    if (style > linestyle::LongDash && style <= linestyle::Last)
        p.setDashPattern(extraDashes()[size_t(style - linestyle::LongDash - 1)]);
    if (width <= 1)
        p.setCosmetic(true);
    p.setJoinStyle(Qt::MiterJoin);
    return p;
}

} // namespace

RegionPaint regionPaint(const Style& s) {
    RegionPaint r;
    const Hatch m = hatchOf(s.regionPattern);
    const Qt::BrushStyle fill = m.style;
    r.fill = fill == Qt::NoBrush ? QBrush() : QBrush(toQColor(s.regionColor), fill);
    if (m.scale != 1 || m.angle != 0)
        r.fill.setTransform(QTransform().rotate(m.angle).scale(m.scale, m.scale));
    if (fill != Qt::NoBrush && fill != Qt::SolidPattern && !s.regionTransparent)
        r.background = QBrush(toQColor(s.regionBackColor));
    r.border = pen(s.regionBorderColor, s.regionBorderStyle, s.regionBorderWidth);
    return r;
}

QPen linePen(const Style& s) {
    return pen(s.lineColor, s.lineStyle, s.lineWidth);
}

int extraDashCount() {
    return int(extraDashes().size());
}

QFont textFont(const Style& s, double pixelSize) {
    QFont f(s.textFont);
    f.setPixelSize(std::max(1, int(pixelSize + 0.5)));
    f.setBold(s.textBold);
    f.setUnderline(s.textUnderline);
    return f;
}

} // namespace carto
