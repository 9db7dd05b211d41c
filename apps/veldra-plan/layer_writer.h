#pragma once
// Writes the features of one new OGR layer. The layer is created from its TableDef with a
// GEOMETRY column in the undefined Cartesian reference (srs_id -1: a local plane, not a
// place on Earth); every feature gets its geometry and its style.
// Writers keep the layer pointer GDAL lends them: the dataset must outlive the writer.

#include "veldra-plan/plan_schema.h"
#include "veldra-plan/shapes.h"

#include <QString>
#include <ogrsf_frmts.h>

namespace veldra::plantool {

class LayerWriter {
public:
    LayerWriter(GDALDataset& ds, const TableDef& table);

    // Field index by name, for the setters; Erreur for a column the layer lacks.
    int field(const char* name) const;

    // A new feature of this layer, all fields unset.
    OGRFeatureUniquePtr blank() const;
    void add(OGRFeature& feature, OGRGeometryUniquePtr geometry, const QString& style);

private:
    OGRLayer* layer_; // owned by the dataset
    int styleField_;
};

void setText(OGRFeature& f, int field, const QString& value);

OGRGeometryUniquePtr polygon(const Ring& ring);
OGRGeometryUniquePtr multiPolygon(const std::vector<Ring>& rings); // one polygon per ring
OGRGeometryUniquePtr lineString(const Polyline& line);
OGRGeometryUniquePtr point(Point p);

} // namespace veldra::plantool
