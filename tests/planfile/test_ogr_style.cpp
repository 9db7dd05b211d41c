#include "plan_reader.h"
#include "veldra-plan/ogr_style.h"

#include <gtest/gtest.h>
#include <ogr_featurestyle.h>

using namespace veldra::plantool;
using planfile::stylePart;
using planfile::styleParts;

namespace {

std::string colourOf(OGRStyleTool& tool, int param) {
    GBool isNull = TRUE;
    switch (tool.GetType()) {
    case OGRSTCPen:
        return static_cast<OGRStylePen&>(tool).GetParamStr(OGRSTPenParam(param), isNull);
    case OGRSTCBrush:
        return static_cast<OGRStyleBrush&>(tool).GetParamStr(OGRSTBrushParam(param), isNull);
    case OGRSTCLabel:
        return static_cast<OGRStyleLabel&>(tool).GetParamStr(OGRSTLabelParam(param), isNull);
    default:
        return {};
    }
}

} // namespace

TEST(OgrStyle, ColoursTurnFromBgrNumbersIntoRgbText) {
    EXPECT_EQ(hexColour(255), "#FF0000");
    EXPECT_EQ(hexColour(0xC0C0FF), "#FFC0C0");
    EXPECT_EQ(hexColour(49152), "#00C000");
    EXPECT_EQ(hexColour(0x123456), "#563412");
    EXPECT_EQ(hexColour(0xFF000000u | 0xFFFFFF), "#FFFFFF"); // bits above 24 ignored
}

TEST(OgrStyle, RegionsParseWithTheirBrush) {
    const QByteArray section = regionStyle({255, 0xC0C0FF}).toUtf8();
    EXPECT_EQ(section, R"(PEN(c:#FF0000,w:1px);BRUSH(fc:#FFC0C0,id:"ogr-brush-0"))");
    EXPECT_EQ(styleParts(section), (std::vector<std::string>{"PEN", "BRUSH"}));

    const QByteArray hatch =
        regionStyle({0, 0x00FF00, Brush::DiagonalCross, true, 0xFFFFFF}).toUtf8();
    const auto brush = stylePart(hatch, 1);
    ASSERT_NE(brush, nullptr);
    EXPECT_EQ(colourOf(*brush, OGRSTBrushFColor), "#00FF00");
    EXPECT_EQ(colourOf(*brush, OGRSTBrushBColor), "#FFFFFF");
    GBool isNull = TRUE;
    EXPECT_STREQ(static_cast<OGRStyleBrush&>(*brush).Id(isNull), "ogr-brush-7");

    // No hatch background unless asked for: the hatch is then transparent.
    const QByteArray empty = regionStyle({0, 0, Brush::None}).toUtf8();
    EXPECT_FALSE(empty.contains("bc:"));
    EXPECT_TRUE(empty.contains("ogr-brush-1"));
}

TEST(OgrStyle, LinesAndSymbols) {
    EXPECT_EQ(styleParts(lineStyle(0x0000FF).toUtf8()), std::vector<std::string>{"PEN"});
    const QByteArray sym = symbolStyle(0x2663, 0x008000, 2.5).toUtf8();
    EXPECT_EQ(sym, R"(SYMBOL(id:"font-sym-9827,ogr-sym-0",f:"DejaVu Sans",c:#008000,s:2.5g))");
    const auto part = stylePart(sym, 0);
    ASSERT_NE(part, nullptr);
    GBool isNull = TRUE;
    EXPECT_DOUBLE_EQ(static_cast<OGRStyleSymbol&>(*part).Size(isNull), 2.5);
}

TEST(OgrStyle, TextsReferToTheirColumnAndKeepSizeAngleAndFlags) {
    TextStyle s;
    s.size = 0.35;
    s.angle = -7.5;
    const QByteArray plain = textStyle(s).toUtf8();
    EXPECT_EQ(plain, R"(LABEL(f:"DejaVu Sans",s:0.35g,t:{Texte},c:#000000,a:-7.5,p:5))");
    auto label = stylePart(plain, 0);
    ASSERT_NE(label, nullptr);
    auto& l = static_cast<OGRStyleLabel&>(*label);
    GBool isNull = TRUE;
    EXPECT_STREQ(l.TextString(isNull), "{Texte}");
    EXPECT_DOUBLE_EQ(l.Size(isNull), 0.35);
    EXPECT_DOUBLE_EQ(l.Angle(isNull), -7.5);

    s.bold = s.underline = s.halo = true;
    s.back = 0xFFFF00; // cyan
    const QString flagged = textStyle(s);
    EXPECT_TRUE(flagged.contains(",bo:1,un:1,o:#00FFFF"));
    EXPECT_FALSE(flagged.contains(",b:"));
    s.halo = false;
    s.box = true;
    EXPECT_TRUE(textStyle(s).endsWith(",b:#00FFFF)"));
    EXPECT_EQ(styleParts(textStyle(s).toUtf8()), std::vector<std::string>{"LABEL"});
}

TEST(OgrStyle, NumbersNeverUseExponentsOrCommas) {
    TextStyle s;
    s.size = 0.0001;
    s.angle = 1e6;
    const QString out = textStyle(s);
    EXPECT_TRUE(out.contains("s:0.0001g")) << out.toStdString();
    EXPECT_TRUE(out.contains("a:1000000,")) << out.toStdString();
}
