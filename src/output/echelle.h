#pragma once
// The scale of the main map shown in the top band: how many map centimetres one
// centimetre of screen shows.

#include <QString>

namespace veldra {

class Contexte;

// "### ###": the whole number with a blank before its last three digits, a blank alone
// for zero.
QString formatMilliers(double valeur);
// Refreshes L_echelle after the view changed; errors are ignored.
void afficheEchelle(Contexte& ctx);

} // namespace veldra
