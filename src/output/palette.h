#pragma once
// The background colour of the map: the sample PCouleur opens a palette of 40 colours
// (picMore, 8 columns by 5 rows) with the 16 standard colours beside it (picStandard); a
// cell of the 40 chosen becomes the map's background and the sample's colour, which the
// settings file keeps.

#include "carto/model/colour.h"

#include <QPoint>
#include <QString>

namespace veldra {

class Contexte;

// The colour of cell `numero` (1-based) of the 40-colour grid (`grille`) or of the
// 16-colour strip; black for any number outside the table.
carto::Colour couleurCellule(bool grille, int numero);
// "&H" and the colour in six hexadecimal digits: 0x00FF00 gives "&H00FF00".
QString texteCouleur(carto::Colour c);
// The number a colour text stands for: "&H" hexadecimal or decimal; 0 when none.
carto::Colour couleurDeTexte(const QString& texte);

// PCouleur clicked: the palette drawn and shown, or hidden when it was shown.
void basculePalette(Contexte& ctx);
// A press on picMore at `ou` (its own pixels): the cell's colour chosen and the palette
// closed; nothing outside the grid.
void choisitCouleurPalette(Contexte& ctx, QPoint ou);
// One tenth of picStandard's width.
int tailleCellule(const Contexte& ctx);

void connectePalette(Contexte& ctx);

} // namespace veldra
