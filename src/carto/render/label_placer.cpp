#include "carto/render/label_placer.h"

#include <algorithm>
#include <cmath>

namespace carto {

LabelPlacer::LabelPlacer(QSize screen, double cell)
    : cell_(cell), columns_(std::max(1, int(std::ceil(screen.width() / cell)))),
      rows_(std::max(1, int(std::ceil(screen.height() / cell)))),
      cells_(size_t(columns_) * size_t(rows_)) {}

template <typename F> void LabelPlacer::forCells(const QRectF& box, F&& f) {
    // Boxes reaching past the screen's edges share the border cells.
    const auto column = [this](double x) {
        return std::clamp(int(std::floor(x / cell_)), 0, columns_ - 1);
    };
    const auto row = [this](double y) {
        return std::clamp(int(std::floor(y / cell_)), 0, rows_ - 1);
    };
    for (int r = row(box.top()); r <= row(box.bottom()); ++r)
        for (int c = column(box.left()); c <= column(box.right()); ++c)
            if (!f(cells_[size_t(r) * size_t(columns_) + size_t(c)]))
                return;
}

void LabelPlacer::occupy(const QRectF& box) {
    if (box.isEmpty())
        return;
    forCells(box, [&](std::vector<QRectF>& cell) {
        cell.push_back(box);
        return true;
    });
}

bool LabelPlacer::place(const QRectF& box) {
    bool free = true;
    forCells(box, [&](std::vector<QRectF>& cell) {
        free = std::none_of(cell.begin(), cell.end(),
                            [&](const QRectF& other) { return other.intersects(box); });
        return free;
    });
    if (!free)
        return false;
    occupy(box);
    placed_.push_back(box);
    return true;
}

} // namespace carto
