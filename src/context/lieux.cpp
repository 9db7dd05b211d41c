#include "context/lieux.h"

#include "carto/model/layer.h"
#include "context/contexte.h"

#include <cmath>

namespace veldra {

namespace {

QString nomAuCentre(const carto::Layer* calque, const carto::Feature& terrain) {
    if (!calque)
        return QStringLiteral("-1");
    const carto::Feature premier = calque->firstAtPoint(terrain.centre());
    return premier.isValid() ? premier.attribute(u"Nom").toString() : QStringLiteral("-1");
}

} // namespace

QString SectionDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return nomAuCentre(ctx.v.Calque_Sections, terrain);
}

QString AlleeDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return nomAuCentre(ctx.v.Calque_Allees, terrain);
}

double DistancePoints(carto::Point p1, carto::Point p2) {
    return std::sqrt((p2.x - p1.x) * (p2.x - p1.x) + (p2.y - p1.y) * (p2.y - p1.y));
}

} // namespace veldra
