#pragma once
// OGR feature style strings, as the plan's OGR_STYLE columns hold them. Colours come in
// the plan's 0x00BBGGRR form and are written as #RRGGBB. Sizes of symbols and texts are
// ground units (metres), so they scale with the map.

#include <QString>
#include <QtGlobal>

namespace veldra::plantool {

using Colour = quint32; // 0x00BBGGRR

// Brush codes of the OGR style syntax: 0 solid, 1 none, 2 to 7 hatches.
enum class Brush {
    Solid = 0,
    None = 1,
    Horizontal = 2,
    Vertical = 3,
    Upward = 4,
    Downward = 5,
    Cross = 6,
    DiagonalCross = 7
};

// "#RRGGBB" of a 0x00BBGGRR colour; bits above 24 are ignored.
QString hexColour(Colour c);

struct RegionStyle {
    Colour border = 0;
    Colour fill = 0xFFFFFF;
    Brush brush = Brush::Solid;
    // Drawn behind a hatch; none when unset (a transparent hatch).
    bool hatchBackground = false;
    Colour background = 0xFFFFFF;
};

struct TextStyle {
    double size = 1;  // ground units
    double angle = 0; // degrees, counter-clockwise
    Colour colour = 0;
    bool bold = false;
    bool underline = false;
    bool halo = false; // outline around the glyphs, in `back`
    bool box = false;  // filled box behind the text, in `back`
    Colour back = 0xFFFFFF;
};

QString regionStyle(const RegionStyle& s);
QString lineStyle(Colour c);
QString symbolStyle(char32_t character, Colour c, double size);
// The text itself is the feature's "Texte" column, which the label refers to.
QString textStyle(const TextStyle& s);

} // namespace veldra::plantool
