#pragma once
// The tool bars: B_Outils chooses what the pointer does on the map (zoom, pan, the
// selections, measuring, the whole plan), Btn_OutilsDessin and Btn_Texte the drawing
// tools of edit mode. Also the custom tools the control registers with the map view.

namespace veldra {

class Contexte;

namespace outil {
inline constexpr int Mesure = 105;    // broken line: distance measurement
inline constexpr int Rectangle = 106; // a rectangle dragged between two corners
inline constexpr int Cercle = 107;    // a circle dragged from its centre
inline constexpr int Texte = 108;     // a point: where a text goes
} // namespace outil

// Registers the custom tools 105 to 108 with the main map view.
void creeOutilsPersonnalises(Contexte& ctx);
// B_Outils button `index` (0 to 8). Errors are ignored: the rest of the handler runs.
void boutonOutils(Contexte& ctx, int index);
// Btn_OutilsDessin button `index` (0 to 7).
void boutonOutilsDessin(Contexte& ctx, int index);
// Enables the drawing tools that make sense on the current layer.
void activeOutilsDessin(Contexte& ctx);
// The map set-up of edit mode: drawn features go to the current layer, whole features
// are moved, the select tool is current.
void prepareOutilsCarte(Contexte& ctx);
// Connects the tool bars' buttons.
void connecteBarresOutils(Contexte& ctx);

} // namespace veldra
