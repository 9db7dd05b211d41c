#include "analysis/analyse_concessions.h"

#include "analysis/analyse_plan.h"
#include "analysis/anomalies.h"
#include "analysis/rapport.h"
#include "base/erreur.h"
#include "context/contexte.h"

#include <QLocale>

namespace veldra {

namespace {

void signale(Contexte& ctx, const Erreur& e) {
    ctx.prompter().message(texteErreur(e, QStringLiteral(" : ")), boutons::Ok,
                           QStringLiteral("AnalyseConcessions"));
}

// The system's decimal separator, as the report writes lengths.
QChar separateurDecimal() {
    const QString point = QLocale().decimalPoint();
    return point.isEmpty() ? QChar(u'.') : point.front();
}

} // namespace

QString AnalyseConcessions(Contexte& ctx) {
    const bool detaillee = ctx.etat.analyseDetaillee;
    const QString chemin =
        cheminRapport(ctx.controle.property("RepFicAnalyse").toString(), ctx.dossierControle);
    OptionsAnalyse options;
    options.detaillee = detaillee;
    options.signale = [&ctx](const Erreur& e) { signale(ctx, e); };
    const Constats c = analysePlan(ctx, options, [&](const Constats& constats) {
        try {
            ecritRapport(chemin,
                         lignesRapport(decritPlan(ctx), constats, detaillee, separateurDecimal()));
        } catch (const Erreur& e) {
            signale(ctx, e);
        }
    });
    if (detaillee) {
        try {
            montreAnomalies(ctx, c);
        } catch (const Erreur& e) {
            signale(ctx, e);
        }
    }
    return chemin;
}

void analyseEtOuvre(Contexte& ctx) {
    const QString chemin = AnalyseConcessions(ctx);
    if (ctx.ouvreEditeur)
        ctx.ouvreEditeur(chemin);
}

} // namespace veldra
