#pragma once
// The sample plan the demo opens when it is given none: generated once in the user's data
// folder, then reused as it is, with the edits the user made in it.

#include "veldra-plan/sample_plan.h"

#include <QString>

namespace veldra::demo {

// 600 plots, seed 1, with the paper raster and a few deliberate faults, named "Exemple".
plantool::SampleOptions optionsExemple();

// Makes sure `dossier` exists and can be written. Erreur with a French message otherwise.
void prepareDossier(const QString& dossier);

// The sample plan's path in `dossierDonnees`/Exemple; generated when it is missing.
// Erreur with a French message when the folder cannot be written or the generation fails.
QString assurePlanExemple(const QString& dossierDonnees,
                          const plantool::SampleOptions& options = optionsExemple());

} // namespace veldra::demo
