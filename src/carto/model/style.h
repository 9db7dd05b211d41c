#pragma once
// How a feature is drawn. One structure carries the settings of the four feature kinds;
// a feature uses those of its own kind. Pattern and line-style codes: 1 none (transparent),
// 2 solid, 3 and above hatches or dashes. Sizes of symbols and texts are in points; a
// text of s points is s / 100 map units high, so texts scale with the map.

#include "carto/model/colour.h"
#include "carto/model/data_ref.h"

#include <QString>

namespace carto {

namespace pattern {
inline constexpr int None = 1;
inline constexpr int Solid = 2;
inline constexpr int Horizontal = 3;
inline constexpr int Vertical = 4;
inline constexpr int ForwardDiagonal = 5;
inline constexpr int BackwardDiagonal = 6;
inline constexpr int Cross = 7;
inline constexpr int DiagonalCross = 8;
// 9 to 11 are never produced; 12 to 71 are finer, coarser and turned hatches and dots.
inline constexpr int FirstExtra = 12;
inline constexpr int Last = 71;
} // namespace pattern

namespace linestyle {
inline constexpr int None = 1;
inline constexpr int Solid = 2;
inline constexpr int Dash = 3;
inline constexpr int Dot = 4;
inline constexpr int DashDot = 5;
inline constexpr int DashDotDot = 6;
inline constexpr int LongDash = 7;
// 8 to 118: further dash patterns (dashes, dots and their mixes at several spacings).
inline constexpr int Last = 118;
} // namespace linestyle

struct Style {
    // Regions
    Colour regionColor = 0xFFFFFF;
    int regionPattern = pattern::Solid;
    Colour regionBackColor = 0xFFFFFF; // behind a hatch
    bool regionTransparent = false;    // a hatch without its background
    Colour regionBorderColor = 0;
    int regionBorderStyle = linestyle::Solid;
    int regionBorderWidth = 1;

    // Lines
    Colour lineColor = 0;
    int lineStyle = linestyle::Solid;
    int lineWidth = 1;

    // Symbols: a character of a font
    int symbolCharacter = 0x25CF; // a filled circle
    QString symbolFont = QStringLiteral("DejaVu Sans");
    double symbolSize = 12;
    Colour symbolColor = 0;

    // Texts
    QString textFont = QStringLiteral("DejaVu Sans");
    double textSize = 12;
    bool textBold = false;
    bool textUnderline = false;
    bool textHalo = false;
    bool textBox = false;
    bool textShadow = false; // a grey copy of the text behind it, a little down and right
    Colour textColor = 0;
    Colour textBackColor = 0xFFFFFF; // halo or box
    double textRotation = 0;         // degrees, counter-clockwise

    // Of the StylePtr that share this style; no part of its value.
    RefCount refs;

    friend bool operator==(const Style&, const Style&) = default;
};

// A style shared by the features drawn in it: most of a plan's features share a few.
using StylePtr = DataRef<const Style>;

// How automatic labels are lettered unless told otherwise: 8 points, black on a white
// halo. A label keeps its size on the page whatever the map's scale: its textSize is in
// points, not in map units as a text feature's.
inline Style defaultLabelStyle() {
    Style s;
    s.textSize = 8;
    s.textHalo = true;
    return s;
}

} // namespace carto
