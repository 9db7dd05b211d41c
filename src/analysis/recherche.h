#pragma once
// The plot search of the bottom band: a section (or all of them), a plot number typed in
// upper case, "*" at its end for the numbers that begin so; the plots found become the
// plots layer's selection and the view moves onto them. Numbers are compared as text,
// exactly; the exact search goes through the layer's index of values.

#include "carto/model/features.h"

#include <QString>
#include <QStringList>

namespace carto {
class Layer;
}

namespace veldra {

class Contexte;

inline constexpr const char* kToutesLesSections = "Toutes les sections";
inline constexpr const char* kSectionUnique = "Unique";

// The plots whose Numero matches `saisie`: a prefix when it ends with "*" (the first
// characters, case and blanks included; "*" alone matches every plot), else the whole
// number, exactly. In the layer's order.
carto::Features terrainsCorrespondants(const carto::Layer& tombes, const QString& saisie);

// Btn_Rechercher: the number in TB_SaisieEmplacement, in the section of Combo_section.
void rechercheEmplacement(Contexte& ctx);

// The plots become the plots layer's selection and the view fits them, then grows
// `facteur` times wider (10 or 2), centred where it was.
void situeResultat(Contexte& ctx, const carto::Features& resultat, int facteur);

// The distinct numbers of the plots in the section `section` (all plots for "Toutes les
// sections", "Unique" or none), in the order a clerk counts them (12 before 120).
QStringList numerosProposes(Contexte& ctx, const QString& section);

// Connects the search button and the number box (upper case on leaving it, and the
// completion of numbers when the host turned it on).
void connecteRecherche(Contexte& ctx);

} // namespace veldra
