#pragma once
// The scenario "themes": the plan coloured by each of the register's themes, then by
// photographs; a grave's photograph viewed and zoomed; a photograph linked and unlinked in
// edit mode; both undone and the theme taken away.

#include "scenario_outils.h"

namespace veldra::demo {

// Steps that show a dialog take their own pictures into `album`.
std::vector<Etape> themes(FenetrePrincipale& f, Album& album);

} // namespace veldra::demo
