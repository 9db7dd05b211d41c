#pragma once
// The R-tree of a layer: the bounding box of every feature, by FID. Kept current on every
// add, update and delete; every spatial search starts here.
//
// Boxes are held as floats measured from an origin taken when the first box comes in,
// rounded outwards: half the memory of doubles, and a box grows by at most a float's step
// (a tenth of a millimetre a kilometre from the origin). A search answers every FID whose
// box meets, and may answer one that only comes that close: callers test exact bounds.

#include "carto/geometry/point.h"
#include "carto/geometry/rect.h"

#include <QtGlobal>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace carto {

class SpatialIndex {
public:
    SpatialIndex();
    ~SpatialIndex();
    SpatialIndex(SpatialIndex&&) noexcept;
    SpatialIndex& operator=(SpatialIndex&&) noexcept;

    // Bulk load, much faster than inserting one by one.
    void rebuild(const std::vector<std::pair<Rect, qint64>>& entries);
    void insert(const Rect& box, qint64 fid);
    void remove(const Rect& box, qint64 fid);
    void clear();
    size_t size() const;

    // FIDs whose box intersects (touches included) the rectangle, and maybe a few more.
    std::vector<qint64> intersecting(const Rect& r) const;
    std::vector<qint64> containingPoint(Point p) const;
    // The same, handed one by one: nothing allocated per query.
    void visitContaining(Point p, const std::function<void(qint64)>& visit) const;

private:
    struct Tree;
    std::unique_ptr<Tree> tree_;
    Point origin_;
};

} // namespace carto
