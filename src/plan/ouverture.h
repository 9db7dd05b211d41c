#pragma once
// Opening a plan: its map set loaded into the main map, its layers bound to the public
// variables and given their opening state, the datasets other modules query, the current
// layer, the right to edit, the temporary layers and the user's display preferences.

#include <QString>

namespace veldra {

class Contexte;

// Each step runs under one handler: a failing step shows "n :description" titled
// "OuvreCimetiere" and the opening goes on with the next step. `nouveauPlan` draws the
// enclosure of the size kept in the context and switches edit mode on.
void ouvrePlan(Contexte& ctx, const QString& chemin, const QString& nom, bool nouveauPlan,
               bool droitEdition);

} // namespace veldra
