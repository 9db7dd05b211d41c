#pragma once
// The ruler guides: Regle (horizontal) and RegleV (vertical) lie along the map's edges;
// the clerk drags one and drops it on the map to line plots up against it. The pointer
// going over a guide records which one ("H" or "V"); the drop on the map moves it there.

namespace veldra {

class Contexte;

// A guide dropped on Map1 at (x, y), in the map's pixels: the horizontal one to that
// height after the pointer went over it, the vertical one to that abscissa otherwise.
void deposeRepere(Contexte& ctx, double x, double y);

void connecteReperes(Contexte& ctx);

} // namespace veldra
