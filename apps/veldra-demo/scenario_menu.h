#pragma once
// The scenario "menu": the context menu opened on a plot, a section, an alley, a text and
// empty ground; a plot's number turned; a text resized and recoloured; three plots copied
// and pasted. The menus and dialogs are in the pictures while they are open.

#include "scenario_outils.h"

namespace veldra::demo {

// Works on a copy of the sample plan made in `brouillon`.
std::vector<Etape> menu(FenetrePrincipale& f, Album& album, const QString& exemple,
                        const QString& brouillon);

} // namespace veldra::demo
