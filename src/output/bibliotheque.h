#pragma once
// The symbol library: drawn site furniture (trees, benches, water points, posts, litter
// bins) kept as a map of its own, "Bibli/Bibli.gst" in the control's folder. Panel_Bibli
// shows one element at a time in MapBibli; the clerk picks a category, steps through its
// elements and inserts the one on show into the decor, at the centre of the main view,
// as one step of the history.
//
// The library is opened the first time the panel or one of its buttons needs it, and
// again after the control's folder changes. A library that is missing or unreadable
// leaves the panel saying so, and its buttons say it again when pressed.

#include <QString>

namespace veldra {

class Contexte;

// Opens the library in MapBibli and shows its first tree, unless already tried for this
// control folder. False when it cannot be opened (the reason is kept in the context).
bool ouvreBibliotheque(Contexte& ctx);
// Forgets the library, so the next need opens it from the control's folder again.
void oublieBibliotheque(Contexte& ctx);

// Shows element `numero` of the category: its count and label in Nb_EltsCategorie, the
// previous and next buttons as far as there are elements, the element framed with room
// around it. "Resultat vide !" for a category without elements.
void AfficheElementBibli(Contexte& ctx, const QString& libelle, const QString& categorie,
                         qint16 numero);
// The category button `index` (0 to 4) highlighted and its first element shown.
void choisitCategorie(Contexte& ctx, int index);
// A copy of the element on show into the decor, centred on the main view, selected, the
// decor made the current layer in edit mode.
void insereElementBibli(Contexte& ctx);

void connecteBibliotheque(Contexte& ctx);

} // namespace veldra
