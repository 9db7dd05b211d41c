#pragma once
// Reads written files back with plain OGR, as any GIS tool would, for the assertions.

#include <QString>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>
#include <string>
#include <vector>

namespace planfile {

// Read-only vector dataset; null when GDAL cannot open it.
GDALDatasetUniquePtr openVector(const QString& path);

std::vector<OGRFeatureUniquePtr> readFeatures(GDALDataset& ds, const char* layer);

struct OrderRow {
    int position;
    QString layer;
    QString source; // "(null)" for NULL
};
std::vector<OrderRow> layerOrder(GDALDataset& ds);

// The first row of an SQL query, each value as text; empty when the query fails.
std::vector<QString> queryRow(GDALDataset& ds, const char* sql);

// Every feature of the named layers: FID, WKT and fields, one line each; equal dumps mean
// equal contents.
std::string dump(GDALDataset& ds, const std::vector<const char*>& layers);

// Kinds of the parts of an OGR style string ("PEN", "BRUSH", "SYMBOL", "LABEL"); empty
// when OGR cannot parse it.
std::vector<std::string> styleParts(const char* style);

// One parsed part of a style string, with sizes in ground units; null when absent.
std::unique_ptr<OGRStyleTool> stylePart(const char* style, int index);

QString text(const OGRFeature& f, const char* field);

} // namespace planfile
