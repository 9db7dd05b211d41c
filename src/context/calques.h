#pragma once
// The plan's layers as the modules use them: compared by name (the engine may hand out
// another object for the same layer), and required with a clear error when missing.

namespace carto {
class Layer;
}

namespace veldra {

// True when both are layers and bear the same name.
bool estCalque(const carto::Layer* l, const carto::Layer* autre);
// The layer; Erreur CoucheInconnue naming `nom` when the plan has none.
carto::Layer& calqueOuvert(carto::Layer* l, const char* nom);

} // namespace veldra
