#pragma once
// A point of the plan, in map units (metres on a projected plan).

namespace carto {

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

} // namespace carto
