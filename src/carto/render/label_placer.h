#pragma once
// Keeps automatic labels readable: the plan's own texts are obstacles, and a label that
// would overlap one of them or a label already placed is left out at this scale. Boxes
// are kept in a grid of screen cells so each test looks only at its neighbours.

#include <QRectF>
#include <QSize>
#include <vector>

namespace carto {

class LabelPlacer {
public:
    explicit LabelPlacer(QSize screen, double cell = 48);

    // A text of the plan, always drawn: labels keep clear of it.
    void occupy(const QRectF& box);
    // True, and the box is kept, when it overlaps nothing kept so far.
    bool place(const QRectF& box);

    const std::vector<QRectF>& placed() const { return placed_; }

private:
    template <typename F> void forCells(const QRectF& box, F&& f);

    double cell_;
    int columns_, rows_;
    std::vector<std::vector<QRectF>> cells_;
    std::vector<QRectF> placed_;
};

} // namespace carto
