#pragma once
// The output module's widgets connected to what they do: printing, the labels' button,
// the symbol library, the overview map, the style button, the scale, the ruler guides and
// the background palette.

namespace veldra {

class Contexte;

void connecteSorties(Contexte& ctx);

} // namespace veldra
