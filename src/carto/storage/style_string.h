#pragma once
// Styles stored as OGR feature style strings (the OGR_STYLE column), so other GIS tools
// draw the plan as we do. Regions are PEN + BRUSH, lines PEN, symbols SYMBOL, texts
// LABEL whose text is the "Texte" column ({Texte}) or a literal.

#include "carto/model/feature_data.h"

#include <QByteArray>
#include <QString>

namespace carto {

struct ParsedStyle {
    Style style;
    std::optional<FeatureKind> kind; // Symbol or Text when the string says so
    QString literalText;             // a LABEL's literal text (t:"..."), if any
};

ParsedStyle parseStyleString(const QByteArray& ogrStyle);
QByteArray styleString(FeatureKind kind, const Style& style, const QString& literalText = {});

} // namespace carto
