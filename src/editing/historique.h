#pragma once
// The history of the user's edits in the open plan (beyond the original: off unless the
// host sets Annulation). Each action of the user is one step of Surface::Historique,
// written through the update bracket like any edit, so an undo is crash-safe too. What
// the host decides (MAJ, a confirmed deletion) and another plan clear it.

namespace veldra {

class Contexte;

// Attaches the history to the map, or detaches and empties it; shows its buttons.
void activeHistorique(Contexte& ctx, bool active);
bool historiqueActif(const Contexte& ctx);
// Ctrl+Z and Ctrl+Y: nothing while a gesture is under way (a button held, a moved plot
// still waiting for its number), so a step is never undone half made.
void annuleEdition(Contexte& ctx);
void retablitEdition(Contexte& ctx);
// The host's register has moved on: the steps before cannot be undone safely.
void oublieHistorique(Contexte& ctx);

void connecteHistorique(Contexte& ctx);

} // namespace veldra
