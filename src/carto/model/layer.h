#pragma once
// A layer of a map: a table of features held in memory, indexed by FID and by an R-tree
// of their bounds. A stored layer writes every add, update and delete through to the map
// set's storage, each in its own transaction, or all in one transaction when they happen
// inside a beginAccess(1) / endAccess bracket. A memory layer never touches storage.
//
// Searches (condition, point, rectangle, feature) go through the R-tree or, for
// conditions, through per-column value indexes built on first use; every edit keeps the
// R-tree current and drops what was derived from the old state (value indexes, prepared
// geometries, the layer's union).

#include "carto/geometry/geometry.h"
#include "carto/geometry/prepared.h"
#include "carto/model/condition.h"
#include "carto/model/feature_table.h"
#include "carto/model/features.h"
#include "carto/model/layer_info.h"
#include "carto/model/spatial_index.h"

#include <QHash>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

namespace carto {

class Map;
class Dataset;

// Search modes of searches within a rectangle or a feature.
namespace searchmode {
inline constexpr int CentreWithin = 0;
inline constexpr int PartlyWithin = 1;
inline constexpr int EntirelyWithin = 2;
} // namespace searchmode

struct LabelSettings {
    const Dataset* dataset = nullptr;
    QString field;
    bool visible = false;
    // Labels moved by hand: FID -> offset from the feature's centre, in map units.
    std::map<qint64, Point> offsets;
};

// Result of a name look-up: code 1 for an exact match (code % 10 == 1), 2 for a match
// found by its beginning, 0 for none.
struct FindResult {
    int code = 0;
    Feature feature;
    Rect bounds;
    bool exact() const { return code % 10 == 1; }
};

class Layer {
public:
    Layer(Map* map, QString name, FieldList fields, bool memory);
    ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    Map* map() const { return map_; }
    const QString& name() const { return name_; }
    bool isMemory() const { return memory_; }

    bool visible = true;
    bool selectable = true;
    bool editable = false;
    bool autoLabel = false;
    LabelSettings labels;
    // The column that keyValue() reads and writes; the FID when empty.
    QString keyField;
    // The column searched by find(); "Nom" by default.
    QString findField = QStringLiteral("Nom");
    // A raster layer: a georeferenced image drawn under the vector layers.
    QString rasterSource;
    bool isRaster() const { return !rasterSource.isEmpty(); }

    const FieldList& fields() const { return fields_; }
    qsizetype fieldIndex(QStringView name) const; // -1 when unknown

    int featureCount() const { return int(features_.size()); }
    Rect bounds() const;
    Features allFeatures() const;
    // Every feature in FID order, without looking each one up again.
    template <typename F> void forEachFeature(F&& f) const {
        for (const auto& [fid, data] : features_)
            f(Feature(this, fid, data));
    }
    bool hasFeature(qint64 fid) const;
    Feature feature(qint64 fid) const;                 // Erreur when absent
    Feature featureByKey(QStringView uniqueKey) const; // the FID as text

    // 0 read, 1 update (one transaction until the matching endAccess).
    void beginAccess(int mode);
    void endAccess();
    bool inUpdateAccess() const { return updateDepth_ > 0; }

    // Stores a copy of the feature (its attributes matched to this layer's columns by
    // name) and returns it as stored, with its new FID.
    Feature addFeature(const Feature& f);
    void updateFeature(const Feature& f);
    void deleteFeature(qint64 fid);
    void deleteFeature(QStringView uniqueKey);

    // Selection, in the order features were selected.
    const Features& selection() const { return selection_; }
    void selectOnly(const Features& f);
    void selectAdd(qint64 fid); // append mode
    void selectRemove(qint64 fid);
    void clearSelection();

    // Searches
    Features search(QStringView condition) const;
    Features searchAtPoint(Point p) const;
    // The first feature (lowest FID) at the point; an invalid Feature when none.
    Feature firstAtPoint(Point p) const;
    Features searchWithinRectangle(const Rect& r, int mode) const;
    Features searchWithinFeature(const Feature& container, int mode) const;
    FindResult find(QStringView name) const;
    // The stored data of the features whose bounds meet the box, without a geometric test:
    // what a renderer draws.
    std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>>
    dataInBox(const Rect& box) const;

    // The union of all features, cached until the layer changes. Erreur on an empty layer.
    const Geometry& unionAll() const;
    // A prepared geometry of one feature, cached until that feature changes.
    const PreparedGeometry& prepared(qint64 fid) const;

    // Storage side: load without writing through.
    void loadFeatures(std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>> rows);

private:
    friend class Map;
    std::shared_ptr<const FeatureData> conform(const Feature& f) const;
    void changed(); // drops derived caches
    void notify(const Rect& dirty);
    void writeTransaction(const std::function<void()>& write);
    std::vector<qint64> matching(const Condition& c) const;
    const std::vector<qint64>* lookup(qsizetype column, const QString& key, bool numeric) const;
    void indexFeature(qint64 fid, const FeatureData& d);
    void unindexFeature(qint64 fid, const FeatureData& d);

    Map* map_;
    QString name_;
    FieldList fields_;
    bool memory_;

    FeatureTable features_; // enumerated by FID
    qint64 nextMemoryFid_ = 1;
    SpatialIndex index_;
    Features selection_;

    std::vector<int> accessModes_;
    int updateDepth_ = 0;

    mutable std::optional<Rect> bounds_;
    mutable std::optional<Geometry> union_;
    mutable std::unordered_map<qint64, std::unique_ptr<PreparedGeometry>> prepared_;
    // (column, numeric) -> normalised value -> FIDs in ascending order.
    mutable std::map<std::pair<qsizetype, bool>, QHash<QString, std::vector<qint64>>> valueIndex_;
};

} // namespace carto
