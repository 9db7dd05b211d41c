#pragma once
// The looks of the plans and of the symbol library the tool writes, turned into OGR style
// strings by the map engine's own writer, so that the engine reads back exactly what the
// tool meant. Colours in the plan's 0x00BBGGRR form; sizes of symbols and texts in plan
// metres (the engine's points are hundredths of a metre).

#include "carto/model/style.h"

#include <QString>
#include <optional>

namespace veldra::plantool {

using carto::Colour;

struct RegionStyle {
    Colour border = 0;
    Colour fill = 0xFFFFFF;
    int pattern = carto::pattern::Solid;
    // Drawn behind a hatch; none (a transparent hatch) when unset.
    std::optional<Colour> hatchBackground = std::nullopt;
};

struct TextStyle {
    double size = 1;  // metres
    double angle = 0; // degrees, counter-clockwise
    Colour colour = 0;
    bool bold = false;
    bool halo = false; // outline around the glyphs, in `back`
    Colour back = 0xFFFFFF;
};

// The column the texts of a plan's text layers live in; their styles refer to it.
inline constexpr char TextColumn[] = "Texte";

QString regionStyle(const RegionStyle& s);
QString lineStyle(Colour c);
QString symbolStyle(char32_t character, Colour c, double size);
QString textStyle(const TextStyle& s);

} // namespace veldra::plantool
