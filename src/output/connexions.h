#pragma once
// The output module's widgets connected to what they do: printing, the labels' button,
// the symbol library and the overview map.

namespace veldra {

class Contexte;

void connecteSorties(Contexte& ctx);

} // namespace veldra
