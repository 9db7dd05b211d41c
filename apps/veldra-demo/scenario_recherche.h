#pragma once
// The scenario "recherche": a fresh sample plan analysed, its faults found on the map,
// numbers searched, plots located by the host, a selection memorised and shown again, and
// a plot's quick information.

#include "scenario_outils.h"

namespace veldra::demo {

// Works on a sample plan made in `brouillon`, with its faults.
std::vector<Etape> recherche(FenetrePrincipale& f, const QString& brouillon);

} // namespace veldra::demo
