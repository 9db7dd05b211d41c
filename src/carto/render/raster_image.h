#pragma once
// A georeferenced raster (the scanned paper plan) read once through GDAL into an image and
// the map rectangle it covers. Large rasters are read reduced so the image stays under a
// few thousand pixels a side; the view scales it anyway.

#include "carto/geometry/rect.h"

#include <QImage>
#include <QString>

namespace carto {

struct RasterImage {
    QImage image;
    Rect extent; // map units
    bool isNull() const { return image.isNull(); }
};

// A null image when the source cannot be read (the plan still opens without it).
RasterImage readRaster(const QString& source, int maxSide = 4096);

} // namespace carto
