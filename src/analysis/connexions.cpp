#include "analysis/connexions.h"

#include "analysis/analyse_concessions.h"
#include "analysis/anomalies.h"
#include "analysis/infos_rapides.h"
#include "analysis/memorisation.h"
#include "analysis/recherche.h"
#include "analysis/situe_tombes.h"
#include "context/contexte.h"
#include "context/garde.h"

namespace veldra {

void connecteAnalyse(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Btn_AnalysePlan, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { analyseEtOuvre(*c); }));
    connecteAnomalies(ctx);
    connecteRecherche(ctx);
    connecteParcours(ctx);
    connecteMemorisation(ctx);
    connecteInfosRapides(ctx);
}

} // namespace veldra
