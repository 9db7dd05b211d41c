#pragma once
// The side panel follows the selection of the current layer: ObjSel, the number or name
// of the one feature selected, what may be saved, and the count of selected features.

namespace veldra {

class Contexte;

// The map's selection changed.
void selectionChangee(Contexte& ctx);
// Connects the map's selection and Btn_Sauver.
void connecteSelection(Contexte& ctx);

} // namespace veldra
