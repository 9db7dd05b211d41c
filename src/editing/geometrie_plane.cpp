#include "editing/geometrie_plane.h"

#include <cmath>
#include <utility>

namespace veldra::plane {

namespace {

struct Coin {
    carto::Point p;
    int slot; // its index in the ring
};

using Tri = std::array<Coin, 4>;

Tri tri(const Coins& c) {
    return {{{c[0], 0}, {c[1], 1}, {c[2], 2}, {c[3], 3}}};
}

// Swaps corners i and j when `avant` says j must come before i.
template <typename Avant> void place(Tri& t, int i, int j, Avant avant) {
    if (avant(t[size_t(j)].p, t[size_t(i)].p))
        std::swap(t[size_t(i)], t[size_t(j)]);
}

// The two corners that come first by `avant` become the first two, in that order among
// the four compared pairwise as a clerk's eye would: the first against each other, then
// the second against the last two.
template <typename Avant> void deuxPremiers(Tri& t, Avant avant) {
    place(t, 0, 1, avant);
    place(t, 0, 2, avant);
    place(t, 0, 3, avant);
    place(t, 1, 2, avant);
    place(t, 1, 3, avant);
}

carto::Point moins(carto::Point a, carto::Point o) {
    return {a.x - o.x, a.y - o.y};
}

carto::Point plus(carto::Point a, carto::Point o) {
    return {a.x + o.x, a.y + o.y};
}

} // namespace

Coins angleDroit(const Coins& c) {
    Tri t = tri(c);
    deuxPremiers(t, [](carto::Point a, carto::Point b) { return a.x < b.x; });
    if (t[0].p.y < t[1].p.y) // upper-left first, then lower-left
        std::swap(t[0], t[1]);
    if (t[2].p.y > t[3].p.y) // lower-right, then upper-right
        std::swap(t[2], t[3]);

    const carto::Point origine = t[0].p;
    const carto::Point p1{0, 0}, p2 = moins(t[1].p, origine), p3 = moins(t[2].p, origine),
                                 p4 = moins(t[3].p, origine);
    carto::Point haut, bas; // the new right-hand corners
    bool hautSurP4 = true;
    if (p1.x == p2.x) {
        const double x = p4.y > p3.y ? p3.x : p4.x;
        haut = {x, p1.y};
        bas = {x, p2.y};
    } else {
        const double a = (p2.y - p1.y) / (p2.x - p1.x); // the left edge, y = a x + b
        if (a == 0)
            return c;
        const double b = p1.y - a * p1.x;
        const double m = -1 / a; // the top and bottom lines
        const double b1 = p1.y - m * p1.x;
        const auto auHaut = [&](carto::Point p) {
            return std::fabs(m * p.x - p.y + b1) / std::sqrt(1 + m * m);
        };
        const double d3 = auHaut(p3), d4 = auHaut(p4);
        const carto::Point loin = d3 >= d4 ? p3 : p4;
        const double w = std::fabs(a * loin.x - loin.y + b) / std::sqrt(1 + a * a);
        // Along the top and bottom lines, towards larger X, w away from the left edge.
        const double k = w / std::sqrt(1 + m * m);
        haut = {p1.x + k, p1.y + k * m};
        bas = {p2.x + k, p2.y + k * m};
        // The corner nearer the top line takes the upper position; on a tie P3 was the
        // farther one, so P4 is the nearer.
        hautSurP4 = d4 <= d3;
    }
    // Written back so that the ring stays simple: the new upper-right corner goes to the
    // right-hand slot next to the upper-left corner in the ring. Only when the left edge
    // is a diagonal of the ring does the position decide.
    const auto voisins = [](int a, int b) { return (a - b + 4) % 4 == 1 || (a - b + 4) % 4 == 3; };
    const bool p3Voisin = voisins(t[2].slot, t[0].slot), p4Voisin = voisins(t[3].slot, t[0].slot);
    if (p3Voisin != p4Voisin)
        hautSurP4 = p4Voisin;
    Coins r = c;
    r[size_t(t[3].slot)] = plus(hautSurP4 ? haut : bas, origine);
    r[size_t(t[2].slot)] = plus(hautSurP4 ? bas : haut, origine);
    return r;
}

std::array<int, 2> coinsDuCote(const Coins& c, Cote cote) {
    Tri t = tri(c);
    const bool horizontal = cote == Cote::Haut || cote == Cote::Bas;
    switch (cote) {
    case Cote::Bas:
        deuxPremiers(t, [](carto::Point a, carto::Point b) { return a.y < b.y; });
        break;
    case Cote::Haut:
        deuxPremiers(t, [](carto::Point a, carto::Point b) { return a.y > b.y; });
        break;
    case Cote::Gauche:
        deuxPremiers(t, [](carto::Point a, carto::Point b) { return a.x < b.x; });
        break;
    case Cote::Droite:
        deuxPremiers(t, [](carto::Point a, carto::Point b) { return a.x > b.x; });
        break;
    }
    const bool echange = horizontal ? t[0].p.x > t[1].p.x : t[0].p.y > t[1].p.y;
    if (echange)
        std::swap(t[0], t[1]);
    return {t[0].slot, t[1].slot};
}

std::optional<Direction> directionDuCote(const Coins& c, Cote cote) {
    const auto [i, j] = coinsDuCote(c, cote);
    const carto::Point p1 = c[size_t(i)], p2 = c[size_t(j)];
    if (p1 == p2)
        return std::nullopt;
    if (p1.x == p2.x)
        return Direction{true, 0};
    return Direction{false, (p2.y - p1.y) / (p2.x - p1.x)};
}

Coins orienteCote(const Coins& c, Cote cote, const Direction& d) {
    const auto [i, j] = coinsDuCote(c, cote);
    const carto::Point p1 = c[size_t(i)], p2 = c[size_t(j)];
    Coins r = c;
    if (d.verticale) {
        r[size_t(j)] = {p1.x, p2.y};
        return r;
    }
    const carto::Point v = moins(p2, p1);
    const double longueur = std::hypot(v.x, v.y);
    double ux = 1 / std::sqrt(1 + d.pente * d.pente), uy = d.pente * ux;
    // The side keeps its sense: the second corner stays on the side it was.
    if (ux * v.x + uy * v.y < 0) {
        ux = -ux;
        uy = -uy;
    }
    r[size_t(j)] = {p1.x + longueur * ux, p1.y + longueur * uy};
    return r;
}

} // namespace veldra::plane
