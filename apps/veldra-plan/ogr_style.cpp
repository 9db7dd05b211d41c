#include "veldra-plan/ogr_style.h"

namespace veldra::plantool {

namespace {

// Shortest decimal form, never in exponent notation and never with a locale's comma.
QString number(double v) {
    QString s = QString::number(v, 'f', 6);
    while (s.endsWith(QLatin1Char('0')))
        s.chop(1);
    if (s.endsWith(QLatin1Char('.')))
        s.chop(1);
    return s == QLatin1String("-0") ? QStringLiteral("0") : s;
}

} // namespace

QString hexColour(Colour c) {
    const auto part = [c](int shift) {
        return QStringLiteral("%1").arg((c >> shift) & 0xFF, 2, 16, QLatin1Char('0')).toUpper();
    };
    return QLatin1Char('#') + part(0) + part(8) + part(16);
}

QString regionStyle(const RegionStyle& s) {
    QString brush = QStringLiteral("BRUSH(fc:") + hexColour(s.fill);
    if (s.hatchBackground)
        brush += QStringLiteral(",bc:") + hexColour(s.background);
    brush += QStringLiteral(",id:\"ogr-brush-%1\")").arg(static_cast<int>(s.brush));
    return QStringLiteral("PEN(c:%1,w:1px);").arg(hexColour(s.border)) + brush;
}

QString lineStyle(Colour c) {
    return QStringLiteral("PEN(c:%1,w:2px,id:\"ogr-pen-0\")").arg(hexColour(c));
}

QString symbolStyle(char32_t character, Colour c, double size) {
    return QStringLiteral("SYMBOL(id:\"font-sym-%1,ogr-sym-0\",f:\"DejaVu Sans\",c:%2,s:%3g)")
        .arg(static_cast<quint32>(character))
        .arg(hexColour(c), number(size));
}

QString textStyle(const TextStyle& s) {
    QString out = QStringLiteral("LABEL(f:\"DejaVu Sans\",s:%1g,t:{Texte},c:%2,a:%3,p:5")
                      .arg(number(s.size), hexColour(s.colour), number(s.angle));
    if (s.bold)
        out += QStringLiteral(",bo:1");
    if (s.underline)
        out += QStringLiteral(",un:1");
    if (s.halo)
        out += QStringLiteral(",o:") + hexColour(s.back);
    if (s.box)
        out += QStringLiteral(",b:") + hexColour(s.back);
    return out + QLatin1Char(')');
}

} // namespace veldra::plantool
