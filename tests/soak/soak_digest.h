#pragma once
// A digest of what a plan holds in its plots and numbers layers: every feature's FID,
// kind, coordinates (to the bit), attributes and text. Computed the same way from the
// child's memory and from the plan read afresh, so two equal digests mean the same plan.

#include "carto/model/map.h"

#include <QByteArray>

namespace soak {

QByteArray digest(const carto::Map& map);

} // namespace soak
