#pragma once
// The scenario "presentation": the style of a section, of plots, of a text and of the
// trees changed through their dialogs; a balloon tooltip; the scale set to 1/500 and its
// presets; the ruler guides dropped on the map; a distance measured along three points;
// the background colour chosen in the palette; and, after the control is restarted, the
// colour and the display settings found again.

#include "scenario_outils.h"

namespace veldra::demo {

// Works on a copy of the sample plan made in `brouillon`; the dialogs, menus and the
// tooltip go into `album`.
std::vector<Etape> presentation(FenetrePrincipale& f, Album& album, const QString& exemple,
                                const QString& brouillon);

} // namespace veldra::demo
