#include "carto/geometry/rings.h"

#include "carto/geometry/geometry.h"
#include "carto/geometry/prepared.h"

#include <algorithm>

namespace carto {

std::vector<std::vector<std::size_t>> polygonsOf(const std::vector<std::vector<Point>>& rings) {
    const std::size_t n = rings.size();
    if (n <= 1)
        return n == 0 ? std::vector<std::vector<std::size_t>>{}
                      : std::vector<std::vector<std::size_t>>{{0}};
    std::vector<PreparedGeometry> areas;
    std::vector<double> sizes;
    areas.reserve(n);
    for (const auto& ring : rings) {
        Geometry g = Geometry::polygon({ring});
        sizes.push_back(g.area());
        areas.emplace_back(std::move(g));
    }
    // Which rings hold each ring: a point of its own that lies inside it, tested against
    // the others (rings of a valid region do not cross).
    std::vector<std::vector<std::size_t>> holders(n);
    for (std::size_t i = 0; i < n; ++i) {
        const Point probe =
            areas[i].geometry().isEmpty() ? rings[i].front() : areas[i].geometry().interiorPoint();
        for (std::size_t j = 0; j < n; ++j)
            if (j != i && sizes[j] > sizes[i] && areas[j].contains(probe))
                holders[i].push_back(j);
    }
    std::vector<std::vector<std::size_t>> groups;
    std::vector<std::ptrdiff_t> groupOf(n, -1);
    for (std::size_t i = 0; i < n; ++i)
        if (holders[i].size() % 2 == 0) {
            groupOf[i] = std::ptrdiff_t(groups.size());
            groups.push_back({i});
        }
    for (std::size_t i = 0; i < n; ++i) {
        if (holders[i].size() % 2 == 0)
            continue;
        // The smallest ring around a hole is its shell.
        const std::size_t shell =
            *std::min_element(holders[i].begin(), holders[i].end(),
                              [&](std::size_t a, std::size_t b) { return sizes[a] < sizes[b]; });
        if (groupOf[shell] < 0) { // crossing rings: no true shell; the region is invalid
            groupOf[i] = std::ptrdiff_t(groups.size());
            groups.push_back({i});
        } else {
            groups[std::size_t(groupOf[shell])].push_back(i);
        }
    }
    return groups;
}

} // namespace carto
