#pragma once
// Storage of a map set through GDAL/OGR: a GeoPackage whose vector tables are the layers
// (any OGR source opens the same way; a PG: connection string opens a PostgreSQL + PostGIS
// database holding the same tables, see database.h). The drawing
// order is the table mapset_layers(position, layer_name, source) when present, else the
// order of the source's layers. Styles are OGR style strings in the column OGR_STYLE.
// Writes are grouped in transactions: begin() / commit() nest, and only the outermost
// pair reaches the database, so an interrupted bracket leaves the map set as it was
// before it. In a database each outermost pair is a transaction of the server: rows a
// transaction writes stay locked until it ends, another clerk's writes to them wait a
// moment and then give up with a clear message (PlanOccupe), and updates are sent in
// batches at commit (batched_updates.h).

#include "carto/model/feature_columns.h"
#include "carto/model/feature_data.h"
#include "carto/model/layer_info.h"
#include "carto/storage/attribute_updates.h"
#include "carto/storage/batched_updates.h"

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
    using Rows = std::vector<std::pair<qint64, FeaturePtr>>;
    struct Read {
        // The features read, in columns, and those the columns could not hold.
        std::shared_ptr<const FeatureColumns> columns;
        Rows rows;
        // The column the text features' styles refer to ({column}), else the default
        // text column when the layer has it; empty when neither.
        QString textField;
        // Features left out because their coordinates cannot be read (conform.h).
        int unreadable = 0;
    };

    // Erreur (PlanIllisible) for a missing, foreign or damaged source, a database that
    // cannot be reached or has no PostGIS; its message never shows a password.
    static std::unique_ptr<MapStore> open(const QString& pathOrConnection);
    ~MapStore();
    MapStore(const MapStore&) = delete;
    MapStore& operator=(const MapStore&) = delete;

    const QString& source() const { return source_; }
    bool isDatabase() const { return database_; }
    const std::vector<LayerEntry>& layers() const { return layers_; }
    FieldList fields(const QString& layer) const;
    Read readFeatures(const QString& layer, const FieldList& fields,
                      const QString& defaultTextColumn = {}) const;
    // Hands back the pages the database cached while the layers were read: they are read
    // once, and the cache would otherwise stay as large as the plan's busiest table.
    void releaseReadMemory() const;

    // Writes; a text feature's text goes to `textField` when the layer has that column,
    // into its style otherwise. insert() takes `fid` when it is not negative (a feature
    // put back) and returns the FID stored. update() given the feature as stored before
    // writes only what changed when it can. Erreur (EcritureImpossible) when refused.
    qint64 insert(const QString& layer, const FeatureData& data, const FieldList& fields,
                  const QString& textField, qint64 fid = -1);
    void update(const QString& layer, qint64 fid, const FeatureData& data, const FieldList& fields,
                const QString& textField, const FeatureData* before = nullptr);
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
    [[noreturn]] void failWrite(const QString& layer, const QString& why) const;
    // True when only attributes changed and are written (or nothing changed at all).
    bool updateAttributes(const QString& layer, qint64 fid, const FeatureData& data,
                          const FeatureData& before, const FieldList& fields);
    qint64 writeFeature(const QString& layer, qint64 fid, const FeatureData& data,
                        const FieldList& fields, const QString& textField, bool create);

    QString source_;
    std::unique_ptr<GDALDataset, DatasetCloser> ds_;
    std::unique_ptr<AttributeUpdates> attributes_; // a GeoPackage's; closed before ds_
    std::vector<LayerEntry> layers_;
    int depth_ = 0;
    bool wal_ = false; // a GeoPackage written through its write-ahead log while open
    bool database_ = false;
    BatchedUpdates held_; // a database's updates, sent at commit
    struct WrittenStyle {
        StylePtr style; // held, so its address names it
        FeatureKind kind = FeatureKind::Region;
        QByteArray text;
    };
    WrittenStyle written_; // the last style string written, for the next feature
};

} // namespace carto
