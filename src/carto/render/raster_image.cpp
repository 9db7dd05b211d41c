#include "carto/render/raster_image.h"

#include "carto/storage/gdal_handles.h"

#include <algorithm>
#include <cmath>

namespace carto {

RasterImage readRaster(const QString& source, int maxSide) {
    GDALAllRegister();
    const gdal::QuietErrors quiet;
    const GDALDatasetUniquePtr ds(
        GDALDataset::Open(source.toUtf8().constData(), GDAL_OF_RASTER | GDAL_OF_READONLY));
    if (!ds || ds->GetRasterCount() < 1)
        return {};
    double gt[6];
    if (ds->GetGeoTransform(gt) != CE_None || gt[2] != 0 || gt[4] != 0)
        return {}; // rotated rasters are not drawn
    const int w = ds->GetRasterXSize(), h = ds->GetRasterYSize();
    const double k = std::min(1.0, double(maxSide) / std::max(w, h));
    const int outW = std::max(1, int(std::lround(w * k)));
    const int outH = std::max(1, int(std::lround(h * k)));

    QImage image(outW, outH, QImage::Format_RGB888);
    const int bands = std::min(3, ds->GetRasterCount());
    int bandMap[3] = {1, bands > 1 ? 2 : 1, bands > 2 ? 3 : 1};
    if (ds->RasterIO(GF_Read, 0, 0, w, h, image.bits(), outW, outH, GDT_Byte, 3, bandMap, 3,
                     image.bytesPerLine(), 1, nullptr) != CE_None)
        return {};
    const double x0 = gt[0], y0 = gt[3];
    const double x1 = x0 + gt[1] * w, y1 = y0 + gt[5] * h;
    return {std::move(image),
            Rect{std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)}};
}

} // namespace carto
