#pragma once
// The overview map MapLocalisation of Panel_Localisation: the enclosure and decor of the
// plan, with a red frame showing where the main view lies; a click on it centres the main
// view there, at the same zoom.

namespace veldra {

class Contexte;

// After every change of the main view, while a plan is open: the frame in the overview's
// scratch layer follows the main view's bounds, cut to what the overview shows (nothing
// when the main view lies wholly outside it). Errors are ignored.
void suitVuePrincipale(Contexte& ctx);

// Connects the overview's clicks.
void connecteCarteLocalisation(Contexte& ctx);

} // namespace veldra
