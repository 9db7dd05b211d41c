#pragma once
// Styles stored as OGR feature style strings (the OGR_STYLE column), so other GIS tools
// draw the plan as we do. Regions are PEN + BRUSH, lines PEN, symbols SYMBOL, texts
// LABEL whose text is a column of the feature ({column}) or a literal. Colours are
// written #RRGGBB from the 0x00BBGGRR form; numbers never use exponents or commas.

#include "carto/model/feature_data.h"

#include <QByteArray>
#include <QString>

namespace carto {

struct ParsedStyle {
    Style style;
    std::optional<FeatureKind> kind; // Symbol or Text when the string says so
    QString literalText;             // a LABEL's literal text (t:"..."), if any
    QString textField;               // the column a LABEL's text comes from (t:{column})
};

ParsedStyle parseStyleString(const QByteArray& ogrStyle);
// A text refers to `textField` when given, and carries `text` itself otherwise.
QByteArray styleString(FeatureKind kind, const Style& style, const QString& text = {},
                       const QString& textField = {});
// "#RRGGBB" of a 0x00BBGGRR colour; bits above 24 are ignored.
QByteArray colourText(Colour c);

} // namespace carto
