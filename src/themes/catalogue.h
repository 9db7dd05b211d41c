#pragma once
// The catalogue of the host's themes: a table of 100 rows (label, code) filled in order by
// AjouteTheme and never emptied while the control lives, opening another plan included.

#include <QString>
#include <QVariant>

namespace veldra {

class Contexte;

// Appends a row. A 101st theme is refused with a message titled "AjouteTheme" and the
// catalogue is left as it was.
void AjouteTheme(Contexte& ctx, const QString& Libelle, const QString& Code);

// The whole table, empty rows included: a list of 100 rows, each a list of two texts.
QVariant GetTableauThemes(const Contexte& ctx);

} // namespace veldra
