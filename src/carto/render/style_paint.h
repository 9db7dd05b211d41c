#pragma once
// Qt pens, brushes and fonts for the settings of a Style. Widths of lines and borders are
// in pixels; text fonts get their pixel size from the scale of the view.

#include "carto/model/style.h"

#include <QBrush>
#include <QFont>
#include <QPen>

namespace carto {

struct RegionPaint {
    QBrush fill;       // Qt::NoBrush for a transparent region
    QBrush background; // behind a hatch; Qt::NoBrush when none
    QPen border;
};

RegionPaint regionPaint(const Style& s);
QPen linePen(const Style& s);
QFont textFont(const Style& s, double pixelSize);
// How many dash patterns the codes beyond linestyle::LongDash name.
int extraDashCount();

} // namespace carto
