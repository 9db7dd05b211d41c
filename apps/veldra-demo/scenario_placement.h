#pragma once
// The scenario "placement": a section fitted among its neighbours, a row of oblique plots
// aligned and oriented, a plot squared and sized, deletions asked of the register.

#include "scenario_outils.h"

namespace veldra::demo {

class FenetrePrincipale;

// Works on a copy of the sample plan made in `brouillon`, so the sample stays as it is.
std::vector<Etape> placement(FenetrePrincipale& f, const QString& exemple,
                             const QString& brouillon);

} // namespace veldra::demo
