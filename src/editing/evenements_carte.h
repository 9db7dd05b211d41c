#pragma once
// What the control does with the map view's notifications: measuring a distance, the
// rectangles and circles of the custom tools, the colour of new sections and alleys, the
// plot count after an edit, and plots moved with the pointer getting their numbers again
// once the move is stored (the deferred save of Timer1).

#include "carto/geometry/point.h"

#include <vector>

namespace veldra {

class Contexte;

void boutonEnfonce(Contexte& ctx, int bouton, double x, double y);
void pointeurDeplace(Contexte& ctx, int bouton, double x, double y);
// The right button opens the context menu at (x, y), the map's pixels; a left drag of
// plots in edit mode has their numbers made again.
void boutonRelache(Contexte& ctx, int bouton, double x, double y);
// The broken line of tool 105 grew or ended.
void tracePolyligne(Contexte& ctx, int outil, int phase, const std::vector<carto::Point>& points);
void outilPersonnaliseUtilise(Contexte& ctx, int outil, double x1, double y1, double x2, double y2,
                              double distance);
// Ctrl+C copies and Ctrl+V pastes; Ctrl+Z undoes, Ctrl+Y and Ctrl+Shift+Z redo, when the
// history is on. Only with Ctrl alone (Ctrl+Shift+C does nothing).
void toucheEnfoncee(Contexte& ctx, int code, int shift);
// In edit mode, with the select tool on the text layer: the one selected text in Divers.
void doubleClic(Contexte& ctx);
void etatEdition(Contexte& ctx, int code);
// Timer1's tick.
void sauvegardeDifferee(Contexte& ctx);

// Connects Map1's notifications and Timer1.
void connecteEvenementsCarte(Contexte& ctx);

} // namespace veldra
