#pragma once
// A plan or an import source as the tool reads it: a file or an OGR connection string
// (PG:...), opened with French messages that never show a password, and a plan's layers
// in drawing order with its raster layers' images as absolute references.

#include <QString>
#include <gdal_priv.h>
#include <vector>

namespace veldra::plantool {

// Erreur (AccesRefuse) when the source cannot be opened; a database must have PostGIS.
GDALDatasetUniquePtr openSource(const QString& source, bool update);

bool isDatabase(const QString& source);
// The source as messages show it.
QString shownSource(const QString& source);

struct PlanLayerRef {
    QString name;
    QString raster; // the image a raster layer shows; empty for a table
};

// The layers of the plan `ds` (opened from `source`), bottom first: the order of
// mapset_layers, else every vector layer. A raster's image is an absolute path, or
// "GPKG:file:table" for a tile table of the GeoPackage itself.
std::vector<PlanLayerRef> planLayersOf(GDALDataset& ds, const QString& source);

} // namespace veldra::plantool
