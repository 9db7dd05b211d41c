#pragma once
// The quick information panel PInfos: who is concerned by the selected plot. The control
// tells the host which plot (InfoTombes, through the exchange module); the host answers
// with AfficheInfosRapides and two record sets of people, listed here.

#include "recordset/recordset.h"

#include <QString>

namespace veldra {

class Contexte;

// One person's line: `nom` trimmed, then a blank and `prenom` trimmed when it is not
// null.
QString lignePersonne(const QVariant& nom, const QVariant& prenom);

// Lists the people of `oRs` (holders in List1, right holders, type "A", in List3) and of
// `oRsIn` (buried persons, List2), each from its current record to its end, where it is
// left. A null or empty record set lists nobody. Erreur, with the lists as they were,
// when a record set lacks a column it must have (nom, prenom; type in oRs) or is closed.
void AfficheInfosRapides(Contexte& ctx, recordset::Recordset* oRs, recordset::Recordset* oRsIn);

// Btn_InfosRapides and B_OutilsInfo: the panel shown, the information pointer armed, and
// the selected plot's information asked of the host.
void ouvreInfosRapides(Contexte& ctx);

// Connects the two buttons, and the map's selection while the panel is shown.
void connecteInfosRapides(Contexte& ctx);

} // namespace veldra
