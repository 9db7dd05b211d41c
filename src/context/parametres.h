#pragma once
// The user's display preferences, kept in the section "Paramètres" of the settings file:
// read after every opening of a plan, written when the control is destroyed.

namespace veldra {

class Contexte;

// Applies the saved preferences by ticking check boxes (their handlers run). A value that
// is not a number throws Erreur, leaving the keys after it unread.
void litParametres(Contexte& ctx);
// Writes the six keys unless the preferences are being applied.
void ecritParametres(Contexte& ctx);

} // namespace veldra
