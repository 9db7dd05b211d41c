// Styles survive the OGR_STYLE column, and strings written by other tools are understood.
#include "carto/storage/style_string.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace carto;

TEST(StyleString, EveryKindRoundTrips) {
    Style s;
    s.regionColor = 0xC0C0FF;
    s.regionBorderColor = 255;
    s.regionBorderWidth = 3;
    s.regionBorderStyle = linestyle::Dash;
    s.regionPattern = pattern::Cross;
    s.regionBackColor = 0x00FF00;
    s.regionTransparent = false;
    EXPECT_EQ(parseStyleString(styleString(FeatureKind::Region, s)).style.regionPattern,
              pattern::Cross);
    const Style r = parseStyleString(styleString(FeatureKind::Region, s)).style;
    EXPECT_EQ(r.regionColor, s.regionColor);
    EXPECT_EQ(r.regionBorderColor, 255);
    EXPECT_EQ(r.regionBorderWidth, 3);
    EXPECT_EQ(r.regionBorderStyle, linestyle::Dash);
    EXPECT_EQ(r.regionBackColor, 0x00FF00);
    EXPECT_FALSE(r.regionTransparent);

    Style t;
    t.textFont = QStringLiteral("DejaVu Serif");
    t.textSize = 48;
    t.textBold = true;
    t.textHalo = true;
    t.textBackColor = 0xFFFF00;
    t.textColor = 0x0000FF;
    t.textRotation = 30;
    const ParsedStyle text =
        parseStyleString(styleString(FeatureKind::Text, t, {}, QStringLiteral("Texte")));
    ASSERT_TRUE(text.kind.has_value());
    EXPECT_EQ(*text.kind, FeatureKind::Text);
    EXPECT_EQ(text.style.textFont, t.textFont);
    EXPECT_DOUBLE_EQ(text.style.textSize, 48);
    EXPECT_TRUE(text.style.textBold);
    EXPECT_TRUE(text.style.textHalo);
    EXPECT_FALSE(text.style.textBox);
    EXPECT_FALSE(text.style.textShadow);
    EXPECT_EQ(text.style.textBackColor, 0xFFFF00);
    EXPECT_EQ(text.style.textColor, 0x0000FF);
    EXPECT_DOUBLE_EQ(text.style.textRotation, 30);
    t.textShadow = true;
    EXPECT_TRUE(parseStyleString(styleString(FeatureKind::Text, t, {}, QStringLiteral("Texte")))
                    .style.textShadow);
    EXPECT_TRUE(text.literalText.isNull()); // the text lives in its column
    EXPECT_EQ(text.textField, QStringLiteral("Texte"));
    // Without a column the text travels in the style, quotes and all.
    const ParsedStyle literal =
        parseStyleString(styleString(FeatureKind::Text, t, QStringLiteral("Allée \"B\"")));
    EXPECT_EQ(literal.literalText, QStringLiteral("Allée \"B\""));
    EXPECT_TRUE(literal.textField.isEmpty());

    Style sym;
    sym.symbolCharacter = 0x2663;
    sym.symbolSize = 80;
    sym.symbolColor = 0x008000;
    const ParsedStyle symbol = parseStyleString(styleString(FeatureKind::Symbol, sym));
    EXPECT_EQ(symbol.kind, FeatureKind::Symbol);
    EXPECT_EQ(symbol.style.symbolCharacter, 0x2663);
    EXPECT_DOUBLE_EQ(symbol.style.symbolSize, 80);
    EXPECT_EQ(symbol.style.symbolColor, 0x008000);
}

TEST(StyleString, ForeignStrings) {
    // Point sizes, a literal text, OGR's own ids only.
    const ParsedStyle label = parseStyleString("LABEL(f:\"Arial\",s:12pt,t:\"Entrée\",c:#FF0000)");
    EXPECT_DOUBLE_EQ(label.style.textSize, 12);
    EXPECT_EQ(label.literalText, QStringLiteral("Entrée"));
    EXPECT_EQ(label.style.textColor, 0x0000FF);
    const Style hatch = parseStyleString("BRUSH(fc:#00FF00,id:\"ogr-brush-4\")").style;
    EXPECT_EQ(hatch.regionPattern, pattern::ForwardDiagonal);
    EXPECT_TRUE(hatch.regionTransparent);
    EXPECT_EQ(parseStyleString("PEN(c:#000000,id:\"ogr-pen-1\")").style.lineStyle, linestyle::None);
    // Rubbish gives the defaults rather than an error.
    EXPECT_EQ(parseStyleString("BRUSH(fc:#zz").style.regionColor, Style{}.regionColor);
    EXPECT_FALSE(parseStyleString("").kind.has_value());
}

TEST(StyleString, ColoursAndNumbersAreWrittenAsOtherToolsReadThem) {
    EXPECT_EQ(colourText(255), "#FF0000");
    EXPECT_EQ(colourText(0xC0C0FF), "#FFC0C0");
    EXPECT_EQ(colourText(49152), "#00C000");
    EXPECT_EQ(colourText(0x123456), "#563412");
    EXPECT_EQ(colourText(Colour(0xFF000000u | 0xFFFFFFu)), "#FFFFFF"); // bits above 24 ignored

    Style t;
    t.textSize = 0.01;    // a ten-thousandth of a metre
    t.textRotation = 1e6; // and a silly angle
    const QByteArray label = styleString(FeatureKind::Text, t, QStringLiteral("x"));
    EXPECT_TRUE(label.contains("s:0.0001g,")) << label.constData();
    EXPECT_TRUE(label.contains("a:1000000,")) << label.constData();
    EXPECT_FALSE(QString::fromUtf8(label).contains(QRegularExpression("[0-9][eE][-+]?[0-9]")))
        << label.constData();
    t.textRotation = -7.5;
    t.textBold = t.textUnderline = t.textHalo = true;
    t.textBackColor = 0xFFFF00; // cyan
    const QByteArray flagged = styleString(FeatureKind::Text, t, {}, QStringLiteral("Texte"));
    EXPECT_TRUE(flagged.contains("t:{Texte}")) << flagged.constData();
    EXPECT_TRUE(flagged.contains("a:-7.5,")) << flagged.constData();
    EXPECT_TRUE(flagged.contains(",bo:1,un:1,o:#00FFFF")) << flagged.constData();
    EXPECT_FALSE(flagged.contains(",b:")) << flagged.constData();
}

// A size read back is the size written, however often the plan is saved: OGR's unit
// conversion alone would shave a thousandth off 535 points at every round.
TEST(StyleString, SizesSurviveEverySaveExactly) {
    for (const double size : {535.0, 12.0, 35.0, 0.01, 1234.567, 300.0}) {
        Style s;
        s.textSize = size;
        s.symbolSize = size;
        for (const FeatureKind kind : {FeatureKind::Text, FeatureKind::Symbol}) {
            Style now = s;
            for (int round = 0; round < 5; ++round)
                now = parseStyleString(styleString(kind, now, QStringLiteral("x"))).style;
            EXPECT_EQ(kind == FeatureKind::Text ? now.textSize : now.symbolSize, size) << size;
        }
    }
    // Sizes in other units still come through OGR's conversion: 12 points are 12 points.
    EXPECT_NEAR(parseStyleString("LABEL(f:\"Arial\",s:12pt,t:\"a\")").style.textSize, 12, 0.01);
}

TEST(StyleString, NamesAndTextsHoldingTheSyntaxComeBackAsTheyWere) {
    Style t;
    t.textFont = QStringLiteral("Police \\ (spéciale), s:1g");
    const QString text = QStringLiteral("C:\\chemin\\ \"cité\", s:9g\\");
    const ParsedStyle back = parseStyleString(styleString(FeatureKind::Text, t, text));
    EXPECT_EQ(back.style.textFont, t.textFont);
    EXPECT_EQ(back.literalText, text);
    EXPECT_EQ(back.style.textSize, t.textSize); // not the "s:9g" inside the text
}
