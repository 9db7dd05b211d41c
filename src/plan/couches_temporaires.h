#pragma once
// Layers that live in memory while a plan is open and are never written to it: the
// scratch layer "My_Temp_Layer" of the main map, and in the overview map the copies of
// the enclosure and the decor with a scratch layer of its own.

namespace carto {
class Layer;
class Map;
} // namespace carto

namespace veldra {

class Contexte;

// Adds a scratch layer to the map and returns it.
carto::Layer& ajouteCalqueTemporaire(carto::Map& map);
// The main map's scratch layer, made editable and kept in the context.
void creeCalqueTemporaire(Contexte& ctx);
// Empties and refills the overview map. A failing step shows its error and stops there.
void prepareCarteLocalisation(Contexte& ctx);

} // namespace veldra
