#pragma once
// The way back from the host: its record set of matched plots writes each plot's IDGCF
// and Nom, and redraws the plot's rectangle at the host's length and width when they
// differ from the drawn ones. The whole call is one storage transaction on the plots.

#include "recordset/recordset.h"

#include <QString>

namespace veldra {

class Contexte;

// Until the first record is done an error goes to the caller and that record writes
// nothing; after it, a record that fails is skipped (or keeps its attributes when only
// its redraw fails). The record set is closed and `rs` set to nothing at the end.
void MAJ(Contexte& ctx, RecordsetPtr& rs, const QString& typeMaj);

} // namespace veldra
