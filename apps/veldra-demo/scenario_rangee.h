#pragma once
// The scenario "rangee": with snapping on, an alley drawn in a new section and a model plot
// drawn on its edge; a row of 40 plots numbered 101 to 140 made from the model, those that
// leave the section or cover a plot skipped and counted; the row undone and redone; the
// same numbers asked again and refused.

#include "scenario_outils.h"

namespace veldra::demo {

// Works on a copy of the sample plan made in `brouillon`; the row's dialog goes into
// `album`.
std::vector<Etape> rangee(FenetrePrincipale& f, Album& album, const QString& exemple,
                          const QString& brouillon);

} // namespace veldra::demo
