#pragma once
// Storage of a map set through GDAL/OGR: a GeoPackage whose vector tables are the layers
// (any OGR source, a PG: connection string for instance, opens the same way). The drawing
// order is the table mapset_layers(position, layer_name, source) when present, else the
// order of the source's layers. Writes are grouped in transactions: begin() / commit()
// nest, and only the outermost pair reaches the database, so an interrupted bracket
// leaves the map set as it was before it.

#include "carto/model/feature_data.h"
#include "carto/model/layer_info.h"

#include <QString>
#include <memory>
#include <utility>
#include <vector>

class GDALDataset;
class OGRLayer;

namespace carto {

struct DatasetCloser {
    void operator()(GDALDataset* ds) const;
};

class MapStore {
public:
    struct LayerEntry {
        QString name;
        QString rasterSource; // a GDAL raster name for raster layers, empty otherwise
    };
    using Rows = std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>>;

    // Erreur (PlanIllisible) for a missing, foreign or damaged source.
    static std::unique_ptr<MapStore> open(const QString& pathOrConnection);
    ~MapStore();
    MapStore(const MapStore&) = delete;
    MapStore& operator=(const MapStore&) = delete;

    const QString& source() const { return source_; }
    const std::vector<LayerEntry>& layers() const { return layers_; }
    FieldList fields(const QString& layer) const;
    Rows readFeatures(const QString& layer, const FieldList& fields) const;

    qint64 insert(const QString& layer, const FeatureData& data, const FieldList& fields);
    void update(const QString& layer, qint64 fid, const FeatureData& data, const FieldList& fields);
    void remove(const QString& layer, qint64 fid);

    void begin();
    void commit();
    void rollback();
    int transactionDepth() const { return depth_; }

private:
    MapStore(QString source, std::unique_ptr<GDALDataset, DatasetCloser> ds);
    OGRLayer* ogrLayer(const QString& name) const;
    void writeFeature(const QString& layer, qint64 fid, const FeatureData& data,
                      const FieldList& fields, bool create, qint64* newFid);

    QString source_;
    std::unique_ptr<GDALDataset, DatasetCloser> ds_;
    std::vector<LayerEntry> layers_;
    int depth_ = 0;
    bool failed_ = false; // a write failed inside the open transaction
};

} // namespace carto
