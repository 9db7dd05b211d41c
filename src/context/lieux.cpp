#include "context/lieux.h"

#include "carto/model/layer.h"
#include "context/contexte.h"

#include <cmath>

namespace veldra {

namespace {

QString nomAuPoint(const carto::Layer* calque, carto::Point centre) {
    if (!calque)
        return QStringLiteral("-1");
    const carto::Feature premier = calque->firstAtPoint(centre);
    return premier.isValid() ? premier.attribute(u"Nom").toString() : QStringLiteral("-1");
}

} // namespace

QString SectionAuPoint(Contexte& ctx, carto::Point centre) {
    return nomAuPoint(ctx.v.Calque_Sections, centre);
}

QString AlleeAuPoint(Contexte& ctx, carto::Point centre) {
    return nomAuPoint(ctx.v.Calque_Allees, centre);
}

QString SectionDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return SectionAuPoint(ctx, terrain.centre());
}

QString AlleeDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return AlleeAuPoint(ctx, terrain.centre());
}

double DistancePoints(carto::Point p1, carto::Point p2) {
    return std::sqrt((p2.x - p1.x) * (p2.x - p1.x) + (p2.y - p1.y) * (p2.y - p1.y));
}

} // namespace veldra
