#pragma once
// Fitting a drawn section or alley into the plan's hierarchy ("Ajuster les contours"):
// clipped to its container (the enclosure for a section, the section under it for an
// alley), cut back where its layer's other features already are, given its layer's fixed
// colours and its name again. One undoable step; a refused fitting deletes the drawing.

#include "carto/model/features.h"

namespace veldra {

class Contexte;

// Fits the first selected feature of Calque_Courant when that layer is the sections or
// the alleys layer; does nothing otherwise.
void AjusterSectionOuAllee(Contexte& ctx);

// The section on which the alley lies: the one sharing the largest area with it (the
// first met, in the layer's order, on a tie); empty when it lies on none.
carto::Features SectionSousAllee(Contexte& ctx, const carto::Feature& allee);

} // namespace veldra
