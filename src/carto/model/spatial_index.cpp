#include "spatial_index.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>

namespace carto {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;

using BPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using BBox = bg::model::box<BPoint>;
using Entry = std::pair<BBox, qint64>;

struct SpatialIndex::Tree {
    bgi::rtree<Entry, bgi::rstar<16>> rtree;
};

namespace {

BBox toBox(const Rect& r) {
    return BBox(BPoint(r.xmin, r.ymin), BPoint(r.xmax, r.ymax));
}

} // namespace

SpatialIndex::SpatialIndex() : tree_(std::make_unique<Tree>()) {}
SpatialIndex::~SpatialIndex() = default;
SpatialIndex::SpatialIndex(SpatialIndex&&) noexcept = default;
SpatialIndex& SpatialIndex::operator=(SpatialIndex&&) noexcept = default;

void SpatialIndex::rebuild(const std::vector<std::pair<Rect, qint64>>& entries) {
    std::vector<Entry> boxes;
    boxes.reserve(entries.size());
    for (const auto& [r, fid] : entries)
        if (!r.isNull())
            boxes.emplace_back(toBox(r), fid);
    // The packing constructor builds a balanced tree in one pass.
    tree_->rtree = bgi::rtree<Entry, bgi::rstar<16>>(boxes);
}

void SpatialIndex::insert(const Rect& box, qint64 fid) {
    if (!box.isNull())
        tree_->rtree.insert(Entry(toBox(box), fid));
}

void SpatialIndex::remove(const Rect& box, qint64 fid) {
    if (!box.isNull())
        tree_->rtree.remove(Entry(toBox(box), fid));
}

void SpatialIndex::clear() {
    tree_->rtree.clear();
}

size_t SpatialIndex::size() const {
    return tree_->rtree.size();
}

Rect SpatialIndex::bounds() const {
    if (tree_->rtree.empty())
        return {};
    const BBox b = tree_->rtree.bounds(); // kept by the tree's root: no walk over entries
    return {b.min_corner().get<0>(), b.min_corner().get<1>(), b.max_corner().get<0>(),
            b.max_corner().get<1>()};
}

std::vector<qint64> SpatialIndex::intersecting(const Rect& r) const {
    std::vector<qint64> out;
    if (r.isNull())
        return out;
    tree_->rtree.query(
        bgi::intersects(toBox(r)),
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
        bgi::intersects(BPoint(p.x, p.y)),
        boost::make_function_output_iterator([&](const Entry& e) { visit(e.second); }));
}

} // namespace carto
