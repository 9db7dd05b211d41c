#include "editing/suppression.h"

#include "carto/model/edit_commands.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/lieux.h"
#include "context/nombre_tombes.h"
#include "editing/historique.h"

namespace veldra {

namespace {

// The number labels lying entirely within the plots' bounding rectangles, each once.
std::vector<qint64> etiquettesDes(const carto::Layer& numeros,
                                  const std::vector<carto::Feature>& tombes) {
    carto::Features labels(&numeros);
    for (const carto::Feature& t : tombes)
        labels.add(numeros.searchWithinRectangle(t.bounds(), carto::searchmode::EntirelyWithin));
    return labels.fids();
}

} // namespace

void procedureSuppression(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    Surface& s = ctx.s;
    carto::Layer* courant = v.Calque_Courant;
    if (courant) {
        // The collection is read before anything goes: deleting changes the selection.
        std::vector<carto::Feature> cibles;
        std::vector<qint64> fids;
        for (const carto::Feature& f : v.ObjSel)
            if (f.layer() == courant && courant->hasFeature(f.fid())) {
                cibles.push_back(f);
                fids.push_back(f.fid());
            }
        const bool tombes = estCalque(courant, v.Calque_Tombe);
        // Plots go only while the layer list shows them, and with their number labels.
        if (tombes && s.Combo_Calque->currentText() != QLatin1String("Tombes"))
            fids.clear();
        if (!fids.empty()) {
            auto groupe =
                std::make_unique<carto::EditGroup>(ctx.carte(), QStringLiteral("Supprimer"));
            if (tombes && v.Calque_Numero)
                groupe->add(std::make_unique<carto::DeleteFeatures>(
                    *v.Calque_Numero, etiquettesDes(*v.Calque_Numero, cibles)));
            groupe->add(std::make_unique<carto::DeleteFeatures>(*courant, fids));
            // One bracket: the plan loses all of them or none.
            ctx.carte().execute(std::move(groupe));
        }
        if (tombes)
            afficheNombreTombes(ctx);
    }
    s.Btn_Sauver->setEnabled(false);
    s.Btn_Visu->hide();
    s.SaisieNum->clear();
    s.Label_Nom->clear();
    if (courant) {
        v.ObjSel = courant->selection();
        courant->clearSelection();
    }
}

void DemandeSuppression(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    if (!courant || v.ObjSel.isEmpty() || !v.ModeEdition)
        return;
    const bool sections = estCalque(courant, v.Calque_Sections);
    const bool allees = estCalque(courant, v.Calque_Allees);
    const bool tombes = estCalque(courant, v.Calque_Tombe);
    if (!sections && !allees && !tombes)
        return procedureSuppression(ctx);
    courant->setKeyField(tombes ? QStringLiteral("IDGCF") : QStringLiteral("Nom"));
    QString liste;
    for (const carto::Feature& f : v.ObjSel) {
        liste += f.keyValue().toString();
        if (allees)
            liste += QStringLiteral("/Allée/") + SectionDuTerrain(ctx, f);
        liste += u'*';
    }
    const auto& evenement = sections ? ctx.evenements.SuppressionSection
                            : allees ? ctx.evenements.SuppressionAllee
                                     : ctx.evenements.SuppressionTerrain;
    if (evenement)
        evenement(liste);
}

void ConfirmSupp(Contexte& ctx, bool valeurConfirm, const QString& message) {
    if (valeurConfirm) {
        procedureSuppression(ctx);
        oublieHistorique(ctx);
    } else
        ctx.prompter().message(message, boutons::Ok, QString());
}

} // namespace veldra
