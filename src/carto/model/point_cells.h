#pragma once
// The first feature at a point, remembered by cell for a layer asked at many points (the
// section and the alley of every plot). The layer's extent is cut in cells; the first
// question in a cell learns whether no feature reaches it, or one region alone reaches it
// and covers it whole: every later point of that cell is answered without the tree or a
// point-in-polygon test. Other cells keep asking the layer. Cleared when the layer changes.

#include "carto/geometry/rect.h"

#include <QtGlobal>
#include <functional>
#include <vector>

namespace carto {

class PointCells {
public:
    static constexpr qint64 kNothing = -1; // no feature at the point
    static constexpr qint64 kAsk = -2;     // the cell cannot tell: ask the layer

    void clear() { cells_.clear(); }

    // The answer for p: a FID, kNothing or kAsk. `classify` gives a cell's answer from its
    // rectangle the first time one of its points is asked; `extent` gives the layer's.
    qint64 answer(Point p, const std::function<Rect()>& extent,
                  const std::function<qint64(const Rect&)>& classify);

private:
    static constexpr qint64 kUnknown = -3;
    // Fine enough that most of a section's cells lie wholly inside it; at most 512 KiB,
    // and only for layers asked this way.
    static constexpr int kCellsAcross = 256;

    Rect cell(int i, int j) const;

    Rect extent_;
    double size_ = 0;
    int columns_ = 0, rows_ = 0;
    std::vector<qint64> cells_; // row by row; empty until first asked
};

} // namespace carto
