#pragma once
// Places the bands, the map and the panels when the control is resized. The rules keep
// their figures in twips (1440 per inch) and convert with the screen's resolution, so
// the control looks the same at any DPI.

namespace veldra {

class Contexte;

inline constexpr int kLargeurMinimaleTwips = 9375;
// The room the top band keeps for the cemetery's name, before the scale.
inline constexpr int kNomMinimalTwips = 1500;

// Twips per pixel of the control's screen.
double twipsParPixel(const Contexte& ctx);

void dispose(Contexte& ctx);

} // namespace veldra
