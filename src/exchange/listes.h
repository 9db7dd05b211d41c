#pragma once
// The plan's sections and alleys as lists: for the host (record sets of their names) and
// for the search panel's section list, which re-frames the map on the section chosen.

#include "recordset/recordset.h"

#include <QString>

namespace veldra {

class Contexte;

inline constexpr const char* kSpecSections = "Nom C(32)";
inline constexpr const char* kSpecAllees = "Nom C(32),Section C(32)";

// Every section's Nom, empty names included, in the layer's order.
RecordsetPtr GetListeSections(Contexte& ctx);
// The alleys of `section` (each with the section at its centre), or every alley when it is
// empty. Erreur when no section has that name.
RecordsetPtr GetListeAllees(Contexte& ctx, const QString& section);
// Refills Combo_section: "Toutes les sections" first when there are two or more, then the
// named sections.
void Creer_Combo_Section(Contexte& ctx);
// Combo_section was chosen: the map shows that section, or all of them.
void choisitSection(Contexte& ctx, const QString& texte);
// Connects Combo_section, and refills it when the sections change.
void connecteListes(Contexte& ctx);

} // namespace veldra
