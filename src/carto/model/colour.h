#pragma once
// Colours travel as 24-bit numbers in the 0x00BBGGRR form, as hosts and settings give them.

#include <QColor>
#include <QtGlobal>

namespace carto {

using Colour = qint32;

inline QColor toQColor(Colour c) {
    return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}

inline Colour fromQColor(const QColor& c) {
    return Colour(c.red() | (c.green() << 8) | (c.blue() << 16));
}

} // namespace carto
