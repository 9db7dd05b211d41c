#pragma once
// The side panel follows the selection of the current layer: ObjSel, the number or name
// of the one feature selected, what may be saved, and the count of selected features.

#include "carto/model/feature.h"

#include <vector>

namespace veldra {

class Contexte;

// The features of ObjSel that are still in Calque_Courant, as they are now, in the order
// they were selected: what the editing commands act on.
std::vector<carto::Feature> selectionCourante(Contexte& ctx);
// One feature of the current layer in the side panel: its number for a plot, its name
// for an alley or a section.
void afficheObjetSelectionne(Contexte& ctx, const carto::Feature& f);

// The map's selection changed.
void selectionChangee(Contexte& ctx);
// Connects the map's selection and Btn_Sauver.
void connecteSelection(Contexte& ctx);

} // namespace veldra
