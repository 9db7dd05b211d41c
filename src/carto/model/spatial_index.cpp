#include "spatial_index.h"

// GCC's -O2 sees the R*-tree's fixed-capacity arrays of float boxes as maybe uninitialised
// when it sorts them on reinsertion; they are filled before they are read.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <algorithm>
#include <bit>
#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <cstdint>
#include <limits>

namespace carto {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

using BPoint = bg::model::point<float, 2, bg::cs::cartesian>;
using BBox = bg::model::box<BPoint>;
using Entry = std::pair<BBox, qint64>;

struct SpatialIndex::Tree {
    bgi::rtree<Entry, bgi::rstar<16>> rtree;
};

namespace {

// Coordinates past a float's range are held at its end: such a box still meets all it
// did, and the conversion stays defined.
float nearest(double v) {
    constexpr double kMax = std::numeric_limits<float>::max();
    return float(std::clamp(v, -kMax, kMax)); // a NaN stays one
}

// The float at or below v, and at or above it, a step away when the nearest one is on the
// wrong side (the bits of a float are ordered as its magnitude).
float down(double v) {
    const float f = nearest(v);
    if (!(double(f) > v))
        return f;
    return f > 0   ? std::bit_cast<float>(std::bit_cast<std::uint32_t>(f) - 1)
           : f < 0 ? std::bit_cast<float>(std::bit_cast<std::uint32_t>(f) + 1)
                   : -std::numeric_limits<float>::denorm_min();
}
float up(double v) {
    return -down(-v);
}

// The same rectangle always gives the same box, so an entry is found again to be removed.
BBox toBox(const Rect& r, Point origin) {
    return BBox(BPoint(down(r.xmin - origin.x), down(r.ymin - origin.y)),
                BPoint(up(r.xmax - origin.x), up(r.ymax - origin.y)));
}

// Rounding to the nearest float keeps order, so a point inside a rectangle stays inside its
// outward-rounded box.
BPoint toPoint(Point p, Point origin) {
    return BPoint(nearest(p.x - origin.x), nearest(p.y - origin.y));
}

} // namespace

SpatialIndex::SpatialIndex() : tree_(std::make_unique<Tree>()) {}
SpatialIndex::~SpatialIndex() = default;
SpatialIndex::SpatialIndex(SpatialIndex&&) noexcept = default;
SpatialIndex& SpatialIndex::operator=(SpatialIndex&&) noexcept = default;

void SpatialIndex::rebuild(const std::vector<std::pair<Rect, qint64>>& entries) {
    // Any box of the plan will do as the origin: the others lie within its extent.
    const auto first = std::find_if(entries.begin(), entries.end(),
                                    [](const auto& e) { return !e.first.isNull(); });
    origin_ = first == entries.end() ? Point{} : first->first.center();
    std::vector<Entry> boxes;
    boxes.reserve(entries.size());
    for (const auto& [r, fid] : entries)
        if (!r.isNull())
            boxes.emplace_back(toBox(r, origin_), fid);
    // The packing constructor builds a balanced tree in one pass.
    tree_->rtree = bgi::rtree<Entry, bgi::rstar<16>>(boxes);
}

void SpatialIndex::insert(const Rect& box, qint64 fid) {
    if (box.isNull())
        return;
    if (tree_->rtree.empty())
        origin_ = box.center();
    tree_->rtree.insert(Entry(toBox(box, origin_), fid));
}

void SpatialIndex::remove(const Rect& box, qint64 fid) {
    if (!box.isNull())
        tree_->rtree.remove(Entry(toBox(box, origin_), fid));
}

void SpatialIndex::clear() {
    tree_->rtree.clear();
}

size_t SpatialIndex::size() const {
    return tree_->rtree.size();
}

std::vector<qint64> SpatialIndex::intersecting(const Rect& r) const {
    std::vector<qint64> out;
    if (r.isNull())
        return out;
    tree_->rtree.query(
        bgi::intersects(toBox(r, origin_)),
        boost::make_function_output_iterator([&](const Entry& e) { out.push_back(e.second); }));
    return out;
}

std::vector<qint64> SpatialIndex::containingPoint(Point p) const {
    std::vector<qint64> out;
    visitContaining(p, [&](qint64 fid) { out.push_back(fid); });
    return out;
}

void SpatialIndex::visitContaining(Point p, const std::function<void(qint64)>& visit) const {
    tree_->rtree.query(
        bgi::intersects(toPoint(p, origin_)),
        boost::make_function_output_iterator([&](const Entry& e) { visit(e.second); }));
}

} // namespace carto
