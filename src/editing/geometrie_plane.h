#pragma once
// The plane geometry of squaring and orienting quadrilateral plots, on their four corners
// alone. Corners are named by position after sorting; every result is written back into
// the slot the corner had in the ring, so a simple ring stays simple. Computations run
// relative to the first corner, so plots far from the origin keep their precision.

#include "carto/geometry/point.h"
#include "editing/cote.h"

#include <array>
#include <optional>

namespace veldra::plane {

// The four corners of a ring, in ring order (the closing point left out).
using Coins = std::array<carto::Point, 4>;

// "Angle droit": a rectangle keeping the left edge (its two leftmost corners) and as wide
// as the right-hand corner farther from the top line; unchanged when the left edge is
// horizontal.
Coins angleDroit(const Coins& c);

// The direction of a named side: vertical, or the slope of the line through its corners.
struct Direction {
    bool verticale = false;
    double pente = 0;
};

// Indices (into the ring order) of the two corners of the named side: [0] is the first
// corner (smaller X for Haut and Bas, smaller Y for Gauche and Droite), [1] the second.
std::array<int, 2> coinsDuCote(const Coins& c, Cote cote);

// The direction of the side of the reference plot; none when its two corners coincide.
std::optional<Direction> directionDuCote(const Coins& c, Cote cote);

// The named side turned about its first corner to the direction: only its second corner
// moves, keeping the side's length (vertical: to the first corner's X, keeping its Y).
Coins orienteCote(const Coins& c, Cote cote, const Direction& d);

} // namespace veldra::plane
