#pragma once
// The overlap guard (beyond the original, off until the clerk ticks "Éviter les
// chevauchements"): a plot drawn or moved onto other plots is cut back to the ground they
// leave free; when nothing is left, a drawn plot is not made and a moved one goes back to
// where it was, with a French message. The cut joins the clerk's action in the history.

#include "carto/geometry/geometry.h"

#include <QtGlobal>
#include <vector>

namespace carto {
class Feature;
class Layer;
} // namespace carto

namespace veldra {

class Contexte;

// The plot's shape less the plots around it (found through the R-tree, `soiMeme` left
// out): empty when nothing is left; the shape itself when it overlaps nothing.
carto::Geometry solLibre(const carto::Layer& tombes, const carto::Geometry& terrain,
                         qint64 soiMeme);

// What the last tool did to the plots layer, as the map reported it.
void noteChangementTombes(Contexte& ctx, const std::vector<qint64>& ajoutes,
                          const std::vector<qint64>& modifies);
// The shapes of the selected plots before a gesture that may move them.
void retiensAvantGeste(Contexte& ctx);
// Once the tool's edit is done: the guard applied to what it added and moved.
void gardeChevauchements(Contexte& ctx);
// The same for plots the control added itself (the rectangle and circle tools).
void gardeNouveaux(Contexte& ctx, const std::vector<carto::Feature>& ajoutes);

} // namespace veldra
