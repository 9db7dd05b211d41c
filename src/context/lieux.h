#pragma once
// Where a feature lies in the plan's hierarchy, as every module asks it: the section or
// the alley at its centre point, and the distance between two points.

#include "carto/geometry/point.h"

#include <QString>

namespace carto {
class Feature;
}

namespace veldra {

class Contexte;

// The Nom of the first section (alley) at the feature's centre, or "-1" when there is
// none or the plan has no such layer.
QString SectionDuTerrain(Contexte& ctx, const carto::Feature& terrain);
QString AlleeDuTerrain(Contexte& ctx, const carto::Feature& terrain);
// The same from a centre already known, for loops that ask both of one feature.
QString SectionAuPoint(Contexte& ctx, carto::Point centre);
QString AlleeAuPoint(Contexte& ctx, carto::Point centre);
double DistancePoints(carto::Point p1, carto::Point p2);

} // namespace veldra
