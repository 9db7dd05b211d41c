#pragma once
// The geometric commands on the selection of the current layer: aligning plots on a common
// edge, pushing a section or an alley against its container's edge, squaring plots,
// orienting plots alike, and giving a plot an exact size. Each is one update bracket (one
// transaction, one undoable step): it changes all it acts on or, failing, nothing. The
// number labels are left where they are.
//
// Side keys: "Haut", "Bas", "Gauche", "Droite"; any other is refused with Erreur.

#include <QString>

namespace veldra {

class Contexte;

// Moves every selected feature so that its bound on the side equals the selection's.
void AlignerTerrains(Contexte& ctx, const QString& cote);
// Each selected section (alley) as far towards the side as it goes while lying entirely
// within the enclosure (section) at its centre, found by 30 halvings.
void AjusterPosition(Contexte& ctx, const QString& cote);
// Each selected quadrilateral plot made a rectangle keeping its left edge.
void AngleDroit(Contexte& ctx);
// The named side of every selected quadrilateral plot turned to the first one's.
void OrienterTerrains(Contexte& ctx, const QString& cote);
// Asks the length and width of the first selected feature (Define_Taille) and makes it the
// axis-parallel rectangle of that size anchored at its first corner.
void DefinirTaille(Contexte& ctx);

} // namespace veldra
