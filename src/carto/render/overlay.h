#pragma once
// What is painted over the cached layers on every paint: the selection, highlighted with
// the map's selection style, and the legends of the themes on show.

#include "carto/model/map.h"
#include "carto/render/viewport.h"

#include <QPainter>

namespace carto {

void paintSelection(QPainter& painter, const Map& map, const Viewport& viewport);
// Legends stacked in the top right corner of a picture of the given size.
void paintLegends(QPainter& painter, const Map& map, QSize size);

} // namespace carto
