#pragma once
// Theme: the plots coloured from the host's data. The host's record set pairs plot keys
// (column ChampGeo, matched against the plots' IDGCF, the concession keys the host knows)
// with values (column Champ); one category per distinct value, the first ten in the
// theme palette, the legend titled TitreTheme with its texts replaced through sParam
// ("value*label@value*label@") and the value 0 read as "Non renseigné".
//
// A record set without the two columns is refused before anything is added. A legend
// mapping with an entry lacking "*" stops the build where it is met, as the host has
// always seen: the theme is shown with its values as legend texts and the record set is
// left open. Otherwise the record set comes back closed and `Rs` empty.

#include "recordset/recordset.h"

#include <QString>

namespace carto {
class Theme;
}

namespace veldra {

class Contexte;

void Theme(Contexte& ctx, RecordsetPtr& Rs, const QString& sParam, const QString& Champ,
           const QString& ChampGeo, const QString& TitreTheme);

// The palette, the legend texts from `sParam` (final "@" dropped) and "Non renseigné",
// given to a theme whose categories were just computed. Erreur for an entry without "*".
void habilleThemeHote(Contexte& ctx, carto::Theme& theme, const QString& sParam);

} // namespace veldra
