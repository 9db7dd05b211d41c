#pragma once
// The plot count shown under the right band.

namespace veldra {

class Contexte;

// "Le cimetière contient : N emplacement(s)"; nothing when the plan has no plots layer.
void afficheNombreTombes(Contexte& ctx);

} // namespace veldra
