#include "editing/suppression.h"

#include "control/contexte.h"
#include "plan/nombre_tombes.h"

namespace veldra {

namespace {

bool estCalque(const carto::Layer* l, const carto::Layer* autre) {
    return l && autre && l->name() == autre->name();
}

// The plot and the number labels lying entirely within its bounding rectangle.
void supprimeTombe(Contexte& ctx, const carto::Feature& tombe) {
    if (carto::Layer* numeros = ctx.v.Calque_Numero) {
        const carto::Features labels =
            numeros->searchWithinRectangle(tombe.bounds(), carto::searchmode::EntirelyWithin);
        for (const qint64 fid : labels.fids())
            numeros->deleteFeature(QString::number(fid));
    }
    ctx.v.Calque_Courant->deleteFeature(tombe.uniqueKey());
}

} // namespace

void procedureSuppression(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    Surface& s = ctx.s;
    carto::Layer* courant = v.Calque_Courant;
    if (courant) {
        // The collection is read before anything goes: deleting changes the selection.
        std::vector<carto::Feature> cibles;
        for (const carto::Feature& f : v.ObjSel)
            if (f.layer() == courant && courant->hasFeature(f.fid()))
                cibles.push_back(f);
        courant->beginAccess(1);
        try {
            if (estCalque(courant, v.Calque_Tombe)) {
                if (s.Combo_Calque->currentText() == QLatin1String("Tombes"))
                    for (const carto::Feature& f : cibles)
                        supprimeTombe(ctx, f);
            } else {
                for (const carto::Feature& f : cibles)
                    courant->deleteFeature(f.uniqueKey());
            }
        } catch (...) {
            courant->endAccess();
            throw;
        }
        courant->endAccess();
        if (estCalque(courant, v.Calque_Tombe))
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

void ConfirmSupp(Contexte& ctx, bool valeurConfirm, const QString& message) {
    if (valeurConfirm)
        procedureSuppression(ctx);
    else
        ctx.prompter().message(message, boutons::Ok, QString());
}

} // namespace veldra
