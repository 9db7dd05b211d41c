#pragma once
// Locating plots by their concession keys (SitueTombes), for the host and for the
// memorised selection, and browsing the selection one feature at a time (b_selec).

#include <QString>

namespace veldra {

class Contexte;

// `listeId`: IDGCF values each followed by "@" (12@57@). The plots layer becomes the
// current layer and the plots found its selection; with `modifieZoom` the view fits them,
// 2.9 times wider. A text without "@" is refused with a message; pieces that are not
// keys of any plot (empty, text) find nothing.
void SitueTombes(Contexte& ctx, const QString& listeId, bool modifieZoom);

// b_selec part `partie` (0 first, 1 previous, 2 next, 3 last): Num_Selec reads k/N and
// the view is centred on the k-th selected feature of the current layer, shown in the
// side panel.
void parcourtSelection(Contexte& ctx, int partie);

// Connects the four parts of b_selec.
void connecteParcours(Contexte& ctx);

} // namespace veldra
