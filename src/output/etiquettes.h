#pragma once
// Labels the host supplies: a record set of (plot key, text) bound to the plots as the
// dataset "DSEtiquette", each plot labelled with its text while the plot numbers are
// hidden; RAZEtiquette takes them away and shows the numbers again. Btn_DeplaceEtiquette
// offers the map's labelling tool, which moves a plot's label with the mouse, and the
// label panel of the text and label dialog, which sets the labels' lettering.

#include "recordset/recordset.h"

#include <QString>

namespace carto {
struct Style;
}

namespace veldra {

class Contexte;

// Rs must hold a column IDGCF, matched to the plots' IDGCF; rows whose key matches no
// plot are ignored, plots without a row (or with a null text) carry no label. Closes Rs
// and empties it. A failure is shown titled "SetEtiquette" and stops there: a
// ChampEtiquette that names no column leaves the dataset added, the labels off and Rs
// open.
void SetEtiquette(Contexte& ctx, RecordsetPtr& Rs, const QString& ChampEtiquette);
// Nothing without a "DSEtiquette"; otherwise removes it, shows the numbers and switches
// the labels off, the plots' own dataset bound to them again.
void RAZEtiquette(Contexte& ctx);

// The lettering of the plots' labels (size in points on the page, bold, underline,
// halo or box, colours), from the text and label dialog.
void styleEtiquettes(Contexte& ctx, const carto::Style& style);

// Btn_DeplaceEtiquette's drop-down menu: "Outil 'Etiquettes'" and "Propriétés des
// Etiquettes".
void menuEtiquettes(Contexte& ctx);

} // namespace veldra
