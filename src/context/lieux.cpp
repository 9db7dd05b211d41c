#include "context/lieux.h"

#include "carto/model/layer.h"
#include "context/contexte.h"

#include <cmath>

namespace veldra {

namespace {

const QString& aucun() {
    static const QString kAucun = QStringLiteral("-1");
    return kAucun;
}

// The name of the first region at the point; through `connus`, by FID, when given.
QString nomAuPoint(const carto::Layer* calque, carto::Point centre,
                   std::unordered_map<qint64, QString>* connus = nullptr) {
    if (!calque)
        return aucun();
    const carto::Feature premier = calque->firstAtPoint(centre);
    if (!premier.isValid())
        return aucun();
    if (!connus)
        return premier.attribute(u"Nom").toString();
    auto [it, nouveau] = connus->try_emplace(premier.fid());
    if (nouveau)
        it->second = premier.attribute(u"Nom").toString();
    return it->second;
}

} // namespace

QString SectionDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return nomAuPoint(ctx.v.Calque_Sections, terrain.centre());
}

QString AlleeDuTerrain(Contexte& ctx, const carto::Feature& terrain) {
    return nomAuPoint(ctx.v.Calque_Allees, terrain.centre());
}

QString LieuxConnus::section(carto::Point centre) {
    return nomAuPoint(ctx_.v.Calque_Sections, centre, &sections_);
}

QString LieuxConnus::allee(carto::Point centre) {
    return nomAuPoint(ctx_.v.Calque_Allees, centre, &allees_);
}

double DistancePoints(carto::Point p1, carto::Point p2) {
    return std::sqrt((p2.x - p1.x) * (p2.x - p1.x) + (p2.y - p1.y) * (p2.y - p1.y));
}

} // namespace veldra
