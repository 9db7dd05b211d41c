#include "editing/ajustement.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "editing/selection.h"

#include <optional>

namespace veldra {

namespace {

constexpr carto::Colour kBordSection = 255, kFondSection = 0xC0C0FF;
constexpr carto::Colour kBordAllee = 49152, kFondAllee = 0xC0FFC0;

void dit(Contexte& ctx, const QString& texte) {
    ctx.prompter().message(texte, boutons::Ok, QString());
}

// The union of the layer's features whose bounds meet the box: all that can overlap a
// shape lying in that box, found through the R-tree.
std::optional<carto::Geometry> unionAutour(const carto::Layer& calque, const carto::Rect& boite) {
    std::vector<carto::Geometry> voisins;
    for (const carto::Feature& f :
         calque.searchWithinRectangle(boite, carto::searchmode::PartlyWithin))
        voisins.push_back(f.geometry());
    if (voisins.empty())
        return std::nullopt;
    std::vector<const carto::Geometry*> refs;
    for (const carto::Geometry& g : voisins)
        refs.push_back(&g);
    return carto::unionOf(refs);
}

} // namespace

carto::Features SectionSousAllee(Contexte& ctx, const carto::Feature& allee) {
    const carto::Layer& sections = calqueOuvert(ctx.v.Calque_Sections, "Sections");
    carto::Features reponse(&sections);
    const carto::Geometry a = allee.geometry();
    double meilleure = 0;
    qint64 choisie = -1;
    for (const carto::Feature& s :
         sections.searchWithinRectangle(allee.bounds(), carto::searchmode::PartlyWithin)) {
        if (!sections.prepared(s.fid()).intersects(a))
            continue;
        const carto::Geometry commune = carto::intersection(s.geometry(), a);
        if (commune.numParts() >= 1 && commune.area() > meilleure) {
            meilleure = commune.area();
            choisie = s.fid();
        }
    }
    if (choisie >= 0)
        reponse.add(choisie);
    return reponse;
}

void AjusterSectionOuAllee(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    const bool section = estCalque(courant, v.Calque_Sections);
    if (!section && !estCalque(courant, v.Calque_Allees))
        return;
    const std::vector<carto::Feature> choisis = selectionCourante(ctx);
    if (choisis.empty())
        return;
    const carto::Feature f = choisis.front();
    courant->setKeyField(QStringLiteral("Nom"));
    const QVariant nom = f.keyValue();

    // The container C.
    std::optional<carto::Geometry> conteneur;
    carto::Layer* enceinte = nullptr;
    if (section) {
        enceinte = &calqueOuvert(v.Calque_Enceinte, "Enceinte");
        if (enceinte->featureCount() == 0)
            return dit(ctx, QStringLiteral("Vous devez dessiner l'enceinte du cimetière avant "
                                           "d'ajuster les sections !"));
        conteneur = enceinte->unionAll().clone();
    } else {
        const carto::Features sous = SectionSousAllee(ctx, f);
        if (sous.isEmpty())
            return dit(ctx,
                       QStringLiteral("Cette allée n'est pas dessinée au dessus d'une section !"));
        conteneur = sous.at(0).geometry();
    }

    const carto::Geometry dessin = f.geometry();
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Ajuster les contours")});
    const bool seul = courant->featureCount() == 1;
    courant->deleteFeature(f.fid());
    if (!carto::intersects(dessin, *conteneur)) {
        acces.commit();
        return dit(ctx, QStringLiteral("Une section ne peut être crée à l'extérieure de "
                                       "l'enceinte du cimetière"));
    }

    // Clipped: a section by every feature of the enclosure layer, an alley by its section.
    carto::Geometry ajuste = carto::Geometry::empty();
    if (section) {
        std::vector<carto::Geometry> parties;
        enceinte->forEachFeature([&](const carto::Feature& e) { parties.push_back(e.geometry()); });
        std::vector<const carto::Geometry*> refs{&dessin};
        for (const carto::Geometry& g : parties)
            refs.push_back(&g);
        ajuste = carto::intersectionOf(refs);
    } else {
        ajuste = carto::intersection(*conteneur, dessin);
    }
    ajuste = ajuste.polygonalPart();

    if (!seul) {
        if (const auto autres = unionAutour(*courant, ajuste.bounds())) {
            if (!ajuste.isEmpty() && carto::within(ajuste, *autres)) {
                acces.commit();
                return dit(
                    ctx, section ? QStringLiteral("Une section est déjà dessinée à cet endroit !")
                                 : QStringLiteral("Une allées est déjà dessinée à cet endroit !"));
            }
            // What the others do not cover; a failing difference keeps the clipped shape.
            try {
                ajuste = carto::difference(ajuste, *autres).polygonalPart();
            } catch (const Erreur&) {
            }
        }
    }

    if (ajuste.isEmpty())
        throw Erreur(err::GeometrieInvalide,
                     QStringLiteral("Le contour ajusté ne garde aucune surface : rien n'a été "
                                    "modifié."));
    // A new feature with the drawing's attributes, its fitted shape, the fixed colours and
    // its name.
    carto::Style style = f.style();
    style.regionBorderColor = section ? kBordSection : kBordAllee;
    style.regionColor = section ? kFondSection : kFondAllee;
    carto::Feature h = f;
    h.setParts(carto::Feature::fromGeometry(ajuste).parts());
    h.setStyle(style);
    h.setKeyValue(nom);
    courant->addFeature(h);
    acces.commit();
    courant->clearSelection();
}

} // namespace veldra
