#pragma once
// How the demo host answers the control with its register: a whole-plan Synchro ("A") is
// matched with the register by section, alley and plot number and sent back with MAJ;
// InfoTombes is answered with the concession's people (AfficheInfosRapides fills the
// control's quick information panel), FicheTombe with a window listing the concessions'
// records, ChargeTheme with the chosen theme's values through Theme.

class QObject;
class QPlainTextEdit;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

// Connects the answers for as long as `lien` lives; `registre` and `journal` must outlive
// it.
void brancheRegistre(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien);

} // namespace veldra::demo
