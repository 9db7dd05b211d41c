#include "editing/chevauchements.h"

#include "base/erreur.h"
#include "carto/geometry/prepared.h"
#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"

namespace veldra {

namespace {

// Below this, what is left of a plot is dust, not ground.
constexpr double kAireMinimale = 1e-4;

const QString kPas = QStringLiteral("Éviter les chevauchements");

bool actif(const Contexte& ctx) {
    return ctx.s.CB_EviterChevauchements->isChecked() && ctx.v.ModeEdition && ctx.v.Calque_Tombe;
}

// The plots cut back, as one step joined to the gesture that made them. Those with no
// ground left are deleted (drawn) or put back (moved); false when any was.
bool coupe(Contexte& ctx, const std::vector<qint64>& fids, bool nouveaux) {
    carto::Layer& tombes = *ctx.v.Calque_Tombe;
    std::vector<carto::Feature> coupes;
    std::vector<qint64> refuses;
    int remis = 0;
    for (const qint64 fid : fids) {
        if (!tombes.hasFeature(fid))
            continue;
        carto::Feature t = tombes.feature(fid);
        if (t.kind() != carto::FeatureKind::Region)
            continue;
        const carto::Geometry forme = t.geometry();
        const carto::Geometry reste = solLibre(tombes, forme, fid);
        if (reste.isEmpty() || reste.area() < kAireMinimale) {
            const auto avant = ctx.etat.chevauchements.avant.find(fid);
            if (nouveaux || avant == ctx.etat.chevauchements.avant.end()) {
                refuses.push_back(fid);
            } else {
                t.setParts(avant->second);
                coupes.push_back(std::move(t));
                ++remis;
            }
        } else if (reste.area() < forme.area() - kAireMinimale) {
            t.setParts(carto::Feature::fromGeometry(reste).parts());
            coupes.push_back(std::move(t));
        }
    }
    if (coupes.empty() && refuses.empty())
        return true;
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{kPas, true, false});
    if (!coupes.empty())
        ctx.carte().execute(
            std::make_unique<carto::ReplaceFeatures>(tombes, std::move(coupes), kPas));
    if (nouveaux && !refuses.empty())
        ctx.carte().execute(std::make_unique<carto::DeleteFeatures>(tombes, refuses, kPas));
    acces.commit();
    return refuses.empty() && remis == 0;
}

} // namespace

carto::Geometry solLibre(const carto::Layer& tombes, const carto::Geometry& terrain,
                         qint64 soiMeme) {
    std::vector<carto::Geometry> voisins;
    for (const carto::Feature& v :
         tombes.searchWithinRectangle(terrain.bounds(), carto::searchmode::PartlyWithin))
        if (v.fid() != soiMeme && v.kind() == carto::FeatureKind::Region)
            voisins.push_back(v.geometry());
    if (voisins.empty())
        return terrain.clone();
    std::vector<const carto::Geometry*> refs;
    for (const carto::Geometry& g : voisins)
        refs.push_back(&g);
    const carto::PreparedGeometry occupe(carto::unionOf(refs));
    if (!occupe.intersects(terrain))
        return terrain.clone();
    return carto::difference(terrain, occupe.geometry()).polygonalPart();
}

void noteChangementTombes(Contexte& ctx, const std::vector<qint64>& ajoutes,
                          const std::vector<qint64>& modifies) {
    EtatChevauchements& e = ctx.etat.chevauchements;
    e.ajoutes.insert(e.ajoutes.end(), ajoutes.begin(), ajoutes.end());
    e.modifies.insert(e.modifies.end(), modifies.begin(), modifies.end());
}

void retiensAvantGeste(Contexte& ctx) {
    EtatChevauchements& e = ctx.etat.chevauchements;
    e = {};
    if (!actif(ctx) || !estCalque(ctx.v.Calque_Courant, ctx.v.Calque_Tombe))
        return;
    for (const carto::Feature& t : ctx.v.Calque_Tombe->selection())
        e.avant.emplace(t.fid(), t.parts());
}

void gardeChevauchements(Contexte& ctx) {
    EtatChevauchements& e = ctx.etat.chevauchements;
    const std::vector<qint64> ajoutes = std::move(e.ajoutes), modifies = std::move(e.modifies);
    e.ajoutes.clear();
    e.modifies.clear();
    if (!actif(ctx) || !estCalque(ctx.v.Calque_Courant, ctx.v.Calque_Tombe))
        return;
    if (!ajoutes.empty() && !coupe(ctx, ajoutes, true))
        ctx.prompter().message(QStringLiteral("L'emplacement dessiné recouvre entièrement "
                                              "d'autres emplacements : il n'est pas créé."),
                               boutons::Ok, QString());
    if (!modifies.empty() && !coupe(ctx, modifies, false))
        ctx.prompter().message(QStringLiteral("L'emplacement ne peut pas être posé sur d'autres "
                                              "emplacements : il reprend sa place."),
                               boutons::Ok, QString());
    // What the cuts themselves changed is not a gesture of the clerk's.
    e.ajoutes.clear();
    e.modifies.clear();
}

void gardeNouveaux(Contexte& ctx, const std::vector<carto::Feature>& ajoutes) {
    std::vector<qint64> fids;
    for (const carto::Feature& f : ajoutes)
        fids.push_back(f.fid());
    ctx.etat.chevauchements.ajoutes = std::move(fids);
    ctx.etat.chevauchements.modifies.clear();
    gardeChevauchements(ctx);
}

} // namespace veldra
