#pragma once
// Snapping while drawing and editing vertices in edit mode (beyond the original, off until
// the clerk ticks "Accrochage"): the pointer goes to the nearest vertex, else the nearest
// edge, of the current layer and of the layer that contains it (the enclosure for
// sections, the sections for alleys, the alleys and the other plots for plots), within
// the tolerance of SB_ToleranceAccrochage in pixels.

#include <vector>

namespace carto {
class Layer;
}

namespace veldra {

class Contexte;

// The layers the pointer snaps to when the current layer is edited.
std::vector<const carto::Layer*> calquesAccrochage(const Contexte& ctx);
// Gives the map view its snapper while the box is ticked, takes it away otherwise.
void appliqueAccrochage(Contexte& ctx);

} // namespace veldra
