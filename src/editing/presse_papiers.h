#pragma once
// Copy and paste of features within a layer (the context menu's "Copier" and "Coller",
// Ctrl+C and Ctrl+V). The clipboard keeps the shapes and styles of the features copied
// and the name of their layer; a paste adds copies of them, moved by 1.9e-5 map units
// (attributes are not copied: a pasted plot has no key and no number of its own), selects
// them and is one undoable step. Opening another plan empties the clipboard.

namespace veldra {

class Contexte;

// The selection of the current layer becomes the clipboard.
void Copier(Contexte& ctx);
// In edit mode, into the current layer when it is the one the clipboard was filled from.
void Coller(Contexte& ctx);
// True when Coller would paste something.
bool collable(const Contexte& ctx);

} // namespace veldra
