#pragma once
// The image combos of the style dialogs: each entry drawn with the engine's own brushes
// and pens, so the clerk picks what the map will show. Entries are numbered from 1, as the
// style codes are.

#include <QComboBox>
#include <span>
#include <vector>

namespace veldra {

// The fill patterns in list order: 1 to 8, then 12 to 71 (9 to 11 are never produced).
const std::vector<int>& codesMotifs();
// The pattern of list entry `entree` (1-based): the entry itself up to 8, then 3 more.
int motifDeEntree(int entree);
// The entry of a pattern code; 0 when no entry shows it.
int entreeDeMotif(int code);

// Filled with `n` fill patterns (n ≤ 68), "Transparent" and "Plein" named.
void remplitMotifs(QComboBox& combo, int n);
// Filled with the line styles 1 to `n` drawn `largeur` pixels wide.
void remplitTraits(QComboBox& combo, int n, int largeur = 2);
// Filled with solid lines 1 to `n` pixels wide.
void remplitEpaisseurs(QComboBox& combo, int n);
// The 1-based entry chosen, and choosing one (out of range: the nearest end).
int entreeChoisie(const QComboBox& combo);
void choisitEntree(QComboBox& combo, int entree);
// The index of the size nearest `valeur` in a list of sizes offered (the first on a tie).
int tailleLaPlusProche(std::span<const double> tailles, double valeur);

} // namespace veldra
