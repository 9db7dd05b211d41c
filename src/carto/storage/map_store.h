#pragma once
// Storage of a map set through GDAL/OGR: a GeoPackage whose vector tables are the layers
// (any OGR source, a PG: connection string for instance, opens the same way). The drawing
// order is the table mapset_layers(position, layer_name, source) when present, else the
// order of the source's layers. Styles are OGR style strings in the column OGR_STYLE.
// Writes are grouped in transactions: begin() / commit() nest, and only the outermost
// pair reaches the database, so an interrupted bracket leaves the map set as it was
// before it.

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
    struct Read {
        Rows rows;
        // The column the text features' styles refer to ({column}), else the default
        // text column when the layer has it; empty when neither.
        QString textField;
        // Features left out because their coordinates cannot be read (conform.h).
        int unreadable = 0;
    };

    // Erreur (PlanIllisible) for a missing, foreign or damaged source.
    static std::unique_ptr<MapStore> open(const QString& pathOrConnection);
    ~MapStore();
    MapStore(const MapStore&) = delete;
    MapStore& operator=(const MapStore&) = delete;

    const QString& source() const { return source_; }
    const std::vector<LayerEntry>& layers() const { return layers_; }
    FieldList fields(const QString& layer) const;
    Read readFeatures(const QString& layer, const FieldList& fields,
                      const QString& defaultTextColumn = {}) const;

    // Writes; a text feature's text goes to `textField` when the layer has that column,
    // into its style otherwise. insert() takes `fid` when it is not negative (a feature
    // put back) and returns the FID stored. Erreur (EcritureImpossible) when refused.
    qint64 insert(const QString& layer, const FeatureData& data, const FieldList& fields,
                  const QString& textField, qint64 fid = -1);
    void update(const QString& layer, qint64 fid, const FeatureData& data, const FieldList& fields,
                const QString& textField);
    void remove(const QString& layer, qint64 fid);

    // Transactions nest; only the outermost pair reaches the database. A commit refused
    // by the database rolls back and throws.
    void begin();
    void commit();
    void rollback();
    int transactionDepth() const { return depth_; }

private:
    MapStore(QString source, std::unique_ptr<GDALDataset, DatasetCloser> ds);
    OGRLayer* ogrLayer(const QString& name) const;
    // True when another program holds the plan's lock; a write that failed says why.
    bool locked() const;
    [[noreturn]] void failWrite(const QString& layer) const;
    qint64 writeFeature(const QString& layer, qint64 fid, const FeatureData& data,
                        const FieldList& fields, const QString& textField, bool create);

    QString source_;
    std::unique_ptr<GDALDataset, DatasetCloser> ds_;
    std::vector<LayerEntry> layers_;
    int depth_ = 0;
    bool wal_ = false; // a GeoPackage written through its write-ahead log while open
};

} // namespace carto
