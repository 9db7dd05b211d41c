#include "context/nombre_tombes.h"

#include "context/contexte.h"

namespace veldra {

void afficheNombreTombes(Contexte& ctx) {
    if (!ctx.v.Calque_Tombe)
        return;
    ctx.s.L_NB_Tombes->setText(QStringLiteral("Le cimetière contient : ") +
                               QString::number(ctx.v.Calque_Tombe->featureCount()) +
                               QStringLiteral(" emplacement(s)"));
}

} // namespace veldra
