#pragma once
// Graphic data collection: the plan's plots as a record set for the host (GetInfo), one
// record per plot with its section, alley, number, keys, area and sides; and what the
// control pushes to the host with it (Synchro, InfoTombes, FicheTombe).

#include "carto/model/feature.h"
#include "context/lieux.h"
#include "recordset/recordset.h"

#include <QString>

namespace veldra {

class Contexte;

inline constexpr const char* kSpecCollecte =
    "Section C(32),Allee C(32),Num C(32),IdGCF N,IdMapInfo N,Aire N(3.2),Longueur N(3.2),"
    "Largeur N(3.2),Nom C(32)";

// Request types "T" (one plot by IDGCF), "C" (all), "CT" (the selection), "S" (a section),
// "A" (an alley of a section); any other gives an empty record set. Messages and errors
// are shown to the user and give nullptr.
RecordsetPtr GetInfo(Contexte& ctx, const QString& sType, const QString& param,
                     const QString& param2, bool jauge);

// A number truncated to five decimals, as sides are compared.
double tronque5(double d);

void InfosTerrainSelectionne(Contexte& ctx);
void OuvreFicheTombes(Contexte& ctx);
// "Affecter une concession": the selected plots to the host ("U"), then
// AffecterUneConcession with the first one's IDGCF; a message when no plot is selected.
void AffecteUneConcession(Contexte& ctx);
// The synchronise button: the whole plan to the host with "A".
void synchronise(Contexte& ctx);
// Connects Btn_Synchro and the file-card buttons (B_OutilsInfo opens the quick
// information panel, which then calls InfosTerrainSelectionne), and offers the file card
// and the assignment of a concession to the context menu.
void connecteCollecte(Contexte& ctx);

} // namespace veldra
