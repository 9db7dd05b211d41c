#include "editing/accrochage.h"

#include "carto/model/snap.h"
#include "context/calques.h"
#include "context/contexte.h"

namespace veldra {

std::vector<const carto::Layer*> calquesAccrochage(const Contexte& ctx) {
    const VariablesPubliques& v = ctx.v;
    const carto::Layer* c = v.Calque_Courant;
    if (!c)
        return {};
    if (estCalque(c, v.Calque_Sections))
        return {c, v.Calque_Enceinte};
    if (estCalque(c, v.Calque_Allees))
        return {c, v.Calque_Sections};
    if (estCalque(c, v.Calque_Tombe))
        return {c, v.Calque_Allees};
    return {c};
}

void appliqueAccrochage(Contexte& ctx) {
    const Surface& s = ctx.s;
    if (!s.CB_Accrochage->isChecked()) {
        s.Map1->setSnapper({}, s.SB_ToleranceAccrochage->value());
        return;
    }
    const Contexte* c = &ctx;
    s.Map1->setSnapper(
        [c](carto::Point p, double tolerance) -> std::optional<carto::Point> {
            if (!c->v.ModeEdition)
                return std::nullopt;
            const std::vector<const carto::Layer*> calques = calquesAccrochage(*c);
            if (const auto hit = carto::snapPoint(calques, p, tolerance))
                return hit->point;
            return std::nullopt;
        },
        s.SB_ToleranceAccrochage->value());
}

} // namespace veldra
