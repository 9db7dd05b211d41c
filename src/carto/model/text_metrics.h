#pragma once
// The extent of a text feature in map units, from Qt's font metrics: a text of s points
// is s / 100 map units high and as wide as the font makes it, turned by its rotation
// around its anchor (the text's centre). Without a GUI application (command-line tools)
// the width is estimated from the character count.

#include "carto/geometry/rect.h"
#include "carto/model/style.h"

#include <QSizeF>
#include <QString>

namespace carto {

Rect textBounds(Point anchor, const QString& text, const Style& style);
// How far the turned text reaches from its anchor on each side.
Point textExtent(const QString& text, const Style& style);
// Width and height in map units, before rotation.
QSizeF textSize(const QString& text, const Style& style);

} // namespace carto
