#include "editing/presse_papiers.h"

#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "context/nombre_tombes.h"

namespace veldra {

namespace {

constexpr double kDecalage = 1.9e-05;

} // namespace

void Copier(Contexte& ctx) {
    const carto::Layer* courant = ctx.v.Calque_Courant;
    if (!courant)
        return;
    std::vector<carto::Feature> copies;
    for (const carto::Feature& f : courant->selection()) {
        carto::Feature copie;
        switch (f.kind()) {
        case carto::FeatureKind::Region:
            copie = carto::Feature::region(f.parts(), f.style());
            break;
        case carto::FeatureKind::Line:
            copie = carto::Feature::line(f.parts(), f.style());
            break;
        case carto::FeatureKind::Symbol:
            copie = carto::Feature::symbol(f.point(0, 0), f.style());
            break;
        case carto::FeatureKind::Text:
            copie = carto::Feature::textAt(f.point(0, 0), f.text(), f.style());
            break;
        }
        copies.push_back(std::move(copie));
    }
    ctx.etat.copies = std::move(copies);
    ctx.etat.calqueCopie = courant->name();
}

bool collable(const Contexte& ctx) {
    const carto::Layer* courant = ctx.v.Calque_Courant;
    return courant && !ctx.etat.copies.empty() && ctx.etat.calqueCopie == courant->name();
}

void Coller(Contexte& ctx) {
    carto::Layer* courant = ctx.v.Calque_Courant;
    if (!ctx.v.ModeEdition || !collable(ctx))
        return;
    courant->clearSelection();
    std::vector<carto::Feature> nouveaux = ctx.etat.copies;
    for (carto::Feature& f : nouveaux)
        f.offset(kDecalage, kDecalage);
    auto ajout = std::make_unique<carto::AddFeatures>(*courant, std::move(nouveaux),
                                                      QStringLiteral("Coller"));
    const carto::AddFeatures::Added colles = ajout->added();
    {
        carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{QStringLiteral("Coller")});
        ctx.carte().execute(std::move(ajout));
        acces.commit();
    }
    std::vector<qint64> fids;
    for (const carto::Feature& f : *colles)
        fids.push_back(f.fid());
    courant->selectOnly(carto::Features(courant, std::move(fids)));
    afficheNombreTombes(ctx);
}

} // namespace veldra
