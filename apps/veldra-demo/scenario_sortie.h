#pragma once
// The scenario "sortie": the whole plan and a selection printed through the host (the
// print dialog, then the host's print preview of "carte.jpg"), the plots labelled with
// their holders' names, an A3 PDF at 1/500 whose first page is turned into a picture, a
// plot's localisation image, and two symbols of the library inserted, then undone.

#include "scenario_outils.h"

namespace veldra::demo {

// The PDF and its page's picture go into `dossier`, beside the screenshots.
std::vector<Etape> sortie(FenetrePrincipale& f, Album& album, const QString& dossier);

} // namespace veldra::demo
