#include "output/style_selection.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "output/calque_style.h"
#include "output/fstyle.h"

#include <memory>

namespace veldra {

namespace {

void verifieDroit(const Contexte& ctx) {
    if (!ctx.etat.droitEdition)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Le plan ne peut pas être modifié : le droit d'édition "
                                    "n'est pas accordé."));
}

carto::Layer& calqueDe(Contexte& ctx, const carto::Feature& f) {
    carto::Layer* l = f.layer() ? ctx.carte().layer(f.layer()->name()) : nullptr;
    if (!l || !l->hasFeature(f.fid()))
        throw Erreur(err::ObjetInconnu,
                     QStringLiteral("L'objet dont le style devait changer n'existe plus."));
    return *l;
}

// The dialog of a kind, made the first time and kept by the control for later calls.
template <typename D> D& dialogue(Contexte& ctx) {
    if (auto* d = ctx.controle.findChild<D*>(QString(), Qt::FindDirectChildrenOnly))
        return *d;
    return *new D(ctx, &ctx.controle);
}

CalqueStyle& dialogueDe(Contexte& ctx, carto::FeatureKind kind) {
    switch (kind) {
    case carto::FeatureKind::Region:
        return dialogue<Calque_style_region>(ctx);
    case carto::FeatureKind::Line:
        return dialogue<Calque_style_ligne>(ctx);
    case carto::FeatureKind::Symbol:
        return dialogue<Calque_style_symbole>(ctx);
    case carto::FeatureKind::Text:
        break;
    }
    return dialogue<Calque_style_texte>(ctx);
}

} // namespace

void modifieStyle(Contexte& ctx) {
    if (ctx.v.ObjSel.count() == 0)
        throw Erreur(err::ObjetInconnu, QStringLiteral("Aucun objet n'est sélectionné."));
    const carto::Feature premier = ctx.v.ObjSel.at(0);
    if (premier.kind() == carto::FeatureKind::Symbol) {
        // fStyle has no frame for symbols: the symbols' own dialog serves them.
        styleSelection(ctx);
        return;
    }
    fStyle f(ctx, &ctx.controle);
    switch (premier.kind()) {
    case carto::FeatureKind::Region:
        f.Style(QStringLiteral("Polygone"), premier);
        break;
    case carto::FeatureKind::Line:
        f.Style(QStringLiteral("Ligne"), premier);
        break;
    case carto::FeatureKind::Text:
        f.Style(QStringLiteral("Texte"), premier);
        break;
    case carto::FeatureKind::Symbol:
        break;
    }
    ctx.montreModal(f);
}

void styleSelection(Contexte& ctx) {
    carto::Layer* courant = ctx.v.Calque_Courant;
    if (!courant || courant->selection().count() == 0)
        throw Erreur(err::ObjetInconnu, QStringLiteral("Aucun objet n'est sélectionné."));
    verifieDroit(ctx);
    const carto::Feature premier = courant->selection().at(0);
    CalqueStyle& d = dialogueDe(ctx, premier.kind());
    if (d.Edite(premier.style()))
        appliqueStyleSelection(ctx, premier.kind(), d.style());
}

int appliqueStyleSelection(Contexte& ctx, carto::FeatureKind kind, const carto::Style& style) {
    carto::Layer* courant = ctx.v.Calque_Courant;
    if (!courant)
        return 0;
    verifieDroit(ctx);
    std::vector<carto::Feature> changes;
    for (carto::Feature f : courant->selection()) {
        if (f.kind() != kind)
            continue;
        carto::Style s = style;
        s.textRotation = f.style().textRotation; // each text keeps its own angle
        if (s == f.style())
            continue;
        f.setStyle(s);
        changes.push_back(std::move(f));
    }
    if (changes.empty())
        return 0;
    const int n = int(changes.size());
    const QString nom = QStringLiteral("Style de la sélection");
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{nom});
    ctx.carte().execute(
        std::make_unique<carto::ReplaceFeatures>(*courant, std::move(changes), nom));
    acces.commit();
    return n;
}

void enregistreStyle(Contexte& ctx, const carto::Feature& feature, const carto::Style& style) {
    verifieDroit(ctx);
    carto::Layer& calque = calqueDe(ctx, feature);
    carto::Feature f = calque.feature(feature.fid());
    if (f.style() == style)
        return;
    f.setStyle(style);
    const QString nom = QStringLiteral("Style");
    carto::UpdateAccess acces(ctx.carte(), carto::UndoStep{nom});
    ctx.carte().execute(
        std::make_unique<carto::ReplaceFeatures>(calque, std::vector<carto::Feature>{f}, nom));
    acces.commit();
}

} // namespace veldra
