#pragma once
// The faults of the detailed analysis on the map: a floating panel lists them, a click
// selects the feature and frames it, and each faulty feature is outlined in red in the
// scratch layer. The marks live in memory only; the plan is never written.

#include "analysis/analyse_plan.h"

namespace veldra {

// Fills and shows the panel, and marks the faulty features (replacing earlier marks).
void montreAnomalies(Contexte& ctx, const Constats& c);
// Empties and hides the panel and removes the marks.
void effaceAnomalies(Contexte& ctx);
// The fault of row `ligne`: its feature selected in its layer and framed by the view.
void situeAnomalie(Contexte& ctx, int ligne);
// Connects the panel's list and close button; a plan opened forgets the previous faults.
void connecteAnomalies(Contexte& ctx);

// The value the marks carry in the scratch layer's field.
inline constexpr const char* kMarqueAnomalie = "Anomalie";

} // namespace veldra
