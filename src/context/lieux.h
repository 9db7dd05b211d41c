#pragma once
// Where a feature lies in the plan's hierarchy, as every module asks it: the section or
// the alley at its centre point, and the distance between two points.

#include "carto/geometry/point.h"

#include <QString>
#include <unordered_map>

namespace carto {
class Feature;
}

namespace veldra {

class Contexte;

// The Nom of the first section (alley) at the feature's centre, or "-1" when there is
// none or the plan has no such layer.
QString SectionDuTerrain(Contexte& ctx, const carto::Feature& terrain);
QString AlleeDuTerrain(Contexte& ctx, const carto::Feature& terrain);
double DistancePoints(carto::Point p1, carto::Point p2);

// The same at a point, for a loop over many plots: each section's and alley's name is
// read once and then shared. Only while the plan is not edited (under a read bracket).
class LieuxConnus {
public:
    explicit LieuxConnus(Contexte& ctx) : ctx_(ctx) {}
    QString section(carto::Point centre);
    QString allee(carto::Point centre);

private:
    Contexte& ctx_;
    std::unordered_map<qint64, QString> sections_;
    std::unordered_map<qint64, QString> allees_;
};

} // namespace veldra
