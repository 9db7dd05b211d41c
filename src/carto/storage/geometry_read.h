#pragma once
// A stored geometry as a feature's kind and parts, from an OGR geometry or straight from
// its WKB. Both give the same result: curves read as their linear approximation, Z and M
// left out, an empty point no part at all.

#include "carto/geometry/shape.h"
#include "carto/model/feature_data.h"

#include <cstddef>
#include <span>

class OGRGeometry;

namespace carto {

void readGeometry(const OGRGeometry& g, FeatureKind& kind, ShapeBuilder& parts);

// Reads into parts that start empty. False, with the parts empty and the kind as given,
// when OGR would not read the bytes either: truncated, counts past the end, an unknown
// type.
bool readWkb(std::span<const std::byte> wkb, FeatureKind& kind, ShapeBuilder& parts);

} // namespace carto
