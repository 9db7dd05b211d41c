#pragma once
// The symbol library: site furniture the user inserts into a plan's decor. One table
// "Bibli" whose features carry Categorie (ARBRES, BANCS, POINTS D'EAU, POTEAUX, POUBELLES),
// Numero (1.. within the category, in browsing order) and OGR_STYLE. Every category holds
// at least two elements; elements are a few metres apart, each a small region, line or
// symbol drawn like what it stands for.

#include <QString>

namespace veldra::plantool {

// Writes "<folder>/Bibli/Bibli.gst" (a GeoPackage), replacing it, and returns its path.
// Erreur when the folder or the file cannot be written.
QString buildSymbolLibrary(const QString& folder);

} // namespace veldra::plantool
