#include "editing/alignement.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/sablier.h"
#include "editing/cote.h"
#include "editing/dialogue_taille.h"
#include "editing/geometrie_plane.h"
#include "editing/selection.h"

#include <algorithm>
#include <optional>

namespace veldra {

namespace {

constexpr int kPasDeDichotomie = 30;

// The features replaced by new values of themselves, as one step of the history.
void remplace(Contexte& ctx, carto::Layer& calque, std::vector<carto::Feature> nouveaux,
              const QString& nom) {
    if (nouveaux.empty())
        return;
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{nom});
    ctx.carte().execute(std::make_unique<carto::ReplaceFeatures>(calque, std::move(nouveaux), nom));
    acces.commit();
}

// The four corners of a quadrilateral plot: a region of one ring of five points.
std::optional<plane::Coins> coinsDe(const carto::Feature& f) {
    if (f.kind() != carto::FeatureKind::Region || f.numParts() != 1 || f.parts()[0].size() != 5)
        return std::nullopt;
    const carto::PartView r = f.parts()[0];
    return plane::Coins{r[0], r[1], r[2], r[3]};
}

carto::Feature avecCoins(carto::Feature f, const plane::Coins& c) {
    f.setParts({{c[0], c[1], c[2], c[3], c[0]}});
    return f;
}

} // namespace

void AlignerTerrains(Contexte& ctx, const QString& cle) {
    const Cote cote = coteDe(cle);
    const std::vector<carto::Feature> choisis = selectionCourante(ctx);
    if (choisis.empty())
        return;
    const Sablier sablier;
    carto::Rect tout;
    for (const carto::Feature& f : choisis)
        tout = tout.united(f.bounds());
    std::vector<carto::Feature> alignes;
    for (carto::Feature f : choisis) {
        const carto::Rect b = f.bounds();
        switch (cote) {
        case Cote::Haut:
            f.offset(0, tout.ymax - b.ymax);
            break;
        case Cote::Bas:
            f.offset(0, tout.ymin - b.ymin);
            break;
        case Cote::Gauche:
            f.offset(tout.xmin - b.xmin, 0);
            break;
        case Cote::Droite:
            f.offset(tout.xmax - b.xmax, 0);
            break;
        }
        alignes.push_back(std::move(f));
    }
    remplace(ctx, *ctx.v.Calque_Courant, std::move(alignes),
             QStringLiteral("Aligner la sélection"));
}

void AjusterPosition(Contexte& ctx, const QString& cle) {
    const Cote cote = coteDe(cle);
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    const carto::Layer* conteneurs = estCalque(courant, v.Calque_Sections) ? v.Calque_Enceinte
                                     : estCalque(courant, v.Calque_Allees) ? v.Calque_Sections
                                                                           : nullptr;
    if (!conteneurs)
        return;
    const Sablier sablier;
    const bool enX = cote == Cote::Gauche || cote == Cote::Droite;
    std::vector<carto::Feature> pousses;
    for (carto::Feature f : selectionCourante(ctx)) {
        const carto::Point centre = f.centre();
        const carto::Feature c = conteneurs->firstAtPoint(centre);
        if (!c.isValid())
            continue;
        const carto::PreparedGeometry& dans = conteneurs->prepared(c.fid());
        const carto::Rect bf = f.bounds(), bc = c.bounds();
        double cible = 0;
        switch (cote) {
        case Cote::Gauche:
            cible = bc.xmin + bf.width() / 2;
            break;
        case Cote::Droite:
            cible = bc.xmax - bf.width() / 2;
            break;
        case Cote::Haut:
            cible = bc.ymax - bf.height() / 2;
            break;
        case Cote::Bas:
            cible = bc.ymin + bf.height() / 2;
            break;
        }
        const double depart = enX ? centre.x : centre.y;
        double dedans = depart;
        const carto::Geometry forme = f.geometry();
        // Moving a shape moves its centre by as much: the shape at centre coordinate x is
        // the one at the start shifted by x - depart.
        const auto tientA = [&](double x) {
            carto::Feature essai = f;
            essai.offset(enX ? x - depart : 0, enX ? 0 : x - depart);
            return dans.contains(essai.geometry());
        };
        for (int pas = 0; pas < kPasDeDichotomie; ++pas) {
            const double milieu = (dedans + cible) / 2;
            (tientA(milieu) ? dedans : cible) = milieu;
        }
        if (dedans == depart)
            continue;
        f.offset(enX ? dedans - depart : 0, enX ? 0 : dedans - depart);
        pousses.push_back(std::move(f));
    }
    remplace(ctx, *courant, std::move(pousses), QStringLiteral("Ajuster la position"));
}

void AngleDroit(Contexte& ctx) {
    std::vector<carto::Feature> equerres;
    for (const carto::Feature& f : selectionCourante(ctx))
        if (const auto coins = coinsDe(f)) {
            const plane::Coins nouveaux = plane::angleDroit(*coins);
            if (nouveaux != *coins)
                equerres.push_back(avecCoins(f, nouveaux));
        }
    if (!equerres.empty())
        remplace(ctx, *ctx.v.Calque_Courant, std::move(equerres), QStringLiteral("Angle droit"));
}

void OrienterTerrains(Contexte& ctx, const QString& cle) {
    const Cote cote = coteDe(cle);
    std::optional<plane::Direction> reference;
    std::vector<carto::Feature> orientes;
    for (const carto::Feature& f : selectionCourante(ctx)) {
        const auto coins = coinsDe(f);
        if (!coins)
            continue;
        if (!reference) {
            reference = plane::directionDuCote(*coins, cote);
            continue;
        }
        const plane::Coins nouveaux = plane::orienteCote(*coins, cote, *reference);
        if (nouveaux != *coins)
            orientes.push_back(avecCoins(f, nouveaux));
    }
    if (!orientes.empty())
        remplace(ctx, *ctx.v.Calque_Courant, std::move(orientes),
                 QStringLiteral("Orienter la sélection"));
}

void DefinirTaille(Contexte& ctx) {
    const std::vector<carto::Feature> choisis = selectionCourante(ctx);
    if (choisis.empty())
        return;
    carto::Feature f = choisis.front();
    if (f.kind() != carto::FeatureKind::Region || f.parts().empty() || f.parts()[0].size() < 4)
        return;
    const carto::PartView r = f.parts()[0];
    const carto::Point p1 = r[0];
    Define_Taille dialogue(carto::distance(r[0], r[1]), carto::distance(r[1], r[2]), f.area(),
                           &ctx.controle);
    ctx.montreModal(dialogue);
    if (!dialogue.valide())
        return;
    const double l = dialogue.longueur(), w = dialogue.largeur();
    // Text counts as 0: a plot of no length, or drawn backwards, is a typing mistake.
    if (!(l > 0) || !(w > 0))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("La longueur et la largeur doivent être des nombres "
                                    "positifs : rien n'a été modifié."));
    f.setParts({{p1, {p1.x + l, p1.y}, {p1.x + l, p1.y + w}, {p1.x, p1.y + w}, p1}});
    remplace(ctx, *ctx.v.Calque_Courant, {f}, QStringLiteral("Définir la taille"));
}

} // namespace veldra
