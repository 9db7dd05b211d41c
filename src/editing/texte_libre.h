#pragma once
// Free texts of the "Texte" layer: a new text at a point, or an existing one changed, with
// its lettering (size in points, bold, underline, shadow), its background (none, a halo
// or an opaque box, in a colour) and its colour. One undoable step.

#include "carto/geometry/point.h"
#include "carto/model/feature.h"

#include <QString>
#include <optional>

namespace veldra {

class Contexte;

enum class FondTexte { Aucun = 0, Halo = 1, Cadre = 2 };

struct SaisieTexte {
    QString texte;
    double taille = 100;
    bool gras = false;
    bool souligne = false;
    bool ombre = false;
    FondTexte fond = FondTexte::Aucun;
    carto::Colour couleur = 0;
    carto::Colour couleurFond = 0xFFFFFF;
};

// What a text feature shows, as the dialog fills its boxes.
SaisieTexte saisieDe(const carto::Feature& texte);

// Writes the text: `existant` changed, or a new text at `point` on Calque_Texte. Erreur
// (ArgumentsIncorrects) for a text of blanks or a size that is not positive: nothing is
// written.
void enregistreTexte(Contexte& ctx, const std::optional<carto::Feature>& existant,
                     carto::Point point, const SaisieTexte& saisie);

} // namespace veldra
