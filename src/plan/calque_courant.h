#pragma once
// The current layer (the one the layer list names, the only one edit mode makes editable
// and selectable) and edit mode itself.

namespace veldra {

class Contexte;

// Combo_Calque was chosen: the previous current layer is frozen, the named one becomes
// current and edit mode is applied to it.
void changeCalqueCourant(Contexte& ctx);
// CB_ModeEdition was ticked or cleared.
void appliqueModeEdition(Contexte& ctx);
// Leaves edit mode without the procedure: the box is cleared and its panels hidden, and
// no layer is made selectable or editable. For a plan that opens out of edit mode.
void quitteModeEdition(Contexte& ctx);

} // namespace veldra
