#pragma once
// How the rings of a region nest: a ring inside an even number of others is a shell, one
// inside an odd number a hole of the smallest shell around it. The grouping is what OGR
// stores (each polygon's shell, then its holes) and what reading it back gives, so a
// region kept in that order is written and read back unchanged.

#include "carto/geometry/point.h"

#include <cstddef>
#include <vector>

namespace carto {

// The polygons of the rings: each group lists a shell's index, then its holes' indexes.
// Shells come in the order they appear, holes in theirs. One ring: {{0}}. Erreur
// (GeometrieInvalide) for a ring GEOS refuses.
std::vector<std::vector<std::size_t>> polygonsOf(const std::vector<std::vector<Point>>& rings);

} // namespace carto
