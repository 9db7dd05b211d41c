#include "point_cells.h"

#include <algorithm>
#include <cmath>

namespace carto {

Rect PointCells::cell(int i, int j) const {
    const double x = extent_.xmin + i * size_, y = extent_.ymin + j * size_;
    return Rect{x, y, i + 1 == columns_ ? extent_.xmax : x + size_,
                j + 1 == rows_ ? extent_.ymax : y + size_};
}

qint64 PointCells::answer(Point p, const std::function<Rect()>& extent,
                          const std::function<qint64(const Rect&)>& classify) {
    if (cells_.empty()) {
        const Rect all = extent();
        const double longest = std::max(all.width(), all.height());
        if (!(longest > 0)) // no feature, or only a point or a line of them: nothing to cut
            return all.contains(p) ? kAsk : kNothing;
        extent_ = all;
        size_ = longest / kCellsAcross;
        columns_ = std::clamp(int(std::ceil(extent_.width() / size_)), 1, kCellsAcross);
        rows_ = std::clamp(int(std::ceil(extent_.height() / size_)), 1, kCellsAcross);
        cells_.assign(size_t(columns_) * size_t(rows_), kUnknown);
    }
    if (!extent_.contains(p)) // NaN included: no feature reaches it
        return kNothing;
    const int i = std::clamp(int((p.x - extent_.xmin) / size_), 0, columns_ - 1);
    const int j = std::clamp(int((p.y - extent_.ymin) / size_), 0, rows_ - 1);
    const Rect r = cell(i, j);
    if (!r.contains(p)) // rounding put p on the far side of a cell's edge
        return kAsk;
    qint64& known = cells_[size_t(j) * size_t(columns_) + size_t(i)];
    if (known == kUnknown)
        known = classify(r);
    return known;
}

} // namespace carto
