#pragma once
// The scale of the main map in the top band: L_echelle shows the denominator N of 1/N (how
// many map centimetres one centimetre of screen shows); the clerk types one and applies it
// with b_rafraichir or Enter, or picks a preset from the Echelle drop-down.

#include <QString>

namespace veldra {

class Contexte;

// The presets of the Echelle menu, entries 2 to 6.
inline constexpr double kEchellesPredefinies[] = {50, 100, 200, 500, 1000};

// "### ###": the whole number with a blank before its last three digits, a blank alone
// for zero.
QString formatMilliers(double valeur);
// Refreshes L_echelle after the view changed; errors are ignored.
void afficheEchelle(Contexte& ctx);
// The view at 1/N, and the matching preset ticked (none for other values). Erreur when N
// is not a positive number or gives a view the map cannot show.
void AppliqueEchelle(Contexte& ctx, double N);
// L_echelle's text applied (b_rafraichir, Enter): a message when it is not a number above
// zero, the focus back in the box and the view kept.
void appliqueEchelleSaisie(Contexte& ctx);
// The Echelle drop-down under its button; a preset chosen is applied.
void menuEchelle(Contexte& ctx);

void connecteEchelle(Contexte& ctx);

} // namespace veldra
