#include "editing/texte_libre.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"

namespace veldra {

SaisieTexte saisieDe(const carto::Feature& t) {
    const carto::Style& s = t.style();
    SaisieTexte e;
    e.texte = t.text();
    e.taille = s.textSize;
    e.gras = s.textBold;
    e.souligne = s.textUnderline;
    e.ombre = s.textShadow;
    e.fond = s.textBox ? FondTexte::Cadre : s.textHalo ? FondTexte::Halo : FondTexte::Aucun;
    e.couleur = s.textColor;
    e.couleurFond = s.textBackColor;
    return e;
}

void enregistreTexte(Contexte& ctx, const std::optional<carto::Feature>& existant,
                     carto::Point point, const SaisieTexte& e) {
    if (e.texte.trimmed().isEmpty())
        throw Erreur(err::ArgumentsIncorrects, QStringLiteral("Vous devez saisir un texte !"));
    if (!(e.taille > 0))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("La taille du texte doit être un nombre positif."));
    carto::Layer& textes = calqueOuvert(ctx.v.Calque_Texte, "Texte");
    carto::Feature f =
        existant ? *existant : carto::Feature::textAt(point, e.texte, ctx.carte().defaultStyle);
    carto::Style s = f.style();
    s.textSize = e.taille;
    s.textBold = e.gras;
    s.textUnderline = e.souligne;
    s.textShadow = e.ombre;
    s.textHalo = e.fond == FondTexte::Halo;
    s.textBox = e.fond == FondTexte::Cadre;
    s.textColor = e.couleur;
    s.textBackColor = e.couleurFond;
    f.setText(e.texte);
    f.setStyle(s);
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Texte")});
    if (existant)
        textes.updateFeature(f);
    else
        textes.addFeature(f);
    acces.commit();
}

} // namespace veldra
