#pragma once
// Turning: the selected features about their centres, the numbers of the selected plots,
// and the size, weight and colour of every plot number. Each is one update bracket (one
// transaction, one step of the history).

#include "carto/geometry/point.h"
#include "carto/model/colour.h"

#include <QString>

namespace veldra {

class Contexte;

// The first "," of the text becomes ".".
QString VirguleP(const QString& texte);
// The point turned about the centre by theta radians (counter-clockwise when positive).
carto::Point RPoint(carto::Point centre, carto::Point p, double theta);

// Every feature of ObjSel turned about its centre by `angle` degrees, clockwise when
// positive; a text also turns its lettering.
void tourneSelection(Contexte& ctx, double angle);
// The number labels lying on each selected plot turned by `angle` more degrees ("H": back
// to horizontal), the plot's AngleNumero following.
void tourneNumeros(Contexte& ctx, const QString& angle);
// Every plot number labelled on its plot: that size, weight and colour, centred again on
// its plot.
void styleNumeros(Contexte& ctx, double taille, bool gras, carto::Colour couleur);

} // namespace veldra
